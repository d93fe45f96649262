// A folder as an ISO 9660 file system with Rock Ridge and Joliet, and with HFS+ beside them where
// that is asked for: the same files, with two more ways of finding them. libisofs makes the
// metadata; the file data are copied straight from the source files, which is several times as fast
// as its own stream. Any thread, one call at a time in the process.
#pragma once

#include "IsoKind.h"
#include "TrackContent.h"

#include <stop_token>

namespace IsoImage {

// The folder's image, with every file's size settled. The volume name is volumeName, for each of
// the file system's fields shortened and replaced as that field demands. Fails, naming the file,
// when a file or folder cannot be read, and when stopped. Symbolic links are kept as links.
[[nodiscard]] Result<TrackContent> fromFolder(const QString &folder, const QString &volumeName,
                                              const std::stop_token &stop = {});

// The same for a path in the encoding of the file system, which need not be text.
[[nodiscard]] Result<TrackContent> fromPath(const QByteArray &folder, const QString &volumeName,
                                            IsoKind kind, const std::stop_token &stop = {});

}
