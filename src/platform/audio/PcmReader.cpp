#include "PcmReader.h"

#include "PcmStream.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace {

constexpr qint64 chunkSize = 27LL * AudioSource::sectorSize; // bytes, just under 64 KiB

// What sources that are not being read leave free for the one that is.
constexpr qint64 reserve = 16LL * 1024 * 1024;

// A source's part of what was decoded ahead.
struct Slot
{
    AudioSource source;
    std::deque<QByteArray> chunks;
    bool isEnded = false;
    std::optional<Failure> failure; // comes after the chunks
};

}

class PcmReader::Workers
{
public:
    Workers(const QList<AudioSource> &sources, const std::stop_token &stop)
        : m_forwardStop(stop, [this] { m_stop.request_stop(); })
    {
        for (const AudioSource &source : sources)
            m_slots.push_back({source, {}, false, {}});
        const size_t cores = std::max(1U, std::thread::hardware_concurrency());
        for (size_t i = std::min(cores, m_slots.size()); i > 0; --i)
            m_threads.emplace_back([this] { work(); });
    }

    ~Workers()
    {
        m_stop.request_stop();
        m_threads.clear();
    }

    Result<QByteArray> next()
    {
        std::unique_lock lock(m_mutex);
        if (m_current == m_slots.size())
            return QByteArray();
        Slot &slot = m_slots[m_current];
        const bool isReady = m_changed.wait(lock, m_stop.get_token(), [&] {
            return !slot.chunks.empty() || slot.isEnded || slot.failure.has_value();
        });
        if (!isReady || m_stop.stop_requested())
            return Failure{QStringLiteral("The job was cancelled.")};
        QByteArray chunk;
        if (!slot.chunks.empty()) {
            chunk = std::move(slot.chunks.front());
            slot.chunks.pop_front();
            m_buffered -= chunkSize;
        } else if (slot.failure) {
            return *slot.failure;
        } else {
            ++m_current;
        }
        m_changed.notify_all();
        return chunk;
    }

    qint64 buffered()
    {
        const std::scoped_lock lock(m_mutex);
        return m_buffered;
    }

private:
    // Sources are taken in their order, so that the one being read is always taken before any
    // that waits for room.
    void work()
    {
        for (;;) {
            std::unique_lock lock(m_mutex);
            if (m_nextSource == m_slots.size() || m_stop.stop_requested())
                return;
            const size_t index = m_nextSource++;
            lock.unlock();
            const Result<> decoded = decode(index);
            lock.lock();
            if (decoded)
                m_slots[index].isEnded = true;
            else
                m_slots[index].failure = decoded.failure();
            m_changed.notify_all();
        }
    }

    Result<> decode(size_t index)
    {
        Result<PcmStream> stream = PcmStream::open(m_slots[index].source);
        if (!stream)
            return stream.failure();
        while (takeRoom(index)) {
            QByteArray chunk(chunkSize, Qt::Uninitialized);
            const Result<qint64> got = stream.value().read(chunk.data(), chunk.size());
            chunk.truncate(got ? got.value() : 0);
            const std::scoped_lock lock(m_mutex);
            if (chunk.isEmpty()) {
                m_buffered -= chunkSize;
                return got ? Result<>(Done{}) : got.failure();
            }
            m_slots[index].chunks.push_back(std::move(chunk));
            m_changed.notify_all();
        }
        return Done{};
    }

    // Waits until a chunk of a source may be decoded; false when the work is to end.
    bool takeRoom(size_t index)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, m_stop.get_token(), [&] {
            const qint64 after = m_buffered + chunkSize;
            return after <= mostBuffered - (index == m_current ? 0 : reserve);
        });
        if (m_stop.stop_requested())
            return false;
        m_buffered += chunkSize;
        return true;
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::vector<Slot> m_slots; // their number stays, so that a worker may hold on to its own
    size_t m_current = 0;      // the source being read
    size_t m_nextSource = 0;   // the first that no worker has taken
    qint64 m_buffered = 0;     // bytes; each chunk counts in full
    std::stop_source m_stop;
    std::stop_callback<std::function<void()>> m_forwardStop;
    std::vector<std::jthread> m_threads;
};

PcmReader::PcmReader(const QList<AudioSource> &sources, const std::stop_token &stop)
    : m_workers(std::make_unique<Workers>(sources, stop))
{
}

PcmReader::~PcmReader() = default;

Result<QByteArray> PcmReader::next()
{
    return m_workers->next();
}

qint64 PcmReader::buffered() const
{
    return m_workers->buffered();
}
