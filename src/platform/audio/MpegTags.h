// The tags that programs put before, between and behind the frames of MPEG audio: ID3 in its
// versions, APE, and the rarer ones at a file's end. Any thread.
#pragma once

#include <QtGlobal>

class FileBytes;

namespace MpegTags {

// The position behind the tags that begin at a position: itself where none does, and beyond the
// end given for a tag that is cut off there.
[[nodiscard]] qint64 behind(FileBytes &bytes, qint64 offset, qint64 end);

// The position before the tags at the file's end.
[[nodiscard]] qint64 before(FileBytes &bytes, qint64 begin);

}
