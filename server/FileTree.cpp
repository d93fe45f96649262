#include "FileTree.h"

#include "TreeFolders.h"

#include <QFile>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <vector>

namespace {

constexpr qsizetype longestName = 255;
constexpr qint64 reservedSpace = 64LL << 20; // bytes

struct FolderEnd
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

// The names in it, but for "." and "..".
QByteArrayList entries(const Descriptor &descriptor)
{
    const int listed = ::openat(descriptor.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, FolderEnd> folder(listed < 0 ? nullptr : ::fdopendir(listed));
    QByteArrayList names;
    // readdir is safe where each thread reads a folder of its own.
    while (const dirent *entry = folder ? ::readdir(folder.get()) : nullptr) // NOLINT
        if (FileTree::isValidName(entry->d_name))
            names.append(entry->d_name);
    return names;
}

// An upload at work, of whatever process, holds a lock on its file.
void removeAbandoned(const Descriptor &incoming)
{
    for (const QByteArray &name : entries(incoming)) {
        const Descriptor file(
            ::openat(incoming.get(), name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
        if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
            ::unlinkat(incoming.get(), name.constData(), 0);
    }
}

// The ways to give so many components to keys, the earliest keys first.
std::vector<FileKeys> assignments(const QByteArrayList &components)
{
    std::vector<FileKeys> found;
    for (unsigned present = 0; present < 1U << FileKeys().size(); ++present) {
        if (std::popcount(present) != components.size())
            continue;
        FileKeys keys;
        qsizetype next = 0;
        for (std::size_t i = 0; i < keys.size(); ++i)
            if ((present >> i & 1U) != 0)
                keys[i] = components.at(next++);
        found.push_back(keys);
    }
    return found;
}

}

Result<FileTree> FileTree::open(const QString &folder)
{
    const QByteArray path = QFile::encodeName(folder);
    ::mkdir(path.constData(), S_IRWXU);
    const Descriptor top(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FileTree tree;
    tree.m_stored = TreeFolders::enter(top, "stored", TreeFolders::Make);
    tree.m_incoming = TreeFolders::enter(top, "incoming", TreeFolders::Make);
    if (!tree.m_stored || !tree.m_incoming)
        return Failure{
            QStringLiteral("%1: %2").arg(folder, QString::fromLocal8Bit(std::strerror(errno)))};
    removeAbandoned(tree.m_incoming);
    return tree;
}

bool FileTree::isValidName(const QByteArray &name)
{
    return !name.isEmpty() && name.size() <= longestName && name != "." && name != ".."
           && !name.contains('/') && !name.contains('\\') && !name.contains('\0')
           && QUtf8StringView(name).isValidUtf8();
}

bool FileTree::areValid(const FileKeys &keys)
{
    return std::ranges::all_of(keys, [](const QByteArray &key) {
        return key.isNull()
               || (isValidName(key) && key.size() <= longestName - TreeFolders::prefixLength);
    });
}

std::optional<FileTree::File> FileTree::find(const FileKeys &keys, const QByteArray &name) const
{
    if (!areValid(keys) || !isValidName(name))
        return std::nullopt;
    const Descriptor folder = TreeFolders::enter(m_stored, keys, TreeFolders::Find);
    // Opening a pipe must not wait for its other end.
    File file{.descriptor = Descriptor(::openat(folder.get(), name.constData(),
                                                O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))};
    struct stat status = {};
    if (!file.descriptor || ::fstat(file.descriptor.get(), &status) != 0
        || !S_ISREG(status.st_mode))
        return std::nullopt;
    file.size = status.st_size;
    return file;
}

std::optional<FileTree::File> FileTree::find(const QByteArrayList &components) const
{
    if (components.isEmpty() || !std::ranges::all_of(components, &isValidName))
        return std::nullopt;
    for (const FileKeys &keys : assignments(components.first(components.size() - 1)))
        if (std::optional<File> file = find(keys, components.last()))
            return file;
    return std::nullopt;
}

QByteArrayList FileTree::names(const FileKeys &keys) const
{
    const Descriptor folder = TreeFolders::enter(m_stored, keys, TreeFolders::Find);
    if (!folder)
        return {};
    QByteArrayList names = entries(folder);
    names.removeIf([&](const QByteArray &name) { return !TreeFolders::isRegular(folder, name); });
    std::ranges::sort(names);
    return names;
}

bool FileTree::remove(const FileKeys &keys, const QByteArray &name) const
{
    const Descriptor folder = TreeFolders::enter(m_stored, keys, TreeFolders::Find);
    return folder && TreeFolders::isRegular(folder, name)
           && ::unlinkat(folder.get(), name.constData(), 0) == 0 && ::fsync(folder.get()) == 0;
}

qint64 FileTree::freeSpace() const
{
    struct statvfs status = {};
    if (::fstatvfs(m_incoming.get(), &status) != 0)
        return 0;
    const auto bytes = static_cast<qint64>(status.f_bavail * status.f_frsize);
    return std::max<qint64>(0, bytes - reservedSpace);
}

bool FileTree::isTakenByOthers(const FileKeys &keys, const QByteArray &name) const
{
    QByteArrayList components;
    for (const QByteArray &key : keys)
        if (!key.isNull())
            components.append(key);
    const std::vector<FileKeys> all = assignments(components);
    return std::ranges::any_of(
        all, [&](const FileKeys &other) { return other != keys && find(other, name); });
}
