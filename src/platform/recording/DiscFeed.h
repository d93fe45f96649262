// The bytes of a layout, read and decoded ahead by a thread of its own, as the sources that libburn
// pulls its tracks from. Remembers of audio what verification needs. The thread that serves
// libburn.
#pragma once

#include "DiscLayout.h"
#include "SectorQueue.h"

#include <thread>
#include <vector>

namespace burn {
struct burn_source;
}

class DiscFeed
{
public:
    // Begins to read. Tracks that are shorter than that many blocks are filled up with zeros. The
    // stop token ends it.
    DiscFeed(DiscLayout layout, qint64 shortestTrack, const std::stop_token &stop);
    ~DiscFeed();
    DiscFeed(const DiscFeed &) = delete;
    DiscFeed &operator=(const DiscFeed &) = delete;

    [[nodiscard]] SectorQueue &queue() { return m_queue; }

    // The source of the next track, which has that many blocks; null without memory. It belongs to
    // the caller, and the feed must outlive it.
    [[nodiscard]] burn::burn_source *sourceOf(qint64 blocks);

    // Bytes of a block of this disc.
    [[nodiscard]] qint64 blockSize() const;

    // Of an audio disc, once all of it was taken: a digest a sector, and the samples of two
    // neighbouring sectors that are found near them only once, with the number of the first. Where
    // there are none, as in a steady tone, of the first that are not silent; empty on a silent
    // disc.
    [[nodiscard]] const std::vector<std::size_t> &digests() const { return m_digests; }
    [[nodiscard]] const QByteArray &mark() const { return m_mark; }
    [[nodiscard]] qint64 markSector() const { return m_markSector; }

    // Sectors by which a drive may read from a wrong address.
    static constexpr qint64 farthestShift = 3;

private:
    [[nodiscard]] Result<> feedData();
    [[nodiscard]] Result<> feedAudio(const std::stop_token &stop);
    void remember(const QByteArray &sectors);
    void lookForMark(const char *sector);

    const DiscLayout m_layout;
    const qint64 m_shortestTrack; // blocks
    SectorQueue m_queue;
    std::vector<std::size_t> m_digests;
    QByteArray m_recent; // sectors among which a mark is looked for
    bool m_hasMark = false;
    QByteArray m_mark;
    qint64 m_markSector = 0;
    std::jthread m_thread; // last: it uses all of the above
};
