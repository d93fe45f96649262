// The bytes that CD-Text packs carry: the texts of a language, cleaned, in its encoding and each
// with its closing zero. Private to this library; any thread.
#pragma once

#include "DRCDTextBlock.h"

#include <QByteArray>

namespace CDTextPayload {

// All of one kind of text, such as the titles.
struct Texts
{
    quint8 packType;
    QByteArray disc;
    QList<QByteArray> tracks; // one a track; none where the kind is the disc's alone
};

// Composes letters and replaces control characters, which would be read as the end of a text or as
// a repetition, by blanks: what remains is the text that a disc can have.
[[nodiscard]] QList<char32_t> cleaned(const QString &text);

[[nodiscard]] bool carries(DRCDTextBlock::Encoding encoding, char32_t character);

// The kinds that have a text, in the order of the packs. A genre alone is no text: none then.
[[nodiscard]] QList<Texts> ofBlock(const DRCDTextBlock &block, int trackCount);

// Packs that they need.
[[nodiscard]] int packCount(const QList<Texts> &payload);

}
