#include "ParallelPass.h"

#include <algorithm>
#include <exception>
#include <thread>

namespace {

constexpr qint64 partSize = 2'097'152; // bytes; a multiple of TrackPass::chunkSize

qint64 endOf(const Extent &extent)
{
    return extent.start + extent.length;
}

// What of an extent lies between two positions of the track.
Extent clipped(Extent extent, qint64 from, qint64 to)
{
    const qint64 cut = std::max<qint64>(from - extent.start, 0);
    const qint64 length = std::min(to, endOf(extent)) - extent.start - cut;
    if (cut == 0 && length == extent.length)
        return extent;
    if (!extent.bytes.isEmpty())
        extent.bytes = QByteArray::fromRawData(extent.bytes.constData() + cut, length);
    extent.start += cut;
    extent.fileOffset += cut;
    extent.length = length;
    return extent;
}

}

ParallelPass::ParallelPass(const QList<Extent> &extents, qint64 byteCount, const Advance &advance)
    : m_extents(extents)
    , m_advance(advance)
{
    divide(byteCount);
}

// Small files stay in one part; a large one is cut where a chunk ends.
void ParallelPass::divide(qint64 byteCount)
{
    qint64 start = 0;
    const auto cutAt = [this, &start](qint64 position) {
        m_parts.append({start, position});
        start = position;
    };
    for (const Extent &extent : m_extents) {
        if (extent.start - start >= partSize)
            cutAt(extent.start);
        while (endOf(extent) - start >= 2 * partSize)
            cutAt((start / partSize + 1) * partSize);
    }
    if (start < byteCount)
        cutAt(byteCount);
}

Result<> ParallelPass::run(const MakeSink &makeSink)
{
    std::exception_ptr thrown;
    {
        std::jthread other;
        if (m_parts.size() > 1 && std::thread::hardware_concurrency() > 1)
            other = std::jthread([this, &makeSink, &thrown] {
                try {
                    work(*makeSink());
                } catch (...) { // no memory
                    m_failed = true;
                    thrown = std::current_exception();
                }
            });
        work(*makeSink());
    }
    if (thrown)
        std::rethrow_exception(thrown);
    return m_result;
}

void ParallelPass::work(TrackSink &sink)
{
    const Advance advance = [this](qint64 bytes) { return advanceBy(bytes); };
    TrackPass pass(sink, advance);
    while (!m_failed) {
        const qsizetype index = m_next++;
        if (index >= m_parts.size())
            return;
        const Part &part = m_parts.at(index);
        if (const Result<> done = pass.run(extentsOf(part), part.start, part.end); !done)
            fail(done);
    }
}

QList<Extent> ParallelPass::extentsOf(const Part &part) const
{
    QList<Extent> extents;
    auto extent =
        std::upper_bound(m_extents.cbegin(), m_extents.cend(), part.start,
                         [](qint64 position, const Extent &e) { return position < endOf(e); });
    for (; extent != m_extents.cend() && extent->start < part.end; ++extent)
        extents.append(clipped(*extent, part.start, part.end));
    return extents;
}

Result<> ParallelPass::advanceBy(qint64 bytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_failed)
        return m_result;
    return m_advance ? m_advance(bytes) : Done{};
}

void ParallelPass::fail(const Result<> &failure)
{
    const std::lock_guard lock(m_mutex);
    if (!m_failed.exchange(true))
        m_result = failure;
}
