#include "FileBytes.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr qint64 pieceSize = 256LL * 1024; // bytes

}

FileBytes::FileBytes(int descriptor, const QString &path)
    : m_descriptor(descriptor)
    , m_path(path)
{
}

FileBytes::FileBytes(FileBytes &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_error(other.m_error)
    , m_path(std::move(other.m_path))
    , m_first(other.m_first)
    , m_piece(std::move(other.m_piece))
    , m_pieceStart(other.m_pieceStart)
{
}

FileBytes::~FileBytes()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

Result<FileBytes> FileBytes::open(const QString &path)
{
    // Not blocking, since a pipe would hold us up until somebody writes into it.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    FileBytes bytes(descriptor, path);
    if (descriptor < 0 || ::fstat(descriptor, &bytes.m_first) != 0)
        return bytes.failure(qt_error_string(errno));
    if (!S_ISREG(bytes.m_first.st_mode))
        return bytes.failure(QStringLiteral("not a file"));
    return bytes;
}

qint64 FileBytes::read(qint64 offset, void *to, qint64 length)
{
    qint64 done = 0;
    while (done < length) {
        const ssize_t got = ::pread(m_descriptor, static_cast<char *>(to) + done,
                                    static_cast<size_t>(length - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            m_error = errno;
            return -1;
        }
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

const uchar *FileBytes::at(qint64 offset, qint64 length)
{
    if (offset < 0 || length > size() || offset > size() - length)
        return nullptr;
    if (offset < m_pieceStart || offset + length > m_pieceStart + m_piece.size()) {
        m_piece.resize(std::max(length, pieceSize));
        m_pieceStart = offset;
        m_piece.resize(std::max<qint64>(0, read(offset, m_piece.data(), m_piece.size())));
        if (m_piece.size() < length)
            return nullptr;
    }
    return reinterpret_cast<const uchar *>(m_piece.constData()) + (offset - m_pieceStart);
}

Result<> FileBytes::check() const
{
    struct stat now = {};
    if (m_error != 0 || ::fstat(m_descriptor, &now) != 0)
        return failure(qt_error_string(m_error != 0 ? m_error : errno));
    if (now.st_size != m_first.st_size || nanoseconds(now) != nanoseconds(m_first))
        return failure(QStringLiteral("the file has changed meanwhile"));
    return Done{};
}

Failure FileBytes::failure(const QString &reason) const
{
    return Failure{QStringLiteral("%1: %2").arg(m_path, reason)};
}

qint64 FileBytes::nanoseconds(const struct stat &status)
{
    return status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec;
}
