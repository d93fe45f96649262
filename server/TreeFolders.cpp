#include "TreeFolders.h"

#include <fcntl.h>

Descriptor TreeFolders::enter(const Descriptor &folder, const QByteArray &name, Way way)
{
    if (way == Make && ::mkdirat(folder.get(), name.constData(), S_IRWXU) == 0)
        ::fsync(folder.get());
    return Descriptor(
        ::openat(folder.get(), name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

Descriptor TreeFolders::enter(const Descriptor &stored, const FileKeys &keys, Way way)
{
    constexpr std::array prefixes{"g-", "c-", "m-", "r-"};
    Descriptor folder = enter(stored, ".", Find);
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (!keys[i].isNull())
            folder = enter(folder, prefixes[i] + keys[i], way);
    return enter(folder, "files", way);
}

bool TreeFolders::isRegular(const Descriptor &folder, const QByteArray &name)
{
    struct stat status = {};
    return ::fstatat(folder.get(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0
           && S_ISREG(status.st_mode);
}
