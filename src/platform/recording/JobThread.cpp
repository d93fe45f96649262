#include "JobThread.h"

#include <algorithm>

JobThread::JobThread()
    : m_thread([this](const std::stop_token &stop) { run(stop); })
{
}

void JobThread::shutDown()
{
    {
        const std::lock_guard lock(m_mutex);
        for (Entry &entry : m_entries)
            entry.stop.request_stop();
    }
    m_thread.request_stop();
    if (m_thread.joinable())
        m_thread.join();
}

std::stop_source JobThread::post(Job job, const Recorder *recorder)
{
    const std::stop_source stop;
    {
        const std::lock_guard lock(m_mutex);
        m_entries.push_back({recorder, std::move(job), stop});
    }
    m_changed.notify_one();
    return stop;
}

bool JobThread::isBusy(const Recorder *recorder)
{
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_entries.cbegin(), m_entries.cend(), [recorder](const Entry &entry) {
        return entry.recorder == recorder && !entry.stop.stop_requested();
    });
}

bool JobThread::hasJobsBeside(const Recorder *running)
{
    const std::lock_guard lock(m_mutex);
    const bool isRunning = !m_entries.empty() && m_entries.front().recorder == running;
    return std::any_of(m_entries.cbegin() + (isRunning ? 1 : 0), m_entries.cend(),
                       [](const Entry &entry) { return entry.recorder != nullptr; });
}

void JobThread::run(const std::stop_token &threadStop)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, threadStop, [this] { return !m_entries.empty(); });
        if (m_entries.empty())
            return;
        const Entry entry = m_entries.front();
        lock.unlock();
        entry.job(entry.stop.get_token());
        lock.lock();
        m_entries.pop_front();
    }
}
