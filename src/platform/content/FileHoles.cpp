#include "FileHoles.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

qint64 FileHoles::endOfHole(int descriptor, qint64 offset, qint64 end)
{
    const off_t data = ::lseek(descriptor, offset, SEEK_DATA);
    if (data < 0) // nothing but a hole up to the end, or a file system that knows none
        return errno == ENXIO ? end : offset;
    return std::min<qint64>(data, end);
}

qint64 FileHoles::endOfData(int descriptor, qint64 offset, qint64 end)
{
    const off_t hole = ::lseek(descriptor, offset, SEEK_HOLE);
    return hole <= offset ? end : std::min<qint64>(hole, end);
}
