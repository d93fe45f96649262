// The parts of a file that take no room in its file system and read as zeros. Any thread.
#pragma once

#include <QtGlobal>

namespace FileHoles {

// The end of the hole at an offset, at most end; the offset itself where there are data.
[[nodiscard]] qint64 endOfHole(int descriptor, qint64 offset, qint64 end);

// The end of the data at an offset, at most end; never the offset itself, so that a loop goes on
// whatever a file system says.
[[nodiscard]] qint64 endOfData(int descriptor, qint64 offset, qint64 end);

}
