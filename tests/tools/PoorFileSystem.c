/* Loaded into a program that is tested: a system without what POOR_FILE_SYSTEM names, which may be
   files without a name (tmpfile), renaming that replaces nothing (renameat2), hard links (link) and
   the list of a process's files (proc). */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>

static int lacks(const char *what, int error)
{
    const char *missing = getenv("POOR_FILE_SYSTEM");
    if (!missing || !strstr(missing, what))
        return 0;
    errno = error;
    return 1;
}

typedef int Open(const char *, int, mode_t);

static int openAs(const char *symbol, const char *path, int flags, mode_t mode)
{
    if ((flags & O_TMPFILE) == O_TMPFILE && lacks("tmpfile", EOPNOTSUPP))
        return -1;
    return ((Open *)dlsym(RTLD_NEXT, symbol))(path, flags, mode);
}

int open(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return openAs("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return openAs("open64", path, flags, mode);
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags)
{
    typedef int Rename(int, const char *, int, const char *, unsigned int);
    if (flags != 0 && lacks("renameat2", EINVAL))
        return -1;
    return ((Rename *)dlsym(RTLD_NEXT, "renameat2"))(fromFolder, from, toFolder, to, flags);
}

int link(const char *from, const char *to)
{
    typedef int Link(const char *, const char *);
    return lacks("link", EPERM) ? -1 : ((Link *)dlsym(RTLD_NEXT, "link"))(from, to);
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags)
{
    typedef int Link(int, const char *, int, const char *, int);
    if (strncmp(from, "/proc/", 6) == 0 && lacks("proc", ENOENT))
        return -1;
    return ((Link *)dlsym(RTLD_NEXT, "linkat"))(fromFolder, from, toFolder, to, flags);
}

int access(const char *path, int mode)
{
    typedef int Access(const char *, int);
    if (strncmp(path, "/proc/", 6) == 0 && lacks("proc", ENOENT))
        return -1;
    return ((Access *)dlsym(RTLD_NEXT, "access"))(path, mode);
}
