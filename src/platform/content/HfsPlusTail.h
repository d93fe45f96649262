// What an HFS+ volume beside an ISO 9660 file system has behind the files' contents: the bitmap of
// its used blocks and the second volume header. libisofs makes both at the end of its stream, which
// is not read that far, and leaves bits of some bitmaps out. Any thread.
#pragma once

#include "TrackContent.h"

namespace HfsPlusTail {

// The two as extents. The metadata reach from the image's first byte to the end of its folders and
// hold the partition map. Fails where they do not describe an HFS+ volume.
[[nodiscard]] Result<QList<Extent>> extents(const PackedBlocks &metadata);

}
