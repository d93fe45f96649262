// Overwrites what a file holds with zeros, on the disk. The thread of the job that needs it.
#pragma once

#include "TrackContent.h"

class QFile;

namespace Overwriting {

// The file is open for writing, and without a buffer. Holes stay, so that no room is taken. Advance
// is told of bytes that have reached the disk and of holes, up to the file's size; a failure of its
// own ends the operation. Fails, naming the file, when the disk does.
[[nodiscard]] Result<> withZeros(const QFile &file, const Advance &advance);

}
