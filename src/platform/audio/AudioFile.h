// How long an audio file plays. Any thread.
#pragma once

#include "Result.h"

#include <stop_token>

namespace AudioFile {

// Playing time in seconds, from the file's header where it tells, else by reading it through (an
// mp3 without a note of its length gives its true one). The error names the file and the reason.
[[nodiscard]] Result<double> duration(const QString &path, const std::stop_token &stop = {});

}
