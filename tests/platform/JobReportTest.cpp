#include "JobReport.h"
#include "DRKeys.h"
#include "TestMain.h"

#include <thread>

class JobReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void neverGoesBack();
    void fractionOfPhases();
    void keepsToSpeed();
    void speedInMultiplesOfSingleSpeed();
    void stopEndsTheWait();
    void lastState_data();
    void lastState();

private:
    [[nodiscard]] JobReport report(const std::stop_token &stop = {});
    [[nodiscard]] double fraction() const
    {
        return m_sent.last().value(DRStatusPercentCompleteKey).toDouble();
    }
    [[nodiscard]] QVariantMap progress() const
    {
        return m_sent.last().value(DRStatusProgressInfoKey).toMap();
    }

    QList<QVariantMap> m_sent;
};

void JobReportTest::init()
{
    m_sent.clear();
}

JobReport JobReportTest::report(const std::stop_token &stop)
{
    return JobReport([this](const QVariantMap &status) { m_sent.append(status); }, stop);
}

void JobReportTest::neverGoesBack()
{
    JobReport job = report();
    job.setState(DRStatusStatePreparing);
    job.beginPhase(DRStatusStateTrackWrite, 0, 0.5, 1000, 0);
    for (int i = 0; i < 10; ++i)
        QVERIFY(job.advance(150)); // more than was announced
    job.setState(DRStatusStateTrackClose);
    job.beginPhase(DRStatusStateVerifying, 0.25, 1, 1000, 0); // begins before the last one's end
    QVERIFY(job.advance(1000));
    job.setState(DRStatusStateFinishing);
    job.finish(DRStatusStateDone);

    double last = 0;
    for (const QVariantMap &status : std::as_const(m_sent)) {
        const double now = status.value(DRStatusPercentCompleteKey).toDouble();
        QVERIFY(now >= last && now <= 1);
        last = now;
    }
}

void JobReportTest::fractionOfPhases()
{
    JobReport job = report();
    job.beginPhase(DRStatusStateTrackWrite, 0, 0.5, 1000, 0);
    QCOMPARE(fraction(), 0.0);
    QVERIFY(job.advance(2000));
    QCOMPARE(fraction(), 0.5);
    job.beginPhase(DRStatusStateVerifying, 0.5, 1, 0, 0); // nothing to do
    QCOMPARE(fraction(), 1.0);
}

void JobReportTest::keepsToSpeed()
{
    JobReport job = report();
    QElapsedTimer timer;
    timer.start();
    job.beginPhase(DRStatusStateTrackWrite, 0, 1, 200000, 0);
    for (int i = 0; i < 4; ++i)
        QVERIFY(job.advance(50000, 1000)); // 200 KB at 1,000 KB/s
    QVERIFY(timer.elapsed() >= 199);
    QVERIFY(job.currentSpeed() > 0 && job.currentSpeed() < 1100);
    QCOMPARE(fraction(), 1.0);
}

void JobReportTest::speedInMultiplesOfSingleSpeed()
{
    JobReport job = report();
    job.beginPhase(DRStatusStateTrackWrite, 0, 1, 20000, 10);
    QVERIFY(job.advance(20000, 1000));
    const double speed = progress().value(DRStatusProgressCurrentKPS).toDouble();
    QVERIFY(speed > 0);
    QCOMPARE(progress().value(DRStatusProgressCurrentXFactor).toDouble(), speed / 10);

    job.beginPhase(DRStatusStateTrackWrite, 0, 1, 20000, 0); // single speed not known
    QVERIFY(job.advance(20000, 1000));
    QCOMPARE(progress().value(DRStatusProgressCurrentXFactor).toDouble(), 0.0);

    job.setState(DRStatusStateTrackClose);
    QVERIFY(!progress().contains(DRStatusProgressCurrentKPS));
    QVERIFY(progress().contains(DRStatusProgressElapsedTime));
}

void JobReportTest::stopEndsTheWait()
{
    std::stop_source source;
    JobReport job = report(source.get_token());
    job.beginPhase(DRStatusStateTrackWrite, 0, 1, 1000000000, 0);
    const std::jthread stopper([&source] { source.request_stop(); });
    QVERIFY(!job.advance(1000000000, 1)); // 11 days
    QVERIFY(fraction() < 0.5);
    QVERIFY(!job.checkStopped());
}

void JobReportTest::lastState_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<double>("fraction");
    QTest::newRow("done is all of it") << QString(DRStatusStateDone) << 1.0;
    QTest::newRow("failed stays where it was") << QString(DRStatusStateFailed) << 0.25;
}

void JobReportTest::lastState()
{
    QFETCH(const QString, state);
    JobReport job = report();
    job.beginPhase(DRStatusStateTrackWrite, 0, 0.25, 100, 0);
    QVERIFY(job.advance(100));
    job.finish(state == DRStatusStateDone ? DRStatusStateDone : DRStatusStateFailed);
    QCOMPARE(m_sent.last().value(DRStatusStateKey).toString(), state);
    QTEST(fraction(), "fraction");
}

MAPLORN_TEST_MAIN(JobReportTest)
#include "JobReportTest.moc"
