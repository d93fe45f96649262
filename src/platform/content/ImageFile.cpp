#include "ImageFile.h"

#include "SourceFile.h"
#include "TemporaryName.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t mode = 0666; // less what the user's mask takes away

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : path.first(std::max<qsizetype>(slash, 1));
}

// What linkat() and rename() need of a file that has no name yet.
QByteArray descriptorPath(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

}

Result<QByteArray> ImageFile::place(const QByteArray &path)
{
    struct stat status = {};
    if (::stat(path.constData(), &status) == 0) {
        if (!S_ISREG(status.st_mode))
            return fileFailure(path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        return realPath(path);
    }
    if (path.isEmpty() || path.endsWith('/'))
        return fileFailure(path, path.isEmpty() ? ENOENT : EISDIR);
    if (errno != ENOENT)
        return fileFailure(path, errno);
    const Result<QByteArray> folder = realPath(folderOf(path));
    if (!folder)
        return fileFailure(path, ENOENT);
    const QByteArray name = path.mid(path.lastIndexOf('/') + 1);
    return QByteArray((folder.value() == "/" ? QByteArray() : folder.value()) + "/" + name);
}

Result<ImageFile> ImageFile::create(const QByteArray &path, Existing existing)
{
    struct stat status = {};
    if (existing == Existing::Refused && ::lstat(path.constData(), &status) == 0)
        return fileFailure(path, EEXIST);
    ImageFile file(path, existing);
    if (Result<> opened = file.open(); !opened)
        return opened.failure();
    return file;
}

ImageFile::ImageFile(ImageFile &&other) noexcept
    : m_path(std::move(other.m_path))
    , m_existing(other.m_existing)
    , m_temporary(std::exchange(other.m_temporary, {}))
    , m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

ImageFile::~ImageFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    if (!m_temporary.isEmpty())
        ::unlink(m_temporary.constData());
}

Result<> ImageFile::open()
{
    const QByteArray folder = folderOf(m_path);
    m_descriptor = ::open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
    if (m_descriptor >= 0) {
        // Without the process's list of files it could not be given a name.
        if (::access(descriptorPath(m_descriptor).constData(), F_OK) == 0)
            return Done{};
        ::close(m_descriptor);
        return openNamed();
    }
    // Not every file system has files without a name.
    if (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)
        return openNamed();
    return fileFailure(m_path, errno);
}

Result<> ImageFile::openNamed()
{
    TemporaryName::removeLeftovers(folderOf(m_path));
    for (;;) {
        m_temporary = TemporaryName::make(folderOf(m_path));
        m_descriptor = ::open(m_temporary.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, mode);
        if (m_descriptor >= 0 && TemporaryName::lock(m_descriptor))
            return Done{};
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        } else if (errno != EEXIST) {
            m_temporary.clear();
            return fileFailure(m_path, errno);
        }
    }
}

Result<> ImageFile::write(const TrackContent &content, const Advance &advance) const
{
    return content.writeToPath(m_path, m_descriptor, advance);
}

Result<> ImageFile::finish()
{
    // The last chance of some file systems to tell that there was no room.
    const int copy = ::dup(m_descriptor);
    if (copy < 0 || ::close(copy) != 0)
        return fileFailure(m_path, errno);
    if (m_existing == Existing::Replaced)
        return replace();
    // Both refuse a name that somebody else took meanwhile.
    return m_temporary.isEmpty() ? linkAs(m_path) : renameUnlessTaken();
}

Result<> ImageFile::renameUnlessTaken()
{
    const char *from = m_temporary.constData();
    const char *to = m_path.constData();
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) != 0) {
        // Not every file system does that in one step, nor has it hard links.
        if (errno != EINVAL && errno != ENOSYS)
            return fileFailure(m_path, errno);
        if (::link(from, to) == 0)
            return Done{}; // and the temporary name goes with us
        struct stat status = {};
        if (errno == EEXIST || ::lstat(to, &status) == 0)
            return fileFailure(m_path, EEXIST);
        if (::rename(from, to) != 0)
            return fileFailure(m_path, errno);
    }
    m_temporary.clear();
    return Done{};
}

Result<> ImageFile::linkAs(const QByteArray &name) const
{
    if (::linkat(AT_FDCWD, descriptorPath(m_descriptor).constData(), AT_FDCWD, name.constData(),
                 AT_SYMLINK_FOLLOW)
        != 0)
        return fileFailure(m_path, errno);
    return Done{};
}

Result<> ImageFile::replace()
{
    if (m_temporary.isEmpty()) {
        struct stat status = {};
        if (::lstat(m_path.constData(), &status) != 0 && linkAs(m_path))
            return Done{};
        // A name can be taken away from another file by renaming only.
        const QByteArray name = TemporaryName::make(folderOf(m_path));
        if (Result<> linked = linkAs(name); !linked)
            return linked;
        m_temporary = name;
    }
    if (::rename(m_temporary.constData(), m_path.constData()) != 0)
        return fileFailure(m_path, errno);
    m_temporary.clear();
    return Done{};
}
