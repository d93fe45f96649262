// Makes the packs of CD-Text that a burn writes into an audio disc's lead-in. Any thread: what is
// not thread-safe below is entered by one caller at a time.
#pragma once

#include "DRCDTextBlock.h"
#include "Result.h"

#include <QByteArray>

namespace CDTextPacks {

inline constexpr int packSize = 18;         // bytes
inline constexpr int maxPayloadPacks = 252; // of a language, the three that tell its size apart
inline constexpr int maxBlocks = 8;         // languages of a disc
inline constexpr int maxTracks = 99;

// The characters of a text that the encoding cannot carry, each once, in order of appearance;
// a disc has "?" in their place. Disc identity, MCN and ISRC are ASCII in every encoding.
[[nodiscard]] QString unencodable(const QString &text, DRCDTextBlock::Encoding encoding);

// The packs that a language's texts need on a disc of that many tracks, those that tell its size
// not counted. Arithmetic alone, quick enough to be asked with every key pressed.
[[nodiscard]] int packCount(const DRCDTextBlock &block, int trackCount);

// The packs of all languages in their order, without a header and without a closing zero. A block
// without any text, a genre alone included, is left out, and the next one takes its place; without
// any text at all there are no packs. The error names the language that does not fit.
[[nodiscard]] Result<QByteArray> encode(const QList<DRCDTextBlock> &blocks, int trackCount);

}
