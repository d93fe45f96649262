// An audio file's bytes, read at any position, and the check that it is still the file that was
// opened. Remembers a failed read, since what reads through FFmpeg may take it for the file's end.
// One thread at a time.
#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

class FileBytes
{
public:
    // Fails, naming the file, for what is no readable regular file.
    [[nodiscard]] static Result<FileBytes> open(const QString &path);

    FileBytes(FileBytes &&other) noexcept;
    FileBytes(const FileBytes &) = delete;
    FileBytes &operator=(const FileBytes &) = delete;
    FileBytes &operator=(FileBytes &&) = delete;
    ~FileBytes();

    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] qint64 size() const { return m_first.st_size; }
    [[nodiscard]] qint64 modified() const { return nanoseconds(m_first); } // since 1970

    // Up to length bytes: fewer at the end of the file, -1 when it cannot be read.
    [[nodiscard]] qint64 read(qint64 offset, void *to, qint64 length);

    // The bytes at a position, valid until the next call; null where the file does not hold them
    // all. At most a few thousand, taken from a large piece that is read at once.
    [[nodiscard]] const uchar *at(qint64 offset, qint64 length);

    // The reason why a read failed, naming the file; "the file has changed" when it was written to
    // since it was opened.
    [[nodiscard]] Result<> check() const;

    // The file's name before a reason.
    [[nodiscard]] Failure failure(const QString &reason) const;

    [[nodiscard]] static qint64 nanoseconds(const struct stat &status);

private:
    FileBytes(int descriptor, const QString &path);

    int m_descriptor = -1;
    int m_error = 0; // errno of a read
    QString m_path;
    struct stat m_first = {};
    QByteArray m_piece;
    qint64 m_pieceStart = 0;
};
