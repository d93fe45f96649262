// Sizes of files and folders, and where the program keeps what it stores for the user. Any thread.
#pragma once

#include <QString>

#include <stop_token>

namespace MiscTool {

// Bytes; 0 for what is missing or no file.
[[nodiscard]] qint64 getFileSize(const QString &path);

// The sum of the sizes of all files below the folder, bytes. Links are not followed and count
// nothing, and neither does what cannot be read. Slow for large trees; ends early when stopped.
[[nodiscard]] qint64 getFolderSize(const QString &path, const std::stop_token &stop = {});

// The user's Documents folder, below which the repository lies.
[[nodiscard]] QString getCachedPath();

}
