// What the tests of CD-Text share: discs in few words, packs taken apart, and libcdio, the reader
// that is not ours. Main thread.
#pragma once

#include "DRCDTextBlock.h"

#include <QByteArray>

#include <cdio/cdtext.h>
#include <memory>

namespace PackTools {

using Encoding = DRCDTextBlock::Encoding;

// The disc's dictionary first, then one a track.
[[nodiscard]] DRCDTextBlock block(const QString &language, const QList<QVariantMap> &dictionaries,
                                  Encoding encoding = Encoding::IsoLatin1);

// Dictionaries with one text each under the key; none where the text is empty.
[[nodiscard]] QList<QVariantMap> under(QLatin1StringView key, const QStringList &texts);

[[nodiscard]] QList<QVariantMap> titles(const QStringList &texts);

// The packs of the blocks; fails the test where they cannot be encoded.
[[nodiscard]] QByteArray packs(const QList<DRCDTextBlock> &blocks, int trackCount);

// What the packs of a type in a block carry, one after the other.
[[nodiscard]] QByteArray payload(const QByteArray &packs, quint8 packType, int block = 0);

// The checksum that the last two bytes of a pack must be.
[[nodiscard]] QByteArray checksum(const QByteArray &pack);

// Packs as libcdio understands them.
class Reader
{
public:
    explicit Reader(QByteArray packs);

    [[nodiscard]] bool select(int block);
    [[nodiscard]] int language() const { return cdtext_get_language(m_text.get()); }
    [[nodiscard]] int genre() const { return cdtext_get_genre(m_text.get()); }
    [[nodiscard]] int lastTrack() const { return cdtext_get_last_track(m_text.get()); }

    // Track 0 is the disc. Empty for a text that is not there.
    [[nodiscard]] QString text(cdtext_field_t field, int track) const;

private:
    struct Destroy
    {
        void operator()(cdtext_t *text) const { cdtext_destroy(text); }
    };
    std::unique_ptr<cdtext_t, Destroy> m_text;
};

}
