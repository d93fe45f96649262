#include "CDTextToc.h"

#include "CDTextLanguages.h"
#include "CDTextPayload.h"

#include <algorithm>
#include <array>
#include <functional>

namespace {

using CDTextPayload::Texts;

constexpr quint8 genrePack = 0x87;

struct Item
{
    quint8 packType;
    const char *ofDisc;
    const char *ofTrack; // null: the toc has none, or none that says anything
};

constexpr auto items = std::to_array<Item>({
    {0x80, "TITLE", "TITLE"},
    {0x81, "PERFORMER", "PERFORMER"},
    {0x82, "SONGWRITER", "SONGWRITER"},
    {0x83, "COMPOSER", "COMPOSER"},
    {0x84, "ARRANGER", "ARRANGER"},
    {0x85, "MESSAGE", nullptr},
    {0x86, "DISC_ID", nullptr},
    {genrePack, "GENRE", nullptr},
    {0x8d, "RESERVED4", nullptr},
    {0x8e, "UPC_EAN", "ISRC"},
});

const Item &itemOf(quint8 packType)
{
    return *std::ranges::find(items, packType, &Item::packType);
}

QByteArray quoted(const QByteArray &text)
{
    QByteArray result = "\"";
    for (const char c : text.chopped(1)) { // the closing zero
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            result += QByteArray("\\") + c;
        else if (code < 0x20 || code > 0x7e)
            result += '\\' + QByteArray::number(code, 8).rightJustified(3, '0');
        else
            result += c;
    }
    return result + '"';
}

QByteArray numbers(const QByteArray &bytes)
{
    QByteArrayList list;
    for (const char byte : bytes)
        list.append(QByteArray::number(static_cast<unsigned char>(byte)));
    return "{ " + list.join(", ") + " }";
}

// One LANGUAGE section a block that has texts; line gives the text of a kind, or nothing.
QByteArray languages(const QList<DRCDTextBlock> &blocks, int trackCount,
                     const std::function<QByteArray(const Texts &)> &line)
{
    QByteArray sections;
    int number = 0;
    for (const DRCDTextBlock &block : blocks) {
        const QList<Texts> payload = CDTextPayload::ofBlock(block, trackCount);
        if (payload.isEmpty())
            continue;
        sections += "  LANGUAGE " + QByteArray::number(number++) + " {\n";
        for (const Texts &texts : payload)
            sections += line(texts);
        sections += "  }\n";
    }
    return sections;
}

}

QByteArray CDTextToc::ofDisc(const QList<DRCDTextBlock> &blocks, int trackCount)
{
    QByteArray map;
    int number = 0;
    for (const DRCDTextBlock &block : blocks)
        if (!CDTextPayload::ofBlock(block, trackCount).isEmpty())
            map += "    " + QByteArray::number(number++) + " : "
                   + QByteArray::number(CDTextLanguages::ebuCode(block.language())) + '\n';
    if (map.isEmpty())
        return {};
    const auto line = [](const Texts &texts) -> QByteArray {
        return QByteArray("    ") + itemOf(texts.packType).ofDisc + ' '
               + (texts.packType == genrePack ? numbers(texts.disc) : quoted(texts.disc)) + '\n';
    };
    return "CD_TEXT {\n  LANGUAGE_MAP {\n" + map + "  }\n" + languages(blocks, trackCount, line)
           + "}\n";
}

QByteArray CDTextToc::ofTrack(const QList<DRCDTextBlock> &blocks, int trackCount, int track)
{
    const auto line = [track](const Texts &texts) -> QByteArray {
        const char *item = itemOf(texts.packType).ofTrack;
        if (!item || track >= texts.tracks.size())
            return {};
        return QByteArray("    ") + item + ' ' + quoted(texts.tracks.at(track)) + '\n';
    };
    const QByteArray sections = languages(blocks, trackCount, line);
    return sections.isEmpty() ? QByteArray() : QByteArray("CD_TEXT {\n" + sections + "}\n");
}
