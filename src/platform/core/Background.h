// Work off the main thread whose result comes back to it. Main thread.
#pragma once

#include "MainQueue.h"
#include "RunningJobs.h"

#include <QFutureWatcher>
#include <QtConcurrentRun>

#include <stop_token>

// Runs work on a thread of the pool and then done, with its result, on the main thread, though
// never while a service call waits; done is dropped, and the work told to stop, when the context
// dies first. The result stops the work, whose done is still called.
template <typename Work, typename Then>
std::stop_source inBackground(QObject *context, Work work, Then done)
{
    using T = std::invoke_result_t<Work, std::stop_token>;
    const std::stop_source stop;
    auto *watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [context, watcher, done] {
        MainQueue::deliver(context, [watcher, done] {
            watcher->deleteLater();
            done(watcher->result());
        });
    });
    QObject::connect(watcher, &QObject::destroyed, [stop]() mutable { stop.request_stop(); });
    watcher->setFuture(QtConcurrent::run([work, stop] { return work(stop.get_token()); }));
    return stop;
}

// The same for work that the program's end must abort and wait for.
template <typename Work, typename Then>
void runJobInBackground(QObject *context, Work work, Then done)
{
    const auto stop = std::make_shared<std::stop_source>(std::nostopstate);
    const RunningJobs::Mark mark = RunningJobs::instance().add([stop] { stop->request_stop(); });
    *stop = inBackground(
        context, [work, mark](const std::stop_token &token) { return work(token); }, done);
}
