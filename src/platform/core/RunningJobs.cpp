#include "RunningJobs.h"

RunningJobs &RunningJobs::instance()
{
    static RunningJobs jobs;
    return jobs;
}

int RunningJobs::add(std::function<void()> abort)
{
    m_jobs.emplace(++m_last, std::move(abort));
    return m_last;
}

void RunningJobs::remove(int job)
{
    if (m_jobs.erase(job) > 0 && m_jobs.empty())
        Q_EMIT emptied();
}

void RunningJobs::abortAll()
{
    // Over a copy: aborting may end a job at once.
    const auto jobs = m_jobs;
    for (const auto &[number, abort] : jobs)
        abort();
}
