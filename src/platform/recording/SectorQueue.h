// What is to be written, on its way from the thread that reads or decodes the sources to the one
// of libburn's that writes them: bounded, in order. Both threads; each end is used by one.
#pragma once

#include "Result.h"

#include <QByteArray>

#include <condition_variable>
#include <mutex>
#include <stop_token>

class SectorQueue
{
public:
    explicit SectorQueue(qint64 capacity)
        : m_ring(capacity, Qt::Uninitialized)
    {
    }

    // Waits for room. False when nobody takes any more.
    [[nodiscard]] bool put(const char *bytes, qint64 count);

    // There will be no more, for this reason.
    void end(const Result<> &reason);

    // Waits for that many bytes; fewer only at the end, -1 when the sources failed.
    [[nodiscard]] qint64 take(char *to, qint64 count);

    // Waits until it is full, ended or stopped, so that a burn begins with a reserve. Bounded.
    void waitForReserve(const std::stop_token &stop);

    // Nobody takes any more.
    void close();

    // Bytes taken so far.
    [[nodiscard]] qint64 taken() const;

    // Waits until the sources have ended, which is soon once all was taken, and says why.
    [[nodiscard]] Result<> waitForEnd();

    // Why the sources ended; a success until they have.
    [[nodiscard]] Result<> reason() const;

private:
    [[nodiscard]] qint64 fill() const { return m_put - m_taken; }

    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    QByteArray m_ring;
    qint64 m_put = 0;   // bytes, ever
    qint64 m_taken = 0; // bytes, ever
    bool m_ended = false;
    bool m_closed = false;
    Result<> m_reason = Done{};
};
