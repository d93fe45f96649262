#include "Upload.h"

#include "TreeFolders.h"

#include <QRandomGenerator>

#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>

Upload::Upload(const FileTree &tree, const FileKeys &keys, const QByteArray &name, qint64 size)
    : m_tree(tree)
    , m_keys(keys)
    , m_name(name)
    , m_incomingName(QByteArray::number(QRandomGenerator::system()->generate64(), 16))
    , m_file(::openat(tree.m_incoming.get(), m_incomingName.constData(),
                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR))
    , m_left(size)
{
    if (m_file)
        ::flock(m_file.get(), LOCK_EX | LOCK_NB);
}

Upload::~Upload()
{
    if (m_file)
        ::unlinkat(m_tree.m_incoming.get(), m_incomingName.constData(), 0);
}

bool Upload::write(const char *data, std::size_t size)
{
    if (!m_file || m_left < static_cast<qint64>(size))
        return false;
    m_left -= static_cast<qint64>(size);
    while (size > 0) {
        const ssize_t written = ::write(m_file.get(), data, size);
        if (written <= 0)
            return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool Upload::keep()
{
    if (!m_file || m_left != 0 || ::fsync(m_file.get()) != 0)
        return false;
    Descriptor folder;
    {
        // Ends with the descriptor. Between the look at the other files of this address and the
        // renaming no other upload, of whatever process, may do the same.
        const Descriptor lock = TreeFolders::enter(m_tree.m_stored, ".", TreeFolders::Find);
        if (!lock || ::flock(lock.get(), LOCK_EX) != 0 || m_tree.isTakenByOthers(m_keys, m_name))
            return false;
        folder = TreeFolders::enter(m_tree.m_stored, m_keys, TreeFolders::Make);
        if (!folder || !takePlace(folder))
            return false;
    }
    return ::fsync(folder.get()) == 0;
}

// What has the name must be a file.
bool Upload::takePlace(const Descriptor &folder)
{
    struct stat status = {};
    const bool isThere =
        ::fstatat(folder.get(), m_name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    if ((isThere && !S_ISREG(status.st_mode))
        || ::renameat(m_tree.m_incoming.get(), m_incomingName.constData(), folder.get(),
                      m_name.constData())
               != 0)
        return false;
    m_file = Descriptor();
    return true;
}
