#include "DiscVerifier.h"

#include "DRMSF.h"
#include "SectorDigest.h"
#include "TrackPass.h"

#include <algorithm>
#include <cstring>
#include <sys/types.h>

#include <libburn/libburn.h>

namespace {

constexpr qint64 blockSize = TrackContent::blockSize;
constexpr qint64 readAtOnce = 32; // blocks; libburn's own limit, one command
constexpr qint64 sectorSize = AudioSource::sectorSize;
constexpr qint64 sectorsAtOnce = 24;
constexpr qint64 frameSize = 4; // bytes of a sample of both channels
constexpr qint64 farthest = DiscFeed::farthestShift;

class DiscComparer : public ByteSink
{
public:
    DiscComparer(LibburnDrive &drive, qint64 blockCount)
        : m_drive(drive)
        , m_blockCount(blockCount)
    {
    }

    Result<> bytes(qint64 start, const char *data, qint64 length) override
    {
        for (qint64 done = 0; done < length;) {
            const qint64 position = start + done;
            if (Result<> got = load(position / blockSize); !got)
                return got;
            const qint64 offset = position - m_first * blockSize;
            const qint64 count = std::min(length - done, m_count * blockSize - offset);
            const char *found = m_buffer.constData() + offset;
            const auto *different = std::mismatch(data + done, data + done + count, found).first;
            if (different != data + done + count)
                return Failure{
                    QStringLiteral("Verification found a difference in block %1 of the disc.")
                        .arg((start + (different - data)) / blockSize)};
            done += count;
        }
        return Done{};
    }

private:
    Result<> load(qint64 block)
    {
        if (block >= m_first && block < m_first + m_count)
            return Done{};
        m_first = block;
        m_count = std::min(readAtOnce, m_blockCount - block);
        return m_drive.readBlocks(m_first, m_count, m_buffer.data());
    }

    LibburnDrive &m_drive;
    const qint64 m_blockCount;
    QByteArray m_buffer = QByteArray(readAtOnce * blockSize, Qt::Uninitialized);
    qint64 m_first = 0;
    qint64 m_count = 0;
};

}

Result<> DiscVerifier::verifyData(const TrackContent &content)
{
    DiscComparer comparer(m_drive, content.blockCount());
    return content.passTo(comparer, m_advance);
}

bool DiscVerifier::readTogether(qint64 first, qint64 count, char *to)
{
    constexpr int withoutSingleSteps = 1 << 2; // after which libburn fails in any case
    off_t got = 0;
    m_drive.messages().forget();
    return burn::burn_read_audio(m_drive.handle(), static_cast<int>(first), to, count * sectorSize,
                                 &got, withoutSingleSteps)
           > 0;
}

// One by one where a drive cannot read them together, so that a slip costs nothing.
Result<QByteArray> DiscVerifier::readSectors(qint64 first, qint64 count)
{
    QByteArray bytes(count * sectorSize, Qt::Uninitialized);
    if (readTogether(first, count, bytes.data()))
        return bytes;
    for (qint64 i = 0; i < count; ++i) {
        char *sector = bytes.data() + i * sectorSize;
        if (!readTogether(first + i, 1, sector) && !readTogether(first + i, 1, sector))
            return m_drive.failure(QStringLiteral("Sector %1 of the disc (%2) cannot be read")
                                       .arg(first + i)
                                       .arg(DRMSF(first + i).description()));
    }
    return bytes;
}

// By how many bytes what is read lies behind what was asked for. Of several places that would do,
// as on a disc of one steady tone, the nearest is taken.
Result<qint64> DiscVerifier::shiftOf(const DiscFeed &feed)
{
    const QByteArray &mark = feed.mark();
    const auto total = static_cast<qint64>(feed.digests().size());
    if (mark.isEmpty())
        return 0;
    const qint64 first = feed.markSector() - farthest;
    const qint64 last = std::min(feed.markSector() + mark.size() / sectorSize + farthest, total);
    const Result<QByteArray> read = readSectors(first, last - first);
    if (!read)
        return read.failure();
    const qint64 expected = farthest * sectorSize;
    for (qint64 distance = 0; distance <= expected; distance += frameSize)
        for (const qint64 shift : {distance, -distance}) {
            const qint64 at = expected + shift;
            if (at + mark.size() <= read.value().size()
                && std::memcmp(read.value().constData() + at, mark.constData(),
                               static_cast<size_t>(mark.size()))
                       == 0)
                return shift;
        }
    return Failure{
        QStringLiteral("Verification found a difference near sector %1 of the disc (%2).")
            .arg(feed.markSector())
            .arg(DRMSF(feed.markSector()).description())};
}

// Sectors at the disc's ends of which some samples lie where the drive does not read them cannot
// be compared.
Result<> DiscVerifier::compareSectors(const DiscFeed &feed, qint64 first, qint64 count,
                                      qint64 shift)
{
    const auto total = static_cast<qint64>(feed.digests().size());
    const qint64 begin = first * sectorSize + shift;
    const qint64 from = std::max<qint64>(
        begin >= 0 ? begin / sectorSize : -((-begin + sectorSize - 1) / sectorSize), 0);
    const qint64 to = std::min((begin + count * sectorSize + sectorSize - 1) / sectorSize, total);
    const Result<QByteArray> read = readSectors(from, to - from);
    if (!read)
        return read.failure();
    for (qint64 sector = first; sector < first + count; ++sector) {
        const qint64 at = sector * sectorSize + shift - from * sectorSize;
        if (at < 0 || at + sectorSize > read.value().size())
            continue;
        if (sectorDigest(read.value().constData() + at)
            != feed.digests().at(static_cast<size_t>(sector)))
            return Failure{
                QStringLiteral("Verification found a difference in sector %1 of the disc (%2).")
                    .arg(sector)
                    .arg(DRMSF(sector).description())};
    }
    return Done{};
}

Result<> DiscVerifier::verifyAudio(const DiscFeed &feed)
{
    const Result<qint64> shift = shiftOf(feed);
    if (!shift)
        return shift.failure();
    const auto total = static_cast<qint64>(feed.digests().size());
    for (qint64 first = 0; first < total; first += sectorsAtOnce) {
        const qint64 count = std::min(sectorsAtOnce, total - first);
        if (Result<> same = compareSectors(feed, first, count, shift.value()); !same)
            return same;
        if (Result<> going = m_advance(count * sectorSize); !going)
            return going;
    }
    return Done{};
}
