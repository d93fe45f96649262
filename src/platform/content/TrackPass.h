// One pass over a track, or a part of it, from its start to its end: opens the sources, joins what
// is small into large runs, and hands every byte of the track to a sink, in order. What the sink
// does with it is writing or comparing. The thread that runs it.
#pragma once

#include "TrackContent.h"

#include <memory>

class SourceFile;

// Where a pass goes to. No call gets more than TrackPass::chunkSize bytes.
class TrackSink
{
public:
    TrackSink() = default;
    TrackSink(const TrackSink &) = delete;
    TrackSink &operator=(const TrackSink &) = delete;
    TrackSink(TrackSink &&) = delete;
    TrackSink &operator=(TrackSink &&) = delete;
    virtual ~TrackSink() = default;

    // The track holds these bytes at a position.
    virtual Result<> bytes(qint64 start, const char *data, qint64 length) = 0;
    // The track is zero from a position on.
    virtual Result<> zeros(qint64 start, qint64 length) = 0;
    // The track holds, at a position, what the file holds at an offset.
    virtual Result<> piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length) = 0;
};

class TrackPass
{
public:
    static constexpr qint64 chunkSize = 262'144; // bytes; also the most that advance is told

    TrackPass(TrackSink &sink, const Advance &advance);

    // From a position to another one, which no extent crosses.
    [[nodiscard]] Result<> run(const QList<Extent> &extents, qint64 from, qint64 to);

private:
    [[nodiscard]] Result<> addZerosUpTo(qint64 position);
    [[nodiscard]] Result<> addBytes(const Extent &extent);
    [[nodiscard]] Result<> addSmallFile(const Extent &extent);
    [[nodiscard]] Result<> addLargeFile(const Extent &extent);
    [[nodiscard]] Result<> zeros(qint64 length);
    [[nodiscard]] Result<> flush();
    [[nodiscard]] Result<> makeRoom(qint64 length);
    [[nodiscard]] qint64 end() const { return m_start + m_fill; }
    [[nodiscard]] Result<> advanceBy(qint64 length);

    TrackSink &m_sink;
    const Advance &m_advance;
    std::unique_ptr<char[]> m_buffer; // what lies at m_start, not yet given to the sink
    qint64 m_start = 0;               // bytes from the start of the track
    qint64 m_fill = 0;                // bytes
};

// A sink for which all is bytes: what is zero, and what a file holds, is put into memory first.
class ByteSink : public TrackSink
{
public:
    Result<> zeros(qint64 start, qint64 length) final;
    Result<> piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length) final;

private:
    std::unique_ptr<char[]> m_buffer{new char[TrackPass::chunkSize]};
};
