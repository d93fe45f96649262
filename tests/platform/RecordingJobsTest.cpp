#include "BurnRun.h"
#include "DRKeys.h"
#include "JobLog.h"
#include "RunningJobs.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// So slow a burn of 3 MB that it is certain to be under way when a test steps in.
constexpr float slow = 100; // KB per second

const QString failed = DRStatusStateFailed;
const QString done = DRStatusStateDone;

}

class RecordingJobsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<VirtualDrive>(); }
    void cleanup();

    void wholeBurn();
    void wholeErase();
    void failureHasReason_data();
    void failureHasReason();
    void abortedWhileWriting();
    void abortedWhileQueued();
    void nextJobWaitsForAbortedOne();
    void otherBurnsAreNotReported();
    void serviceEndsInTheMidstOfBurn();
    void mediumChangesAreReported();
    void comingAndGoingIsReported();

private:
    [[nodiscard]] DRBurn newBurn(float speed = 0) const;
    [[nodiscard]] DRErase newErase() const;
    void start(DRBurn burn) const;

    std::unique_ptr<VirtualDrive> m_drive;
};

void RecordingJobsTest::cleanup()
{
    m_drive.reset();
    QTRY_VERIFY(RunningJobs::instance().isEmpty());
}

DRBurn RecordingJobsTest::newBurn(float speed) const
{
    DRBurn burn = DRBurn::initWithDevice(m_drive->device());
    burn.setRequestedBurnSpeed(speed);
    burn.setVerifyDisc(true);
    return burn;
}

DRErase RecordingJobsTest::newErase() const
{
    DRErase erase = DRErase::initWithDevice(m_drive->device());
    erase.setEraseType(DREraseTypeComplete);
    return erase;
}

void RecordingJobsTest::start(DRBurn burn) const
{
    // Made once: a burn whose source changes fails, and rightly.
    const QString path = m_drive->sourcePath(u"image.iso"_s);
    if (!QFile::exists(path))
        m_drive->makeSource(u"image.iso"_s, 3000000);
    burn.writeLayout(DRBurn::layoutForImageFile(path));
}

void RecordingJobsTest::wholeBurn()
{
    const DRBurn burn = newBurn();
    const JobLog log(burn);
    start(burn);
    QVERIFY(!RunningJobs::instance().isEmpty());
    QVERIFY(log.waitForEnd());
    QCOMPARE(log.states(),
             QStringList(DRStatusStatePreparing) + BurnRun::wholeBurn(true) + QStringList(done));
    QVERIFY(std::ranges::is_sorted(log.fractions()));
    QCOMPARE(log.fractions().last(), 1.0);
    QVERIFY(burn.errorText().isEmpty());
    QTRY_VERIFY(RunningJobs::instance().isEmpty());
    QVERIFY(!m_drive->device().mediaIsBlank());
}

void RecordingJobsTest::wholeErase()
{
    DRErase erase = newErase();
    const JobLog log(erase);
    erase.start();
    QVERIFY(log.waitForEnd());
    QCOMPARE(log.states(), (QStringList{DRStatusStatePreparing, DRStatusStateErasing,
                                        DRStatusStateFinishing, done}));
}

void RecordingJobsTest::failureHasReason_data()
{
    QTest::addColumn<QString>("fault");
    for (const char *fault : {"no recorder", "recorder gone", "no medium", "written medium"})
        QTest::newRow(fault) << QString::fromLatin1(fault);
}

void RecordingJobsTest::failureHasReason()
{
    QFETCH(const QString, fault);
    DRBurn burn = newBurn();
    if (fault == "no recorder"_L1)
        burn = DRBurn::initWithDevice(DRDevice());
    if (fault == "recorder gone"_L1)
        m_drive->detach();
    if (fault == "no medium"_L1)
        QVERIFY(m_drive->device().ejectMedia());
    if (fault == "written medium"_L1) {
        const DRBurn before = newBurn();
        const JobLog log(before);
        start(before);
        QVERIFY(log.waitForEnd());
    }
    const JobLog log(burn);
    start(burn);
    QVERIFY(log.waitForEnd());
    QCOMPARE(log.states().last(), failed);
    QVERIFY(!log.states().contains(QString(DRStatusStateSessionOpen)));
    QVERIFY(!burn.errorText().isEmpty());
}

void RecordingJobsTest::abortedWhileWriting()
{
    DRBurn burn = newBurn(slow);
    const JobLog log(burn);
    start(burn);
    QVERIFY(log.waitForState(DRStatusStateTrackWrite));
    QVERIFY(m_drive->device().mediaIsBusy());
    QVERIFY(!m_drive->device().ejectMedia());
    burn.abort();
    QVERIFY(log.waitForEnd());
    QCOMPARE(log.states().last(), failed);
    QVERIFY(log.fractions().last() < 0.5);
    QVERIFY(!burn.errorText().isEmpty());
    QVERIFY(!m_drive->device().mediaIsBlank());
    QVERIFY(!m_drive->mediumFiles().contains(u"disc.iso"_s));
    QTRY_VERIFY(RunningJobs::instance().isEmpty());
    QCOMPARE(log.states().count(failed), 1);
}

void RecordingJobsTest::abortedWhileQueued()
{
    DRBurn running = newBurn(slow);
    DRBurn queued = newBurn();
    const JobLog runningLog(running);
    const JobLog queuedLog(queued);
    start(running);
    start(queued);
    QVERIFY(runningLog.waitForState(DRStatusStateTrackWrite));
    queued.abort();
    QCOMPARE(queuedLog.states(), QStringList());
    running.abort();
    QVERIFY(queuedLog.waitForEnd());
    QCOMPARE(queuedLog.states(), (QStringList{QString(DRStatusStatePreparing), failed}));
    QCOMPARE(runningLog.states().last(), failed);
}

void RecordingJobsTest::nextJobWaitsForAbortedOne()
{
    DRBurn aborted = newBurn(slow);
    DRErase erase = newErase();
    const DRBurn next = newBurn();
    const JobLog abortedLog(aborted);
    const JobLog eraseLog(erase);
    const JobLog nextLog(next);
    // What had ended when a job first reported.
    QStringList endsAtBegin;
    DRNotificationCenter::currentRunLoop().addObserver(
        this,
        [&](const DRNotification &notification) {
            if (notification.userInfo.value(DRStatusStateKey) == DRStatusStatePreparing)
                endsAtBegin.append(abortedLog.states().last());
        },
        DREraseStatusChangedNotification);
    start(aborted);
    QVERIFY(abortedLog.waitForState(DRStatusStateTrackWrite));
    aborted.abort();
    erase.start();
    start(next);
    QVERIFY(nextLog.waitForEnd());
    QCOMPARE(abortedLog.states().last(), failed);
    QCOMPARE(endsAtBegin, QStringList{failed});
    QCOMPARE(eraseLog.states().last(), done);
    QCOMPARE(nextLog.states().last(), done);
}

void RecordingJobsTest::otherBurnsAreNotReported()
{
    const DRBurn burn = newBurn();
    const DRBurn other = newBurn();
    const JobLog sameLog{DRBurn(burn)}; // a copy is the same burn
    const JobLog otherLog(other);
    start(burn);
    QVERIFY(sameLog.waitForEnd());
    QCOMPARE(otherLog.states(), QStringList());
}

void RecordingJobsTest::serviceEndsInTheMidstOfBurn()
{
    const DRBurn burn = newBurn(slow);
    const JobLog log(burn);
    start(burn);
    start(newBurn(slow));
    QVERIFY(log.waitForState(DRStatusStateTrackWrite));
    const QSignalSpy emptied(&RunningJobs::instance(), &RunningJobs::emptied);
    m_drive.reset(); // waits for both
    QVERIFY(!burn.errorText().isEmpty());
    QTRY_COMPARE(emptied.size(), 1);
}

void RecordingJobsTest::mediumChangesAreReported()
{
    int changes = 0;
    DRNotificationCenter::currentRunLoop().addObserver(
        this, [&changes](const DRNotification &) { ++changes; }, DRDeviceStatusChangedNotification,
        QVariant::fromValue(m_drive->device()));
    // Media come and go as folders: each new one has to be watched in its turn.
    for (int i = 0; i < 3; ++i) {
        changes = 0;
        m_drive->insert(DRDeviceMediaTypeCDR);
        QTRY_VERIFY(changes > 0);
        QTest::qWait(0);
        changes = 0;
        m_drive->setCapacity(10);
        QTRY_VERIFY(changes > 0);
    }
    changes = 0;
    QVERIFY(m_drive->device().ejectMedia());
    QTRY_VERIFY(changes > 0);
}

void RecordingJobsTest::comingAndGoingIsReported()
{
    QCoreApplication::processEvents();
    QStringList seen;
    for (const QLatin1StringView name :
         {DRDeviceAppearedNotification, DRDeviceDisappearedNotification})
        DRNotificationCenter::currentRunLoop().addObserver(
            this, [&seen](const DRNotification &notification) { seen.append(notification.name); },
            name, QVariant::fromValue(m_drive->device()));
    m_drive->detach();
    QTRY_COMPARE(seen, QStringList{QString(DRDeviceDisappearedNotification)});
    QVERIFY(DRDevice::devices().isEmpty());
    m_drive->attach();
    QTRY_COMPARE(seen.last(), QString(DRDeviceAppearedNotification));
    QVERIFY(m_drive->device().isValid());
    QCOMPARE(DRDevice::devices().size(), 1);
}

MAPLORN_TEST_MAIN(RecordingJobsTest)
#include "RecordingJobsTest.moc"
