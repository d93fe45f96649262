#include "JobThread.h"
#include "TestMain.h"

#include <QStringList>

namespace {

void waitUntilStopped(const std::stop_token &stop)
{
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    wake.wait(lock, stop, [] { return false; });
}

}

class JobThreadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneAfterTheOther();
    void stoppedBeforeItsTurn();
    void shutDownRunsWhatWaits();
    void postedByAJob();
};

void JobThreadTest::oneAfterTheOther()
{
    constexpr int count = 100;
    QList<int> order;
    std::atomic<int> running = 0;
    bool overlapped = false;
    {
        JobThread thread;
        for (int i = 0; i < count; ++i)
            thread.post([&, i](const std::stop_token &) {
                overlapped = overlapped || ++running > 1;
                order.append(i);
                --running;
            });
    }
    QList<int> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    QCOMPARE(order, expected);
    QVERIFY(!overlapped);
}

void JobThreadTest::stoppedBeforeItsTurn()
{
    JobThread thread;
    QStringList seen;
    std::stop_source first = thread.post([&](const std::stop_token &stop) {
        waitUntilStopped(stop);
        seen.append(QStringLiteral("first"));
    });
    std::stop_source second = thread.post([&](const std::stop_token &stop) {
        seen.append(stop.stop_requested() ? QStringLiteral("stopped") : QStringLiteral("not"));
    });
    thread.post([&](const std::stop_token &stop) {
        seen.append(stop.stop_requested() ? QStringLiteral("stopped") : QStringLiteral("third"));
        thread.post([&](const std::stop_token &) { seen.append(QStringLiteral("end")); });
    });
    QVERIFY(second.request_stop());
    QVERIFY(first.request_stop());
    thread.shutDown();
    QCOMPARE(seen.mid(0, 2), (QStringList{QStringLiteral("first"), QStringLiteral("stopped")}));
    QCOMPARE(seen.last(), QStringLiteral("end"));
}

void JobThreadTest::shutDownRunsWhatWaits()
{
    int stopped = 0;
    JobThread thread;
    for (int i = 0; i < 3; ++i)
        thread.post([&](const std::stop_token &stop) {
            waitUntilStopped(stop);
            ++stopped;
        });
    thread.shutDown();
    QCOMPARE(stopped, 3);
    thread.shutDown();
}

void JobThreadTest::postedByAJob()
{
    std::atomic<bool> done = false;
    JobThread thread;
    thread.post([&](const std::stop_token &) {
        thread.post([&](const std::stop_token &) { done = true; });
    });
    QTRY_VERIFY(done);
}

MAPLORN_TEST_MAIN(JobThreadTest)
#include "JobThreadTest.moc"
