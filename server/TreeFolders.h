// Ways into the folders of the file store, one component after the other and never through a link.
// Any thread.
#pragma once

#include "FileTree.h"

namespace TreeFolders {

enum Way { Find, Make };

constexpr qsizetype prefixLength = 2;

// The folder in that folder; none where it is not there or cannot be made.
[[nodiscard]] Descriptor enter(const Descriptor &folder, const QByteArray &name, Way way);
// The folder of the files of these keys.
[[nodiscard]] Descriptor enter(const Descriptor &stored, const FileKeys &keys, Way way);

[[nodiscard]] bool isRegular(const Descriptor &folder, const QByteArray &name);

}
