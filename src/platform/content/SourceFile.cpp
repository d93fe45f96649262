#include "SourceFile.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

constexpr qint64 statBlockSize = 512; // the unit of st_blocks, whatever the file system

Failure changed(const QByteArray &path)
{
    return fileFailure(path, QStringLiteral("the file has changed meanwhile"));
}

}

Failure fileFailure(const QByteArray &path, const QString &reason)
{
    return Failure{QStringLiteral("%1: %2").arg(QFile::decodeName(path), reason)};
}

Failure fileFailure(const QByteArray &path, int error)
{
    return fileFailure(path, qt_error_string(error));
}

qint64 changeTime(const struct stat &status)
{
    return static_cast<qint64>(static_cast<quint64>(status.st_mtim.tv_sec) * 1'000'000'000
                               + static_cast<quint64>(status.st_mtim.tv_nsec));
}

Result<QByteArray> realPath(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> found(::realpath(path.constData(), nullptr),
                                                            &std::free);
    if (!found)
        return fileFailure(path, errno);
    return QByteArray(found.get());
}

SourceFile::SourceFile(int descriptor, const QByteArray &path)
    : m_descriptor(descriptor)
    , m_path(path)
{
}

SourceFile::SourceFile(SourceFile &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_path(std::move(other.m_path))
    , m_first(other.m_first)
{
}

SourceFile::~SourceFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

Result<SourceFile> SourceFile::open(const Extent &extent)
{
    // Not blocking, since a pipe that has taken the file's place would hold us up for ever.
    const int descriptor =
        ::open(extent.path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0 && errno == ELOOP)
        return changed(extent.path);
    if (descriptor < 0)
        return fileFailure(extent.path, errno);
    SourceFile file(descriptor, extent.path);
    if (const Result<> first = file.checkFirst(extent); !first)
        return first.failure();
    return file;
}

Result<> SourceFile::checkFirst(const Extent &extent)
{
    if (::fstat(m_descriptor, &m_first) != 0)
        return fileFailure(m_path, errno);
    if (!S_ISREG(m_first.st_mode) || m_first.st_size != extent.fileSize
        || changeTime(m_first) != extent.modified)
        return changed(m_path);
    return Done{};
}

bool SourceFile::hasHoles() const
{
    return m_first.st_blocks * statBlockSize < m_first.st_size;
}

Result<> SourceFile::read(char *to, qint64 offset, qint64 length) const
{
    while (length > 0) {
        const ssize_t got = ::pread(m_descriptor, to, static_cast<size_t>(length), offset);
        if (got == 0)
            return changed(m_path);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return fileFailure(m_path, errno);
        to += got;
        offset += got;
        length -= got;
    }
    return Done{};
}

Result<> SourceFile::checkUnchanged() const
{
    struct stat now = {};
    if (::fstat(m_descriptor, &now) != 0)
        return fileFailure(m_path, errno);
    if (now.st_size != m_first.st_size || changeTime(now) != changeTime(m_first))
        return changed(m_path);
    return Done{};
}
