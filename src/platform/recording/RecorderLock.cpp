#include "RecorderLock.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace {

struct flock wholeFile()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

}

bool RecorderLock::acquire()
{
    if (m_file >= 0)
        return false;
    const int file =
        ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    struct flock whole = wholeFile();
    if (file >= 0 && ::fcntl(file, F_OFD_SETLK, &whole) == 0) {
        m_file = file;
        return true;
    }
    if (file >= 0)
        ::close(file);
    return false;
}

void RecorderLock::release()
{
    if (m_file >= 0)
        ::close(m_file);
    m_file = -1;
}

bool RecorderLock::isHeldElsewhere(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC);
    if (file < 0)
        return false;
    struct flock whole = wholeFile();
    const bool held = ::fcntl(file, F_OFD_GETLK, &whole) == 0 && whole.l_type != F_UNLCK;
    ::close(file);
    return held;
}
