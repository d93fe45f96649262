#include "TrackPass.h"

#include "FileHoles.h"
#include "SourceFile.h"

#include <algorithm>
#include <cstring>

namespace {

// Below this, copying through the buffer, where many files share one write, is the faster way.
constexpr qint64 smallFile = 65'536;

// A longer gap is given to the sink as zeros, which a writer can skip.
constexpr qint64 smallGap = 16'384;

}

TrackPass::TrackPass(TrackSink &sink, const Advance &advance)
    : m_sink(sink)
    , m_advance(advance)
    , m_buffer(new char[chunkSize])
{
}

Result<> TrackPass::run(const QList<Extent> &extents, qint64 from, qint64 to)
{
    m_start = from;
    for (const Extent &extent : extents) {
        Result<> done = addZerosUpTo(extent.start);
        if (done && extent.path.isEmpty())
            done = addBytes(extent);
        else if (done && extent.length <= smallFile)
            done = addSmallFile(extent);
        else if (done)
            done = addLargeFile(extent);
        if (!done)
            return done;
    }
    if (Result<> done = addZerosUpTo(to); !done)
        return done;
    return flush();
}

Result<> TrackPass::addZerosUpTo(qint64 position)
{
    const qint64 gap = position - end();
    Q_ASSERT(gap >= 0);
    if (gap <= std::min(smallGap, chunkSize - m_fill)) {
        std::memset(m_buffer.get() + m_fill, 0, static_cast<size_t>(gap));
        m_fill += gap;
        return Done{};
    }
    if (Result<> done = flush(); !done)
        return done;
    return zeros(gap);
}

Result<> TrackPass::addBytes(const Extent &extent)
{
    Q_ASSERT(extent.blocks || extent.length == extent.bytes.size());
    for (qint64 done = 0; done < extent.length;) {
        if (m_fill == chunkSize) {
            if (Result<> flushed = flush(); !flushed)
                return flushed;
        }
        const qint64 length = std::min(extent.length - done, chunkSize - m_fill);
        if (extent.blocks)
            extent.blocks->read(m_buffer.get() + m_fill, extent.fileOffset + done, length);
        else
            std::memcpy(m_buffer.get() + m_fill, extent.bytes.constData() + done,
                        static_cast<size_t>(length));
        m_fill += length;
        done += length;
    }
    return Done{};
}

Result<> TrackPass::addSmallFile(const Extent &extent)
{
    if (Result<> room = makeRoom(extent.length); !room)
        return room;
    const Result<SourceFile> file = SourceFile::open(extent);
    if (!file)
        return file.failure();
    Result<> done = file.value().read(m_buffer.get() + m_fill, extent.fileOffset, extent.length);
    if (done)
        done = file.value().checkUnchanged();
    m_fill += extent.length;
    return done;
}

Result<> TrackPass::addLargeFile(const Extent &extent)
{
    if (Result<> flushed = flush(); !flushed)
        return flushed;
    const Result<SourceFile> opened = SourceFile::open(extent);
    if (!opened)
        return opened.failure();
    const SourceFile &file = opened.value();
    const bool sparse = file.hasHoles();
    const qint64 last = extent.fileOffset + extent.length;
    for (qint64 offset = extent.fileOffset; offset < last;) {
        const qint64 data = sparse ? FileHoles::endOfHole(file.descriptor(), offset, last) : offset;
        if (Result<> done = zeros(data - offset); !done)
            return done;
        const qint64 dataEnd =
            sparse && data < last ? FileHoles::endOfData(file.descriptor(), data, last) : last;
        for (offset = data; offset < dataEnd;) {
            // Up to a multiple of the size, so that no page of the output is written twice.
            const qint64 length = std::min(dataEnd - offset, chunkSize - m_start % chunkSize);
            Result<> done = m_sink.piece(m_start, file, offset, length);
            if (done)
                done = advanceBy(length);
            if (!done)
                return done;
            offset += length;
        }
    }
    return file.checkUnchanged();
}

Result<> TrackPass::zeros(qint64 length)
{
    for (; length > 0; length -= std::min(length, chunkSize)) {
        const qint64 now = std::min(length, chunkSize);
        Result<> done = m_sink.zeros(m_start, now);
        if (done)
            done = advanceBy(now);
        if (!done)
            return done;
    }
    return Done{};
}

Result<> TrackPass::makeRoom(qint64 length)
{
    Q_ASSERT(length <= chunkSize);
    return m_fill + length > chunkSize ? flush() : Done{};
}

Result<> TrackPass::flush()
{
    if (m_fill == 0)
        return Done{};
    const qint64 length = std::exchange(m_fill, 0);
    if (Result<> done = m_sink.bytes(m_start, m_buffer.get(), length); !done)
        return done;
    return advanceBy(length);
}

Result<> TrackPass::advanceBy(qint64 length)
{
    m_start += length;
    return m_advance ? m_advance(length) : Done{};
}

Result<> ByteSink::zeros(qint64 start, qint64 length)
{
    std::memset(m_buffer.get(), 0, static_cast<size_t>(length));
    return bytes(start, m_buffer.get(), length);
}

Result<> ByteSink::piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length)
{
    const Result<> got = file.read(m_buffer.get(), offset, length);
    return got ? bytes(start, m_buffer.get(), length) : got;
}
