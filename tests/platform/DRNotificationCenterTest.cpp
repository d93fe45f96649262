#include "DRNotificationCenter.h"
#include "TestMain.h"

#include <QThread>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

const QString name = u"Name"_s;
const QString other = u"Other"_s;

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
                notification.userInfo.value(u"number"_s).toInt());
        },
        name);
    {
        const auto postAll = [this](int thread) {
            for (int i = 0; i < count; ++i)
                m_center->postNotification({name, thread, {{u"number"_s, i}}});
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
    observe(&observer, u"all"_s);
    observe(&observer, u"two"_s, 2);
    post(1);
    post(2);
    m_center->postNotification({other, 2, {}});
    deliver();
    QCOMPARE(m_seen, (QStringList{u"all:1"_s, u"all:2"_s, u"two:2"_s}));
}

void DRNotificationCenterTest::secondCallReplaces()
{
    QObject observer;
    QObject second;
    observe(&observer, u"old"_s, 1);
    observe(&second, u"second"_s, 1);
    observe(&observer, u"new"_s, 1);
    post(1);
    deliver();
    QCOMPARE(m_seen, (QStringList{u"second:1"_s, u"new:1"_s}));
}

void DRNotificationCenterTest::deadObserver()
{
    QObject first;
    auto second = std::make_unique<QObject>();
    m_center->addObserver(
        &first, [&second](const DRNotification &) { second.reset(); }, name);
    observe(second.get(), u"second"_s);
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
        observe(&observer, u"first"_s, object);
    observe(&second, u"second"_s, 1);
    post(1);
    m_center->removeObserver(&observer, name, 1); // also what was posted before
    post(2);
    deliver();
    QCOMPARE(m_seen, (QStringList{u"second:1"_s, u"first:2"_s}));

    m_seen.clear();
    m_center->removeObserver(&observer, other);
    post(3);
    deliver();
    m_center->removeObserver(&observer, name);
    post(3);
    deliver();
    QCOMPARE(m_seen, QStringList{u"first:3"_s});
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
            observe(&replaced, u"new"_s);
            observe(&added, u"added"_s);
        },
        name);
    observe(&removed, u"removed"_s);
    observe(&replaced, u"old"_s);
    post(1);
    deliver();
    QCOMPARE(m_seen, QStringList{u"new:1"_s});
    post(2);
    deliver();
    QCOMPARE(m_seen.mid(1), (QStringList{u"new:2"_s, u"added:2"_s}));
}

MAPLORN_TEST_MAIN(DRNotificationCenterTest)
#include "DRNotificationCenterTest.moc"
