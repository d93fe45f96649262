#include "SectorQueue.h"

#include <algorithm>
#include <cstring>

bool SectorQueue::put(const char *bytes, qint64 count)
{
    std::unique_lock lock(m_mutex);
    while (count > 0) {
        m_changed.wait(lock, [this] { return m_closed || fill() < m_ring.size(); });
        if (m_closed)
            return false;
        const qint64 at = m_put % m_ring.size();
        const qint64 now = std::min({count, m_ring.size() - fill(), m_ring.size() - at});
        std::memcpy(m_ring.data() + at, bytes, static_cast<size_t>(now));
        m_put += now;
        bytes += now;
        count -= now;
        m_changed.notify_all();
    }
    return true;
}

void SectorQueue::end(const Result<> &reason)
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_reason = reason;
    m_changed.notify_all();
}

qint64 SectorQueue::take(char *to, qint64 count)
{
    std::unique_lock lock(m_mutex);
    qint64 done = 0;
    while (done < count) {
        m_changed.wait(lock, [this] { return m_closed || m_ended || fill() > 0; });
        if (m_closed || (m_ended && !m_reason))
            return -1;
        if (fill() == 0)
            return done;
        const qint64 at = m_taken % m_ring.size();
        const qint64 now = std::min({count - done, fill(), m_ring.size() - at});
        std::memcpy(to + done, m_ring.constData() + at, static_cast<size_t>(now));
        m_taken += now;
        done += now;
        m_changed.notify_all();
    }
    return done;
}

void SectorQueue::waitForReserve(const std::stop_token &stop)
{
    constexpr std::chrono::seconds patience(10); // slow sources begin without a reserve
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, stop, patience,
                       [this] { return m_closed || m_ended || fill() == m_ring.size(); });
}

void SectorQueue::close()
{
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

qint64 SectorQueue::taken() const
{
    const std::lock_guard lock(m_mutex);
    return m_taken;
}

Result<> SectorQueue::waitForEnd()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ended; });
    return m_reason;
}

Result<> SectorQueue::reason() const
{
    const std::lock_guard lock(m_mutex);
    return m_reason;
}
