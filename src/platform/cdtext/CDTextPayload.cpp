#include "CDTextPayload.h"

#include "DRCDTextKeys.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

using CDTextPayload::Texts;
using Encoding = DRCDTextBlock::Encoding;

constexpr int payloadSize = 12; // bytes of a pack
constexpr quint8 genrePack = 0x87;

// What the tracks have of a kind of text. Silent tracks have an empty text each, for the format
// has packs for them.
enum class Tracks { Absent, Silent, Speaking };

struct Field
{
    quint8 packType;
    QLatin1StringView key;
    Tracks tracks;
    bool ascii; // whatever the language's encoding
};

constexpr auto fields = std::to_array<Field>({
    {0x80, DRCDTextTitleKey, Tracks::Speaking, false},
    {0x81, DRCDTextPerformerKey, Tracks::Speaking, false},
    {0x82, DRCDTextSongwriterKey, Tracks::Speaking, false},
    {0x83, DRCDTextComposerKey, Tracks::Speaking, false},
    {0x84, DRCDTextArrangerKey, Tracks::Speaking, false},
    {0x85, DRCDTextSpecialMessageKey, Tracks::Silent, false},
    {0x86, DRCDTextDiscIdentKey, Tracks::Absent, true},
    {0x8d, DRCDTextClosedKey, Tracks::Absent, false},
    {0x8e, DRCDTextMCNISRCKey, Tracks::Speaking, true},
});

bool isControl(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QByteArray bytes(const QString &text, Encoding encoding)
{
    const QList<char32_t> characters = CDTextPayload::cleaned(text);
    QByteArray result;
    result.reserve(characters.size() + 1);
    for (const char32_t character : characters)
        result.append(CDTextPayload::carries(encoding, character) ? char(character) : '?');
    result.append('\0');
    return result;
}

Texts textsOf(const Field &field, const DRCDTextBlock &block, int trackCount)
{
    const QList<QVariantMap> &dictionaries = block.trackDictionaries();
    const Encoding encoding = field.ascii ? Encoding::Ascii : block.encoding();
    const auto textAt = [&](int index) {
        return bytes(dictionaries.value(index).value(field.key).toString(), encoding);
    };
    Texts texts{field.packType, textAt(0), {}};
    if (field.tracks == Tracks::Absent)
        return texts;
    texts.tracks.reserve(trackCount);
    for (int track = 0; track < trackCount; ++track)
        texts.tracks.append(field.tracks == Tracks::Speaking ? textAt(track + 1)
                                                             : QByteArray(1, '\0'));
    return texts;
}

bool hasText(const Texts &texts)
{
    const auto isText = [](const QByteArray &bytes) { return bytes.size() > 1; };
    return isText(texts.disc) || std::any_of(texts.tracks.begin(), texts.tracks.end(), isText);
}

// The code, and no words of its own beside it.
Texts genre(uint code)
{
    QByteArray bytes(3, '\0');
    qToBigEndian(quint16(code), bytes.data());
    return {genrePack, bytes, {}};
}

int byteCount(const Texts &texts)
{
    qsizetype count = texts.disc.size();
    for (qsizetype track = 0; track < texts.tracks.size(); ++track) {
        const QByteArray &text = texts.tracks.at(track);
        // A text like that of the track before shrinks to a TAB; that of the first track does not,
        // even where it is the disc's.
        const bool repeated = track > 0 && text.size() > 1 && text == texts.tracks.at(track - 1);
        count += repeated ? 2 : text.size();
    }
    return int(count);
}

}

QList<char32_t> CDTextPayload::cleaned(const QString &text)
{
    QList<char32_t> characters;
    const QList<uint> composed = text.normalized(QString::NormalizationForm_C).toUcs4();
    characters.reserve(composed.size());
    for (const uint character : composed)
        characters.append(isControl(character) ? U' ' : char32_t(character));
    return characters;
}

bool CDTextPayload::carries(DRCDTextBlock::Encoding encoding, char32_t character)
{
    return character < (encoding == Encoding::Ascii ? 0x80 : 0x100);
}

QList<CDTextPayload::Texts> CDTextPayload::ofBlock(const DRCDTextBlock &block, int trackCount)
{
    QList<Texts> payload;
    for (const Field &field : fields) {
        Texts texts = textsOf(field, block, trackCount);
        if (hasText(texts))
            payload.append(std::move(texts));
    }
    const QVariantMap disc = block.trackDictionaries().value(0);
    const auto code = disc.constFind(DRCDTextGenreCodeKey);
    if (payload.isEmpty() || code == disc.constEnd())
        return payload;
    const auto behind = std::find_if(payload.begin(), payload.end(),
                                     [](const Texts &texts) { return texts.packType > genrePack; });
    payload.insert(behind, genre(code->toUInt()));
    return payload;
}

int CDTextPayload::packCount(const QList<Texts> &payload)
{
    int packs = 0;
    for (const Texts &texts : payload)
        packs += (byteCount(texts) + payloadSize - 1) / payloadSize;
    return packs;
}
