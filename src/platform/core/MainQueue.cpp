#include "MainQueue.h"

#include <QCoreApplication>

MainQueue::MainQueue()
{
    moveToThread(QCoreApplication::instance()->thread());
}

MainQueue &MainQueue::instance()
{
    static MainQueue queue;
    return queue;
}

void MainQueue::async(QObject *context, const Task &task)
{
    MainQueue &queue = instance();
    QMetaObject::invokeMethod(
        &queue,
        [&queue, entry = Entry{context, task}] {
            queue.m_tasks.push_back(entry);
            queue.run();
        },
        Qt::QueuedConnection);
}

void MainQueue::deliver(QObject *context, const Task &report)
{
    MainQueue &queue = instance();
    if (queue.m_holds == 0 && queue.m_reports.empty()) {
        report();
        return;
    }
    queue.m_reports.push_back({context, report});
    if (queue.m_holds == 0) // the ones before it wait for an alert that one of them has opened
        queue.wakeUp();
}

quint64 MainQueue::currentTask()
{
    return instance().m_current;
}

void MainQueue::wakeUp()
{
    QMetaObject::invokeMethod(this, &MainQueue::run, Qt::QueuedConnection);
}

// One at a time, so that the event loop has its turn between them.
void MainQueue::run()
{
    if (m_holds > 0)
        return;
    while (m_holds == 0 && !m_reports.empty()) {
        const Entry entry = m_reports.front();
        m_reports.pop_front();
        if (entry.context)
            entry.task();
    }
    if (m_current != 0 || m_tasks.empty())
        return;
    const Entry entry = m_tasks.front();
    m_tasks.pop_front();
    if (entry.context) {
        m_current = ++m_last;
        entry.task();
        m_current = 0;
    }
    if (!m_tasks.empty())
        wakeUp();
}

MainQueue::Hold::Hold()
{
    ++instance().m_holds;
}

MainQueue::Hold::~Hold()
{
    if (--instance().m_holds == 0)
        instance().wakeUp();
}
