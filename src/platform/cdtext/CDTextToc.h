// CD-Text as it is written in the toc files of cdrdao, byte for byte what the packs say. Any
// thread.
#pragma once

#include "DRCDTextBlock.h"

#include <QByteArray>

namespace CDTextToc {

// The CD_TEXT section of the disc, and that of track N (from 0). Empty where no block has a text.
// Languages are numbered as their packs are.
[[nodiscard]] QByteArray ofDisc(const QList<DRCDTextBlock> &blocks, int trackCount);
[[nodiscard]] QByteArray ofTrack(const QList<DRCDTextBlock> &blocks, int trackCount, int track);

}
