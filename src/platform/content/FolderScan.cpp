#include "FolderScan.h"

#include "HfsPlusNames.h"
#include "SourceFile.h"

#define LIBISOFS_WITHOUT_LIBBURN
#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <libisofs/libisofs.h>
#include <memory>
#include <unistd.h>

namespace {

// A file as libisofs knows it. Its own name for the first member is a word of C++, for which case
// its manual asks for a copy of the structure.
struct Stream
{
    IsoStreamIface *interface;
    int references;
    void *data;

    off_t size;
    dev_t device;
    ino_t inode;
};

Stream *streamOf(IsoStream *stream)
{
    return reinterpret_cast<Stream *>(stream);
}

// What libisofs writes behind the metadata is thrown away, so it gets zeros and opens nothing.
IsoStreamIface *streamInterface()
{
    static IsoStreamIface interface = {
        1,
        {'u', 's', 'e', 'r'},
        [](IsoStream *) { return 1; },
        [](IsoStream *) { return 1; },
        [](IsoStream *stream) { return streamOf(stream)->size; },
        [](IsoStream *, void *buffer, size_t count) {
            std::memset(buffer, 0, count);
            return static_cast<int>(count);
        },
        [](IsoStream *) { return 1; },
        [](IsoStream *stream, unsigned int *fileSystem, dev_t *device, ino_t *inode) {
            *fileSystem = 1; // the local one; the names of one inode share their content
            *device = streamOf(stream)->device;
            *inode = streamOf(stream)->inode;
        },
        [](IsoStream *) {},
        [](IsoStream *) { return 1; },
        nullptr,
        nullptr,
        nullptr,
    };
    return &interface;
}

int addFile(IsoDir *parent, const char *name, const struct stat &status, IsoNode **node)
{
    auto *stream = static_cast<Stream *>(std::malloc(sizeof(Stream))); // NOLINT: libisofs frees it
    if (!stream)
        return ISO_OUT_OF_MEM;
    *stream = {streamInterface(), 1, nullptr, status.st_size, status.st_dev, status.st_ino};
    IsoFile *file = nullptr;
    const int result =
        iso_tree_add_new_file(parent, name, reinterpret_cast<IsoStream *>(stream), &file);
    if (result < 0)
        iso_stream_unref(reinterpret_cast<IsoStream *>(stream));
    *node = reinterpret_cast<IsoNode *>(file); // NOLINT: the tree owns the stream
    return result;
}

// A disc is read on other machines, where its owner's number means somebody else or nobody.
// Everyone may read it, then, and a copy of it may be written to.
void setAttributes(IsoNode *node, const struct stat &status)
{
    const bool enter = S_ISDIR(status.st_mode) || (status.st_mode & 0111) != 0;
    if (!S_ISLNK(status.st_mode))
        iso_node_set_permissions(node, enter ? 0755 : 0644);
    iso_node_set_uid(node, 0);
    iso_node_set_gid(node, 0);
    iso_node_set_mtime(node, status.st_mtim.tv_sec);
    iso_node_set_atime(node, status.st_atim.tv_sec);
    iso_node_set_ctime(node, status.st_ctim.tv_sec);
}

Result<QByteArray> linkTarget(int folder, const char *name, const QByteArray &path)
{
    std::array<char, PATH_MAX> target = {};
    const ssize_t length = ::readlinkat(folder, name, target.data(), target.size());
    if (length < 0)
        return fileFailure(path, errno);
    return QByteArray(target.data(), length);
}

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

}

Result<> FolderScan::run(const QByteArray &folder, IsoDir *root)
{
    m_folder = folder == "/" ? QByteArray() : folder;
    struct stat status = {};
    if (::stat(folder.constData(), &status) != 0)
        return fileFailure(folder, errno);
    setAttributes(reinterpret_cast<IsoNode *>(root), status);
    m_pending.append(Pending{{}, root});
    while (!m_pending.isEmpty()) {
        if (Result<> scanned = scanFolder(m_pending.takeLast()); !scanned)
            return scanned;
    }
    return Done{};
}

Result<> FolderScan::scanFolder(const Pending &pending)
{
    Result<QList<Entry>> read = readFolder(m_folder + pending.path);
    if (!read)
        return read.failure();
    // libisofs keeps them sorted and looks for each one's place from the front.
    QList<Entry> &entries = read.value();
    std::sort(entries.begin(), entries.end(),
              [](const Entry &a, const Entry &b) { return a.name > b.name; });
    const QHash<QByteArray, QByteArray> others = hfsPlusNames(entries);
    for (const Entry &entry : std::as_const(entries)) {
        const auto other = others.constFind(entry.name);
        const bool alone = other == others.constEnd();
        Result<> added = addEntry(pending, entry, entry.name, alone ? 0 : LIBISO_HIDE_ON_HFSPLUS);
        if (added && !alone)
            added = addEntry(pending, entry, *other, LIBISO_HIDE_ON_RR | LIBISO_HIDE_ON_JOLIET);
        if (!added)
            return added;
    }
    return Done{};
}

QHash<QByteArray, QByteArray> FolderScan::hfsPlusNames(const QList<Entry> &entries) const
{
    QList<QByteArray> names;
    if (m_kind == IsoKind::Hybrid)
        std::transform(entries.crbegin(), entries.crend(), std::back_inserter(names),
                       [](const Entry &entry) { return entry.name; });
    return HfsPlusNames::replacements(names);
}

Result<> FolderScan::addEntry(const Pending &parent, const Entry &entry, const QByteArray &name,
                              int hidden)
{
    const QByteArray path = parent.path + '/' + entry.name;
    IsoNode *node = nullptr;
    if (const int result = addNode(parent.node, name.constData(), entry, &node); result < 0)
        return fileFailure(m_folder + path, QString::fromUtf8(iso_error_to_msg(result)));
    setAttributes(node, entry.status);
    iso_node_set_hidden(node, hidden);
    if (S_ISREG(entry.status.st_mode))
        m_files.insert(path, {entry.status.st_size, changeTime(entry.status)});
    else if (S_ISDIR(entry.status.st_mode))
        m_pending.append({path, reinterpret_cast<IsoDir *>(node)});
    return Done{};
}

Result<QList<FolderScan::Entry>> FolderScan::readFolder(const QByteArray &path) const
{
    const QByteArray name = path.isEmpty() ? QByteArray("/") : path;
    const int descriptor =
        ::open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const std::unique_ptr<DIR, CloseFolder> folder(descriptor < 0 ? nullptr
                                                                  : ::fdopendir(descriptor));
    if (!folder)
        return fileFailure(name, errno);
    QList<Entry> entries;
    for (;;) {
        if (m_stop.stop_requested())
            return fileFailure(name, ECANCELED);
        errno = 0;
        const dirent *found = ::readdir(folder.get());
        if (!found && errno != 0)
            return fileFailure(name, errno);
        if (!found)
            return entries;
        if (std::strcmp(found->d_name, ".") == 0 || std::strcmp(found->d_name, "..") == 0)
            continue;
        Result<Entry> entry = readEntry(descriptor, path, found->d_name);
        if (!entry)
            return entry.failure();
        entries.append(std::move(entry.value()));
    }
}

Result<FolderScan::Entry> FolderScan::readEntry(int folder, const QByteArray &path,
                                                const char *name) const
{
    Entry entry;
    entry.name = name;
    const auto failure = [&] { return fileFailure(path + '/' + entry.name, errno); };
    if (::fstatat(folder, name, &entry.status, AT_SYMLINK_NOFOLLOW) != 0)
        return failure();
    // Now rather than in the middle of the burn, when the disc would be lost.
    if (S_ISREG(entry.status.st_mode) && ::faccessat(folder, name, R_OK, AT_EACCESS) != 0)
        return failure();
    if (S_ISLNK(entry.status.st_mode)) {
        Result<QByteArray> target = linkTarget(folder, name, path + '/' + entry.name);
        if (!target)
            return target.failure();
        entry.target = std::move(target.value());
    }
    return entry;
}

int FolderScan::addNode(IsoDir *parent, const char *name, const Entry &entry, IsoNode **node)
{
    switch (entry.status.st_mode & S_IFMT) {
    case S_IFREG:
        return addFile(parent, name, entry.status, node);
    case S_IFDIR:
        return iso_tree_add_new_dir(parent, name, reinterpret_cast<IsoDir **>(node));
    case S_IFLNK:
        return iso_tree_add_new_symlink(parent, name, entry.target.constData(),
                                        reinterpret_cast<IsoSymlink **>(node));
    default:
        return iso_tree_add_new_special(parent, name, entry.status.st_mode, entry.status.st_rdev,
                                        reinterpret_cast<IsoSpecial **>(node));
    }
}
