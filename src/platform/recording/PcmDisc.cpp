#include "PcmDisc.h"

#include "DRMSF.h"
#include "PcmReader.h"
#include "SectorDigest.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

constexpr qint64 sectorSize = AudioSource::sectorSize;
constexpr qint64 compareAtOnce = 100;         // sectors
constexpr qint64 startWritingEvery = 8 << 20; // bytes

Result<> writeAll(int file, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written =
            ::write(file, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno != EINTR)
            return Failure{
                QStringLiteral("The disc cannot be written: %1").arg(qt_error_string(errno))};
        done += std::max<ssize_t>(written, 0);
    }
    return Done{};
}

// The bytes read; fewer than size at the file's end.
Result<qint64> readAll(int file, char *to, qint64 size, qint64 offset)
{
    qint64 done = 0;
    while (done < size) {
        const ssize_t got =
            ::pread(file, to + done, static_cast<size_t>(size - done), offset + done);
        if (got < 0 && errno != EINTR)
            return Failure{
                QStringLiteral("The disc cannot be read: %1").arg(qt_error_string(errno))};
        if (got == 0)
            break;
        done += std::max<ssize_t>(got, 0);
    }
    return done;
}

}

PcmDisc::PcmDisc(const QList<AudioSource> &tracks, const std::stop_token &stop)
    : m_tracks(tracks)
    , m_stop(stop)
{
    for (const AudioSource &track : tracks)
        m_byteCount += track.byteCount();
}

Result<> PcmDisc::writeTo(int fileDescriptor, const Advance &advance)
{
    m_digests.clear();
    m_digests.reserve(static_cast<size_t>(m_byteCount / sectorSize));
    PcmReader reader(m_tracks, m_stop);
    qint64 position = 0;
    qint64 started = 0;
    for (qsizetype left = m_tracks.size(); left > 0;) {
        const Result<QByteArray> chunk = reader.next();
        if (!chunk)
            return chunk.failure();
        const QByteArray &sectors = chunk.value();
        if (sectors.isEmpty()) {
            --left;
            continue;
        }
        for (qsizetype at = 0; at < sectors.size(); at += sectorSize)
            m_digests.push_back(sectorDigest(sectors.constData() + at));
        if (Result<> written = writeAll(fileDescriptor, sectors); !written)
            return written;
        position += sectors.size();
        // The disk works while the next tracks are decoded, not all at once in the end.
        if (position - started >= startWritingEvery) {
            ::sync_file_range(fileDescriptor, started, position - started, SYNC_FILE_RANGE_WRITE);
            started = position;
        }
        if (Result<> going = advance(sectors.size()); !going)
            return going;
    }
    return Done{};
}

Result<> PcmDisc::compareWith(int fileDescriptor, const Advance &advance) const
{
    const auto buffer = std::make_unique<char[]>(compareAtOnce * sectorSize);
    const auto total = static_cast<qint64>(m_digests.size());
    for (qint64 first = 0; first < total; first += compareAtOnce) {
        const qint64 count = std::min(compareAtOnce, total - first);
        const Result<qint64> got =
            readAll(fileDescriptor, buffer.get(), count * sectorSize, first * sectorSize);
        if (!got)
            return got.failure();
        if (Result<> same = compare(buffer.get(), got.value() / sectorSize, first); !same)
            return same;
        if (got.value() < count * sectorSize)
            return Failure{QStringLiteral("The disc ends at sector %1, before its last track does.")
                               .arg(first + got.value() / sectorSize)};
        if (Result<> going = advance(got.value()); !going)
            return going;
    }
    return Done{};
}

Result<> PcmDisc::compare(const char *sectors, qint64 count, qint64 first) const
{
    for (qint64 i = 0; i < count; ++i)
        if (sectorDigest(sectors + i * sectorSize) != m_digests.at(static_cast<size_t>(first + i)))
            return Failure{
                QStringLiteral("Verification found a difference in sector %1 of the disc (%2).")
                    .arg(first + i)
                    .arg(DRMSF(first + i).description())};
    return Done{};
}
