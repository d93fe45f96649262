// What is running now that must not be cut off by the program's end: burns, erasures, copies.
// The main window asks before it closes, aborts all, and closes when the last one has ended.
// Main thread.
#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <memory>

class RunningJobs : public QObject
{
    Q_OBJECT

public:
    // A job counts as running until the last copy of its mark is gone, on whatever thread.
    using Mark = std::shared_ptr<void>;

    [[nodiscard]] static RunningJobs &instance();

    // Registers a job with the way to abort it, which returns at once.
    [[nodiscard]] Mark add(const std::function<void()> &abort);

    [[nodiscard]] bool isEmpty() const { return m_jobs.empty(); }
    void abortAll();

Q_SIGNALS:
    void emptied();

private:
    void remove(int job);

    std::map<int, std::function<void()>> m_jobs;
    int m_last = 0;
};
