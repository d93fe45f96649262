// The store of copies of folders and images that were burned before. It has no index: what lies in
// its two folders is its content. Any thread.
#pragma once

#include "Result.h"

#include <QStringList>

#include <stop_token>

namespace DataRepository {

enum class Kind { Folder, Image };

// The folder that holds the copies of a kind; made when it is missing.
[[nodiscard]] QString folder(Kind kind);

// Where the copy of that name lies or would lie.
[[nodiscard]] QString pathOf(Kind kind, const QString &name);

// All names, hidden ones included, in the file system's own order.
[[nodiscard]] QStringList names(Kind kind);

// Bytes of one copy. Slow for a folder.
[[nodiscard]] qint64 sizeOf(Kind kind, const QString &name, const std::stop_token &stop);

// Stores a copy of the source under its own name. The new copy takes the place of an old one only
// when it is complete, so that a failed copy loses nothing. A copy saved onto itself is left as it
// is, and a source that contains the repository is copied without it. Slow.
[[nodiscard]] Result<> save(Kind kind, const QString &source, const std::stop_token &stop);

// Deletes one copy; false when not all of it could be deleted.
[[nodiscard]] bool remove(Kind kind, const QString &name);

}
