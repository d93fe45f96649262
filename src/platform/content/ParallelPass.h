// A pass over a track by two threads at a time, in parts of some megabytes, so that one reads while
// the other one writes; still nearly in order, as disks like it. The thread that runs it.
#pragma once

#include "TrackPass.h"

#include <atomic>
#include <mutex>

class ParallelPass
{
public:
    // Makes a sink for one thread.
    using MakeSink = std::function<std::unique_ptr<TrackSink>()>;

    // Advance is called by both threads, one at a time.
    ParallelPass(const QList<Extent> &extents, qint64 byteCount, const Advance &advance);

    // Returns the first failure.
    [[nodiscard]] Result<> run(const MakeSink &makeSink);

private:
    struct Part
    {
        qint64 start = 0; // bytes from the start of the track
        qint64 end = 0;
    };

    void divide(qint64 byteCount);
    void work(TrackSink &sink);
    [[nodiscard]] QList<Extent> extentsOf(const Part &part) const;
    [[nodiscard]] Result<> advanceBy(qint64 bytes);
    void fail(const Result<> &failure);

    const QList<Extent> &m_extents;
    const Advance &m_advance;
    QList<Part> m_parts;
    std::atomic<qsizetype> m_next = 0; // the part that nobody has taken yet
    std::atomic<bool> m_failed = false;
    std::mutex m_mutex; // guards what follows, and the calls of m_advance
    Result<> m_result = Done{};
};
