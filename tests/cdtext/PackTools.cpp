#include "PackTools.h"

#include "CDTextPacks.h"
#include "DRCDTextKeys.h"

#include <QTest>

DRCDTextBlock PackTools::block(const QString &language, const QList<QVariantMap> &dictionaries,
                               Encoding encoding)
{
    DRCDTextBlock block = DRCDTextBlock::cdTextBlockWithLanguage(language, encoding);
    block.setTrackDictionaries(dictionaries);
    return block;
}

QList<QVariantMap> PackTools::under(QLatin1StringView key, const QStringList &texts)
{
    QList<QVariantMap> dictionaries;
    for (const QString &text : texts)
        dictionaries.append(text.isEmpty() ? QVariantMap() : QVariantMap{{key, text}});
    return dictionaries;
}

QList<QVariantMap> PackTools::titles(const QStringList &texts)
{
    return under(DRCDTextTitleKey, texts);
}

QByteArray PackTools::packs(const QList<DRCDTextBlock> &blocks, int trackCount)
{
    const Result<QByteArray> packs = CDTextPacks::encode(blocks, trackCount);
    if (!packs) {
        QTest::qFail(qUtf8Printable(packs.error()), __FILE__, __LINE__);
        return {};
    }
    return packs.value();
}

QByteArray PackTools::payload(const QByteArray &packs, quint8 packType, int block)
{
    QByteArray payload;
    for (qsizetype at = 0; at < packs.size(); at += CDTextPacks::packSize) {
        if (quint8(packs.at(at)) == packType && ((packs.at(at + 3) >> 4) & 7) == block)
            payload += packs.mid(at + 4, 12);
    }
    return payload;
}

QByteArray PackTools::checksum(const QByteArray &pack)
{
    uint remainder = 0; // CRC-16 of CCITT, begun at 0, a byte at a time
    for (const char byte : pack.first(16)) {
        uint term = (remainder >> 8) ^ quint8(byte);
        term ^= term >> 4;
        remainder = ((remainder << 8) ^ (term << 12) ^ (term << 5) ^ term) & 0xffff;
    }
    remainder ^= 0xffff;
    return QByteArray().append(char(remainder >> 8)).append(char(remainder & 0xff));
}

PackTools::Reader::Reader(QByteArray packs)
    : m_text(cdtext_init())
{
    const int failed = cdtext_data_init(m_text.get(), reinterpret_cast<uint8_t *>(packs.data()),
                                        size_t(packs.size()));
    if (failed)
        QTest::qFail("libcdio refuses the packs", __FILE__, __LINE__);
}

bool PackTools::Reader::select(int block)
{
    return cdtext_set_language_index(m_text.get(), block);
}

QString PackTools::Reader::text(cdtext_field_t field, int track) const
{
    return QString::fromUtf8(cdtext_get_const(m_text.get(), field, track_t(track)));
}
