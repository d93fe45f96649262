// The commands of maplorn-recorder. Each returns the text for standard output, or why it could
// not be done. Main thread.
#pragma once

#include "VirtualRecorder.h"

namespace RecorderCommands {

// A line a recorder: its name, a tab, its folder.
[[nodiscard]] QString list(const VirtualRecorder &recorder);

// A line a property: its name, a colon, its value in one column.
[[nodiscard]] QString status(const VirtualRecorder &recorder);

// The names that insert() takes, separated by blanks.
[[nodiscard]] QString insertableTypes();

[[nodiscard]] Result<QString> insert(VirtualRecorder &recorder, const MediaType &type);
[[nodiscard]] Result<QString> eject(VirtualRecorder &recorder);

}
