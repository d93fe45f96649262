#include "TemporaryName.h"

#include <QByteArrayView>
#include <QRandomGenerator>
#include <QString>
#include <QSysInfo>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *prefix = ".maplorn-diskimage-";

// On a file system that machines share, a lock may hold on one of them only.
QByteArray suffix()
{
    return "@" + QSysInfo::machineHostName().replace(u'/', u'_').toUtf8() + ".part";
}

void removeUnlocked(int folder, const char *name)
{
    const int file = ::openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0)
        ::unlinkat(folder, name, 0);
    ::close(file);
}

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

}

// Not the image's own name with something added, since that may be as long as a name can be.
QByteArray TemporaryName::make(const QByteArray &folder)
{
    const QByteArray number = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    return folder + '/' + prefix + number + suffix();
}

bool TemporaryName::lock(int descriptor)
{
    // Where there are no locks, nothing is removed either.
    struct stat status = {};
    return ::flock(descriptor, LOCK_EX) != 0 || ::fstat(descriptor, &status) != 0
           || status.st_nlink > 0;
}

void TemporaryName::removeLeftovers(const QByteArray &folder)
{
    const std::unique_ptr<DIR, CloseFolder> opened(::opendir(folder.constData()));
    const QByteArray ours = suffix();
    while (const dirent *entry = opened ? ::readdir(opened.get()) : nullptr) {
        const QByteArrayView name(entry->d_name);
        if (name.startsWith(prefix) && name.endsWith(ours))
            removeUnlocked(::dirfd(opened.get()), entry->d_name);
    }
}
