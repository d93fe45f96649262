// What is running now that must not be cut off by the program's end: burns, erasures, copies.
// The main window asks before it closes, aborts all, and closes when the last one has ended.
// Main thread.
#pragma once

#include <QObject>

#include <functional>
#include <map>

class RunningJobs : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static RunningJobs &instance();

    // Registers a job with the way to abort it, which returns at once. The result is for remove().
    int add(std::function<void()> abort);

    // The job has ended, well or not.
    void remove(int job);

    [[nodiscard]] bool isEmpty() const { return m_jobs.empty(); }
    void abortAll();

Q_SIGNALS:
    void emptied();

private:
    std::map<int, std::function<void()>> m_jobs;
    int m_last = 0;
};
