// The worker thread of a recorder (or of several): runs jobs one after the other. Jobs are
// cancelled by their stop token, never killed.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

class Recorder;

class JobThread
{
public:
    using Job = std::function<void(const std::stop_token &)>;

    JobThread();
    ~JobThread() { shutDown(); }
    JobThread(const JobThread &) = delete;
    JobThread &operator=(const JobThread &) = delete;

    // Any thread. The job is always run, even when stopped before its turn: it reports its own
    // end. The result stops it. The recorder only tells its jobs from those of others.
    std::stop_source post(Job job, const Recorder *recorder = nullptr);

    // Any thread. True while a job of the recorder runs or waits that nobody has stopped.
    [[nodiscard]] bool isBusy(const Recorder *recorder);

    // Any thread. True while a job of any recorder runs or waits, but for one of this recorder that
    // runs, which may have reported its end already. Tasks of no recorder do not count.
    [[nodiscard]] bool hasJobsBeside(const Recorder *running);

    // Cancels all jobs, waits for their ends and ends the thread. Not from a job.
    void shutDown();

private:
    struct Entry
    {
        const Recorder *recorder;
        Job job;
        std::stop_source stop;
    };

    void run(const std::stop_token &threadStop);

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Entry> m_entries; // the front one is running
    std::jthread m_thread;       // last: it uses all of the above
};
