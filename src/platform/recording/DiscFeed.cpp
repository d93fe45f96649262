#include "DiscFeed.h"

#include "PcmReader.h"
#include "SectorDigest.h"
#include "TrackPass.h"

#include <algorithm>
#include <cstdlib>
#include <sys/types.h>

#include <libburn/libburn.h>

namespace {

constexpr qint64 reserve = 32 << 20; // bytes; three seconds of the fastest BD
constexpr qint64 sectorSize = AudioSource::sectorSize;

// The mark by which read samples are aligned, and where it lies among those around it.
constexpr qsizetype markSize = 2 * sectorSize;
constexpr qsizetype before = DiscFeed::farthestShift * sectorSize;
constexpr qsizetype markedSize = before + markSize + before;
constexpr qint64 frameSize = 4; // bytes of a sample of both channels

const Failure noLongerWanted{QStringLiteral("The job was cancelled.")};

class QueueSink : public ByteSink
{
public:
    explicit QueueSink(SectorQueue &queue)
        : m_queue(queue)
    {
    }

    Result<> bytes(qint64, const char *data, qint64 length) override
    {
        return m_queue.put(data, length) ? Result<>(Done{}) : noLongerWanted;
    }

private:
    SectorQueue &m_queue;
};

// What libburn knows of a track's source.
struct TrackSource
{
    SectorQueue *queue;
    qint64 size; // bytes, filled up
    qint64 left; // bytes that are not zeros at the end
};

TrackSource &trackSource(burn::burn_source *source)
{
    return *static_cast<TrackSource *>(source->data);
}

int readTrack(burn::burn_source *source, unsigned char *buffer, int size)
{
    TrackSource &track = trackSource(source);
    const qint64 count = std::min<qint64>(size, track.left);
    const qint64 got = count > 0 ? track.queue->take(reinterpret_cast<char *>(buffer), count) : 0;
    if (got < count)
        return -1;
    track.left -= got;
    std::fill(buffer + got, buffer + size, '\0');
    return size;
}

off_t sizeOfTrack(burn::burn_source *source)
{
    return trackSource(source).size;
}

int keepSize(burn::burn_source *, off_t)
{
    return 1;
}

void freeTrack(burn::burn_source *source)
{
    delete static_cast<TrackSource *>(source->data);
}

}

DiscFeed::DiscFeed(DiscLayout layout, qint64 shortestTrack, const std::stop_token &stop)
    : m_layout(std::move(layout))
    , m_shortestTrack(shortestTrack)
    , m_queue(reserve)
    , m_thread([this, stop] { m_queue.end(m_layout.isAudio() ? feedAudio(stop) : feedData()); })
{
}

DiscFeed::~DiscFeed()
{
    m_queue.close();
}

Result<> DiscFeed::feedData()
{
    QueueSink sink(m_queue);
    return m_layout.tracks().first().passTo(sink, {});
}

Result<> DiscFeed::feedAudio(const std::stop_token &stop)
{
    PcmReader reader(m_layout.audioTracks(), stop);
    const QByteArray silence(sectorSize, '\0');
    qint64 sectors = 0; // of the track
    for (qsizetype left = m_layout.audioTracks().size(); left > 0;) {
        const Result<QByteArray> chunk = reader.next();
        if (!chunk)
            return chunk.failure();
        if (chunk.value().isEmpty()) {
            for (; sectors < m_shortestTrack; ++sectors)
                remember(silence);
            sectors = 0;
            --left;
            continue;
        }
        sectors += chunk.value().size() / sectorSize;
        remember(chunk.value());
        if (!m_queue.put(chunk.value().constData(), chunk.value().size()))
            return noLongerWanted;
    }
    return Done{};
}

void DiscFeed::remember(const QByteArray &sectors)
{
    for (qsizetype at = 0; at < sectors.size(); at += sectorSize) {
        const char *sector = sectors.constData() + at;
        m_digests.push_back(sectorDigest(sector));
        if (!m_hasMark)
            lookForMark(sector);
    }
}

// A drive that reads a steady tone from a wrong address reads the same samples as from the right
// one, or from several.
void DiscFeed::lookForMark(const char *sector)
{
    m_recent.append(sector, sectorSize);
    if (m_recent.size() < markedSize)
        return;
    const QByteArrayView mark = QByteArrayView(m_recent).sliced(before, markSize);
    const bool silent = std::ranges::all_of(mark, [](char byte) { return byte == 0; });
    qsizetype found = 0;
    for (qsizetype at = 0; at + markSize <= markedSize && !silent; at += frameSize)
        if (QByteArrayView(m_recent).sliced(at, markSize) == mark)
            ++found;
    m_hasMark = found == 1;
    if (m_hasMark || (!silent && m_mark.isEmpty())) {
        m_mark = mark.toByteArray();
        m_markSector = static_cast<qint64>(m_digests.size()) - (markSize + before) / sectorSize;
    }
    m_recent.remove(0, sectorSize);
}

qint64 DiscFeed::blockSize() const
{
    return m_layout.isAudio() ? sectorSize : TrackContent::blockSize;
}

burn::burn_source *DiscFeed::sourceOf(qint64 blocks)
{
    // libburn releases it with free().
    auto *source = static_cast<burn::burn_source *>(std::calloc(1, sizeof(burn::burn_source)));
    if (!source)
        return nullptr;
    source->refcount = 1;
    source->read = readTrack;
    source->get_size = sizeOfTrack;
    source->set_size = keepSize;
    source->free_data = freeTrack;
    source->data = new TrackSource{&m_queue, std::max(blocks, m_shortestTrack) * blockSize(),
                                   blocks * blockSize()};
    return source;
}
