// The image that libisofs itself writes, for comparing ours with it. One call at a time.
#pragma once

#include <QByteArray>

namespace LibraryStream {

// Of a folder, named TEST, with HFS+; the files' contents are zero. Empty where that fails.
[[nodiscard]] QByteArray hybrid(const QByteArray &folder);

}
