#include "Overwriting.h"

#include "FileHoles.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace {

constexpr qint64 pieceSize = 4'194'304; // bytes brought to the disk at a time

bool writeAll(int descriptor, const QByteArray &bytes, qint64 length, qint64 position)
{
    for (qint64 done = 0; done < length;) {
        const ssize_t put = ::pwrite(descriptor, bytes.constData(),
                                     static_cast<size_t>(length - done), position + done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        done += put;
    }
    return ::fdatasync(descriptor) == 0;
}

}

Result<> Overwriting::withZeros(const QFile &file, const Advance &advance)
{
    const QByteArray zeros(pieceSize, '\0');
    const int descriptor = file.handle();
    const qint64 size = file.size();
    for (qint64 position = 0; position < size;) {
        qint64 next = FileHoles::endOfHole(descriptor, position, size);
        if (next == position) {
            next = std::min(FileHoles::endOfData(descriptor, position, size), position + pieceSize);
            if (!writeAll(descriptor, zeros, next - position, position))
                return Failure{
                    QStringLiteral("%1: %2").arg(file.fileName(), qt_error_string(errno))};
        }
        if (Result<> going = advance(next - position); !going)
            return going;
        position = next;
    }
    return Done{};
}
