// Work for the main thread, one piece after the other and never one inside another, even while a
// piece waits for the network or for an alert. Main thread, but for async.
#pragma once

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>

class MainQueue : public QObject
{
    Q_OBJECT

public:
    using Task = std::function<void()>;

    // Runs the task later on the main thread; drops it where the context has died by then. Any
    // thread.
    static void async(QObject *context, const Task &task);

    // Runs what was reported from outside (a recorder's notification, the end of a process) at
    // once, whatever task is at work; while a Hold lives it waits, in order.
    static void deliver(QObject *context, const Task &report);

    // The task at work: a number no other one has; 0 outside of tasks.
    [[nodiscard]] static quint64 currentTask();

    // While it lives no task begins and no report is delivered.
    class Hold
    {
    public:
        Hold();
        ~Hold();
        Hold(const Hold &) = delete;
        Hold &operator=(const Hold &) = delete;
    };

private:
    struct Entry
    {
        QPointer<QObject> context;
        Task task;
    };

    MainQueue();
    static MainQueue &instance();
    void wakeUp();
    void run();

    std::deque<Entry> m_tasks;
    std::deque<Entry> m_reports;
    int m_holds = 0;
    quint64 m_current = 0;
    quint64 m_last = 0;
};
