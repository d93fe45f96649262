// The sheets that lie beside the sectors of an audio disc and tell other programs about its tracks
// and texts: a cue sheet, and a toc file of cdrdao. Any thread.
#pragma once

#include "DRCDTextBlock.h"

#include <QByteArray>

namespace TrackSheets {

// For a file "disc.bin" of little-endian sectors that holds tracks of these lengths (blocks) one
// after the other; with CD-Text the packs are expected in "disc.cdt".
[[nodiscard]] QByteArray cueSheet(const QList<qint64> &lengths, bool hasCDText);

[[nodiscard]] QByteArray tocFile(const QList<qint64> &lengths, const QList<DRCDTextBlock> &cdText);

}
