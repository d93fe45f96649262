// The file behind an extent, open for reading, which must be and stay what it was when the track
// was put together: another one in its place, or one that grew, shrank or was written to since,
// is refused. The thread that opened it.
#pragma once

#include "TrackContent.h"

#include <sys/stat.h>

class SourceFile
{
public:
    // The file of an extent that has a path.
    [[nodiscard]] static Result<SourceFile> open(const Extent &extent);

    SourceFile(SourceFile &&other) noexcept;
    SourceFile(const SourceFile &) = delete;
    SourceFile &operator=(const SourceFile &) = delete;
    SourceFile &operator=(SourceFile &&) = delete;
    ~SourceFile();

    [[nodiscard]] int descriptor() const { return m_descriptor; }

    // Whether a part of the file takes no room in its file system and reads as zeros.
    [[nodiscard]] bool hasHoles() const;

    // Reads exactly length bytes, or fails.
    [[nodiscard]] Result<> read(char *to, qint64 offset, qint64 length) const;

    // Fails when the file was written to while it was open.
    [[nodiscard]] Result<> checkUnchanged() const;

private:
    SourceFile(int descriptor, const QByteArray &path);
    [[nodiscard]] Result<> checkFirst(const Extent &extent);

    int m_descriptor = -1;
    QByteArray m_path; // shared with the extent
    struct stat m_first = {};
};

// When a file was last written to, nanoseconds since 1970; for comparing only, since years that are
// far away give the number of another one.
[[nodiscard]] qint64 changeTime(const struct stat &status);

// The absolute path without links on the way, since sources are never opened through a link.
[[nodiscard]] Result<QByteArray> realPath(const QByteArray &path);

// "file: reason", where the reason may be the system's text for an errno.
[[nodiscard]] Failure fileFailure(const QByteArray &path, const QString &reason);
[[nodiscard]] Failure fileFailure(const QByteArray &path, int error);
