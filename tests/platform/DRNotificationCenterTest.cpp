#include "DRNotificationCenter.h"
#include "TestMain.h"

#include <QThread>

#include <thread>

namespace {

const QString name = QStringLiteral("Name");
const QString other = QStringLiteral("Other");

}

class DRNotificationCenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void orderFromOtherThreads();
    void nameAndObject();
    void secondCallReplaces();
    void deadObserver();
    void removalOfOneAndOfAll();
    void changesDuringDelivery();

private:
    // Has every notification noted as "<text>:<object>".
    void observe(QObject *observer, const QString &text, const QVariant &object = {});
    void post(const QVariant &object = {});
    void deliver() { QCoreApplication::processEvents(); }

    std::unique_ptr<DRNotificationCenter> m_center;
    QStringList m_seen;
};

void DRNotificationCenterTest::init()
{
    m_center = std::make_unique<DRNotificationCenter>();
    m_seen.clear();
}

void DRNotificationCenterTest::observe(QObject *observer, const QString &text,
                                       const QVariant &object)
{
    const auto note = [this, text](const DRNotification &notification) {
        m_seen.append(text + QLatin1Char(':') + notification.object.toString());
    };
    m_center->addObserver(observer, note, name, object);
}

void DRNotificationCenterTest::post(const QVariant &object)
{
    m_center->postNotification({name, object, {}});
}

void DRNotificationCenterTest::orderFromOtherThreads()
{
    constexpr int count = 500;
    QList<int> seen[2];
    bool onMainThread = true;
    QObject observer;
    m_center->addObserver(
        &observer,
        [&](const DRNotification &notification) {
            onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
            seen[notification.object.toInt()].append(
                notification.userInfo.value(QStringLiteral("number")).toInt());
        },
        name);
    {
        const auto postAll = [this](int thread) {
            for (int i = 0; i < count; ++i)
                m_center->postNotification({name, thread, {{QStringLiteral("number"), i}}});
        };
        const std::jthread first(postAll, 0);
        const std::jthread second(postAll, 1);
    }
    QVERIFY(seen[0].isEmpty() && seen[1].isEmpty());
    deliver();
    QList<int> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    QCOMPARE(seen[0], expected);
    QCOMPARE(seen[1], expected);
    QVERIFY(onMainThread);
}

void DRNotificationCenterTest::nameAndObject()
{
    QObject observer;
    observe(&observer, QStringLiteral("all"));
    observe(&observer, QStringLiteral("two"), 2);
    post(1);
    post(2);
    m_center->postNotification({other, 2, {}});
    deliver();
    QCOMPARE(m_seen, (QStringList{QStringLiteral("all:1"), QStringLiteral("all:2"),
                                  QStringLiteral("two:2")}));
}

void DRNotificationCenterTest::secondCallReplaces()
{
    QObject observer;
    QObject second;
    observe(&observer, QStringLiteral("old"), 1);
    observe(&second, QStringLiteral("second"), 1);
    observe(&observer, QStringLiteral("new"), 1);
    post(1);
    deliver();
    QCOMPARE(m_seen, (QStringList{QStringLiteral("second:1"), QStringLiteral("new:1")}));
}

void DRNotificationCenterTest::deadObserver()
{
    QObject first;
    auto second = std::make_unique<QObject>();
    m_center->addObserver(
        &first, [&second](const DRNotification &) { second.reset(); }, name);
    observe(second.get(), QStringLiteral("second"));
    post();
    deliver(); // dies in the midst of the delivery
    post();
    deliver();
    QCOMPARE(m_seen, QStringList());
}

void DRNotificationCenterTest::removalOfOneAndOfAll()
{
    QObject observer;
    QObject second;
    for (const int object : {1, 2, 3})
        observe(&observer, QStringLiteral("first"), object);
    observe(&second, QStringLiteral("second"), 1);
    post(1);
    m_center->removeObserver(&observer, name, 1); // also what was posted before
    post(2);
    deliver();
    QCOMPARE(m_seen, (QStringList{QStringLiteral("second:1"), QStringLiteral("first:2")}));

    m_seen.clear();
    m_center->removeObserver(&observer, other);
    post(3);
    deliver();
    m_center->removeObserver(&observer, name);
    post(3);
    deliver();
    QCOMPARE(m_seen, QStringList{QStringLiteral("first:3")});
}

void DRNotificationCenterTest::changesDuringDelivery()
{
    QObject first;
    QObject removed;
    QObject replaced;
    QObject added;
    m_center->addObserver(
        &first,
        [&](const DRNotification &) {
            m_center->removeObserver(&first, name);
            m_center->removeObserver(&removed, name);
            observe(&replaced, QStringLiteral("new"));
            observe(&added, QStringLiteral("added"));
        },
        name);
    observe(&removed, QStringLiteral("removed"));
    observe(&replaced, QStringLiteral("old"));
    post(1);
    deliver();
    QCOMPARE(m_seen, QStringList{QStringLiteral("new:1")});
    post(2);
    deliver();
    QCOMPARE(m_seen.mid(1), (QStringList{QStringLiteral("new:2"), QStringLiteral("added:2")}));
}

MAPLORN_TEST_MAIN(DRNotificationCenterTest)
#include "DRNotificationCenterTest.moc"
