// Copies and removes a file or a whole folder. Off the main thread.
#pragma once

#include "Result.h"

#include <stop_token>

namespace TreeCopy {

// Copies source, a file or a folder with all its content, to target, which must not exist. Links
// stay links; permissions and times of change are kept; pipes, sockets and devices have no content
// and are left out, as is the folder leftOut wherever it lies below the source (empty: none).
// Fails, naming the file, at the first thing that cannot be copied, and when stopped; what was
// copied by then is left for the caller to remove.
[[nodiscard]] Result<> copy(const QString &source, const QString &target, const QString &leftOut,
                            const std::stop_token &stop);

// Removes a file or a whole folder, whatever its names are; true also where there was nothing.
bool remove(const QString &path);

}
