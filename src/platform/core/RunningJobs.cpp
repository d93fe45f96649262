#include "RunningJobs.h"

RunningJobs &RunningJobs::instance()
{
    static RunningJobs jobs;
    return jobs;
}

RunningJobs::Mark RunningJobs::add(const std::function<void()> &abort)
{
    const int job = ++m_last;
    m_jobs.emplace(job, abort);
    // Queued: what the job posted before its end is delivered before it counts as ended.
    return {this, [job](RunningJobs *jobs) {
                QMetaObject::invokeMethod(
                    jobs, [jobs, job] { jobs->remove(job); }, Qt::QueuedConnection);
            }};
}

void RunningJobs::remove(int job)
{
    if (m_jobs.erase(job) > 0 && m_jobs.empty())
        Q_EMIT emptied();
}

void RunningJobs::abortAll()
{
    for (const auto &[number, abort] : m_jobs)
        abort();
}
