#include "CDTextPacks.h"

#include "CDTextLanguages.h"
#include "CDTextPayload.h"
#include "DRCDTextKeys.h"
#include "LibburnPacks.h"

#include <algorithm>
#include <array>

namespace {

bool assertsCopyright(const DRCDTextBlock &block)
{
    constexpr auto keys =
        std::to_array({DRCDTextCopyrightAssertedForTitlesKey, DRCDTextCopyrightAssertedForNamesKey,
                       DRCDTextCopyrightAssertedForSpecialMessagesKey});
    const QVariantMap disc = block.trackDictionaries().value(0);
    return std::any_of(keys.begin(), keys.end(),
                       [&disc](QLatin1StringView key) { return disc.value(key).toBool(); });
}

LibburnPacks::Block coded(const DRCDTextBlock &block, QList<CDTextPayload::Texts> payload)
{
    return {block.encoding() == DRCDTextBlock::Encoding::Ascii ? 0x01 : 0x00,
            assertsCopyright(block) ? 0x03 : 0x00, CDTextLanguages::ebuCode(block.language()),
            std::move(payload)};
}

Failure tooLong(const DRCDTextBlock &block, int packs)
{
    return Failure{
        QStringLiteral("The CD-Text in the language “%1” is too long: it needs %2 packs, "
                       "and a disc has room for %3 in a language.")
            .arg(CDTextLanguages::nameOf(block.language()))
            .arg(packs)
            .arg(CDTextPacks::maxPayloadPacks)};
}

}

QString CDTextPacks::unencodable(const QString &text, DRCDTextBlock::Encoding encoding)
{
    QString missing;
    for (const char32_t character : CDTextPayload::cleaned(text)) {
        if (CDTextPayload::carries(encoding, character))
            continue;
        const QString one = QString::fromUcs4(&character, 1);
        if (!missing.contains(one))
            missing += one;
    }
    return missing;
}

int CDTextPacks::packCount(const DRCDTextBlock &block, int trackCount)
{
    return CDTextPayload::packCount(CDTextPayload::ofBlock(block, trackCount));
}

Result<QByteArray> CDTextPacks::encode(const QList<DRCDTextBlock> &blocks, int trackCount)
{
    if (blocks.size() > maxBlocks)
        return Failure{QStringLiteral("CD-Text has room for %1 languages, not for %2.")
                           .arg(maxBlocks)
                           .arg(blocks.size())};
    if (trackCount < 1 || trackCount > maxTracks)
        return Failure{QStringLiteral("A disc with CD-Text has 1 to %1 tracks, not %2.")
                           .arg(maxTracks)
                           .arg(trackCount)};
    QList<LibburnPacks::Block> coding;
    for (const DRCDTextBlock &block : blocks) {
        QList<CDTextPayload::Texts> payload = CDTextPayload::ofBlock(block, trackCount);
        const int packs = CDTextPayload::packCount(payload);
        if (packs > maxPayloadPacks)
            return tooLong(block, packs);
        if (!payload.isEmpty())
            coding.append(coded(block, std::move(payload)));
    }
    if (coding.isEmpty())
        return QByteArray();
    const Result<QByteArray> packs = LibburnPacks::make(coding, trackCount);
    if (packs)
        return packs;
    return Failure{QStringLiteral("The CD-Text cannot be encoded: %1").arg(packs.error())};
}
