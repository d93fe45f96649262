#include "MainQueue.h"
#include "TestMain.h"

#include <QEventLoop>
#include <QTimer>

class MainQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void neverOneInsideAnother();
    void dropsWhatHasNoContext();
    void holdKeepsTheOrder();
};

void MainQueueTest::neverOneInsideAnother()
{
    QStringList log;
    const auto task = [&](const QString &name) {
        return [&log, name] {
            log.append(name + QStringLiteral(" begins"));
            QEventLoop loop; // as an alert does
            QTimer::singleShot(20, &loop, &QEventLoop::quit);
            loop.exec();
            log.append(name + QStringLiteral(" ends"));
        };
    };
    MainQueue::async(this, task(QStringLiteral("1")));
    MainQueue::async(this, task(QStringLiteral("2")));
    QVERIFY2(log.isEmpty(), "later, not at once");
    QTRY_COMPARE(log.size(), 4);
    QCOMPARE(log.join(u' '), QStringLiteral("1 begins 1 ends 2 begins 2 ends"));
}

void MainQueueTest::dropsWhatHasNoContext()
{
    bool ran = false;
    auto context = std::make_unique<QObject>();
    MainQueue::async(context.get(), [&] { ran = true; });
    context.reset();
    bool last = false;
    MainQueue::async(this, [&] { last = true; });
    QTRY_VERIFY(last);
    QVERIFY(!ran);
}

void MainQueueTest::holdKeepsTheOrder()
{
    QStringList log;
    const auto append = [&](const char *name) {
        return [&log, name] { log.append(QLatin1StringView(name)); };
    };
    {
        const MainQueue::Hold hold;
        MainQueue::deliver(this, append("report 1"));
        MainQueue::async(this, append("task"));
        MainQueue::deliver(this, append("report 2"));
        QTest::qWait(20);
        QVERIFY(log.isEmpty());
    }
    QTRY_COMPARE(log.size(), 3);
    QCOMPARE(log.join(u' '), QStringLiteral("report 1 report 2 task"));
    MainQueue::deliver(this, append("at once"));
    QCOMPARE(log.size(), 4);
}

MAPLORN_TEST_MAIN(MainQueueTest)
#include "MainQueueTest.moc"
