// Drives that come and go, that may not be used, and that are not ready: what is told of them, and
// what a job says that cannot begin.
#include "DRErase.h"
#include "DRKeys.h"
#include "DescribedRecorder.h"
#include "RealDrive.h"
#include "TestMain.h"

#include <QProcess>

#include <csignal>
#include <future>

namespace {

constexpr qint64 blockSize = 2048;

}

class RecorderMonitorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<RealDrive>(); }
    void cleanup() { m_drive.reset(); }

    void describesDriveAndMedium();
    void refusals_data();
    void refusals();
    void childrenDoNotHoldTheDrive();
    void waitsForTheMedium();
    void unreadableIsNotBlank();
    void notToBeAsked_data();
    void notToBeAsked();
    void ejectsWhatIsSpunUp();
    void givesUpWhatCannotBeRead();
    void saysNothingAtFirst();
    void eraseThatWaitedIsForItsMedium();
    void comesAndGoes();

private:
    std::unique_ptr<RealDrive> m_drive;
};

void RecorderMonitorTest::describesDriveAndMedium()
{
    const DRDevice device = m_drive->device();
    QCOMPARE(device.displayName(), QStringLiteral("EMULATED DVD-RW TESTDRIVE"));
    QVERIFY(device.writesCD() && device.writesDVD());
    const QVariantMap info = device.info();
    const QMap<QString, QVariant> expected{
        {DRDeviceVendorNameKey, QStringLiteral("EMULATED")},
        {DRDeviceFirmwareRevisionKey, QStringLiteral("1.00")},
        {DRDeviceSerialNumberKey, QStringLiteral("MMC0001")},
        {DRDevicePhysicalInterconnectKey, QStringLiteral("SATA")},
        {DRDevicePhysicalInterconnectLocationKey,
         QString(DRDevicePhysicalInterconnectLocationInternal)},
        {DRDeviceLoadingMechanismCanEjectKey, true},
        {DRDeviceLoadingMechanismCanInjectKey, true},
        {DRDeviceWriteBufferSizeKey, 2048},
        {DRDeviceSupportLevelKey, QString(DRDeviceSupportLevelSupported)}};
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(info.value(it.key()), it.value());
    const QVariantMap writes = info.value(DRDeviceWriteCapabilitiesKey).toMap();
    QVERIFY(writes.value(DRDeviceCanWriteCDTextKey).toBool());
    QVERIFY(writes.value(DRDeviceCanWriteBDREKey).toBool());
    QVERIFY(!writes.value(DRDeviceCanWriteDVDRKey).toBool());

    QCOMPARE(device.mediaType(), QString(DRDeviceMediaTypeCDRW));
    QCOMPARE(device.bsdName(), QStringLiteral("sr0"));
    QCOMPARE(device.mediaSpaceFree(), DRMSF(359849));
    QVERIFY(device.mediaIsBlank() && device.mediaIsAppendable() && device.mediaIsErasable());
    QCOMPARE(m_drive->medium().value(DRDeviceBurnSpeedsKey),
             QVariant(QVariantList{704.0, 1408.0, 1760.0, 4224.0}));
    QCOMPARE(device.status().value(DRDeviceMaximumWriteSpeedKey).toDouble(), 4224.0);
}

void RecorderMonitorTest::refusals_data()
{
    QTest::addColumn<QString>("medium");
    QTest::addColumn<QString>("faults");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no medium") << "none" << QString() << "There is no medium in the recorder.";
    QTest::newRow("too small") << "cd-r 400" << QString()
                               << "The source needs 500 blocks, the medium holds 400.";
    QTest::newRow("pressed") << "cd-rom" << QString() << "The medium is not blank.";
    QTest::newRow("no permission") << "cd-r"
                                   << "denied"
                                   << "in the group cdrom";
    QTest::newRow("in use") << "cd-r"
                            << "busy"
                            << "Another program uses /dev/sr0";
    QTest::newRow("unplugged") << "cd-r"
                               << "gone"
                               << "not attached any more";
    QTest::newRow("spun up for long") << "cd-r"
                                      << "not-ready 600"
                                      << "does not get its medium ready";
}

void RecorderMonitorTest::refusals()
{
    QFETCH(const QString, medium);
    QFETCH(const QString, faults);
    QFETCH(const QString, reason);
    m_drive->emulated().insert(medium);
    m_drive->emulated().setFaults(faults);
    const Result<> burned = m_drive->burn(m_drive->imageOf(500 * blockSize));
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(reason), qPrintable(burned.error()));
}

void RecorderMonitorTest::childrenDoNotHoldTheDrive()
{
    BurnRun run;
    qint64 child = 0;
    run.at(DRStatusStateTrackWrite, [&child] {
        QProcess::startDetached(QStringLiteral("sleep"), {QStringLiteral("60")}, {}, &child);
    });
    QVERIFY(m_drive->burn(run, m_drive->imageOf(500 * blockSize)));
    QVERIFY(child > 0 && !m_drive->isHeld());
    ::kill(static_cast<pid_t>(child), SIGKILL);
}

void RecorderMonitorTest::waitsForTheMedium()
{
    m_drive->emulated().setFaults(QStringLiteral("not-ready 3"));
    const Result<> burned = m_drive->burn(m_drive->imageOf(500 * blockSize));
    QVERIFY2(burned, qPrintable(burned.error()));
}

// What cannot be read might be all that there is of something.
void RecorderMonitorTest::unreadableIsNotBlank()
{
    m_drive->insert(DRDeviceMediaTypeDVDPlusRW, 20000);
    BurnRun run;
    run.at(DRStatusStateTrackWrite,
           [this] { m_drive->emulated().setFaults(QStringLiteral("read-error 16")); });
    QVERIFY(m_drive->burn(run, m_drive->imageOf(500 * blockSize)));
    QVERIFY(m_drive->device().mediaIsPresent() && !m_drive->device().mediaIsBlank());
    QCOMPARE(m_drive->burn(m_drive->imageOf(500 * blockSize)).error(),
             QStringLiteral("The medium is not blank."));
}

void RecorderMonitorTest::notToBeAsked_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("reason");
    QTest::newRow("in use") << "busy"
                            << "Another program uses /dev/sr0, or its disc is mounted.";
    QTest::newRow("no permission") << "denied"
                                   << "in the group cdrom";
}

// A drive that is kept from this program is shown as the system knows it, and asked when it is
// free.
void RecorderMonitorTest::notToBeAsked()
{
    QFETCH(const QString, fault);
    QFETCH(const QString, reason);
    m_drive.reset();
    m_drive = std::make_unique<RealDrive>(fault);
    const DRDevice device = m_drive->device();
    QCOMPARE(device.displayName(), QStringLiteral("EMULATED DVD-RW TESTDRIVE"));
    QVERIFY(device.writesCD() && device.writesDVD());
    QVERIFY(device.mediaIsPresent() && device.mediaIsBlank() && device.mediaIsErasable());
    QCOMPARE(device.mediaType(), QString(DRDeviceMediaTypeCDRW));
    const Result<> burned = m_drive->burn(m_drive->imageOf(500 * blockSize));
    QVERIFY2(burned.error().contains(reason), qPrintable(burned.error()));
    QVERIFY(device.mediaIsBusy() && !device.ejectMedia());
    m_drive->emulated().setFaults({});
    QTRY_COMPARE_WITH_TIMEOUT(device.mediaSpaceFree(), DRMSF(359849), 20000);
    QVERIFY(m_drive->burn(m_drive->imageOf(500 * blockSize)));
}

void RecorderMonitorTest::ejectsWhatIsSpunUp()
{
    m_drive->emulated().setFaults(QStringLiteral("not-ready 2"));
    QVERIFY(m_drive->device().ejectMedia());
    QTRY_VERIFY_WITH_TIMEOUT(m_drive->device().trayIsOpen(), 20000);
}

void RecorderMonitorTest::givesUpWhatCannotBeRead()
{
    m_drive.reset();
    m_drive = std::make_unique<RealDrive>(QStringLiteral("unreadable"));
    const DRDevice device = m_drive->device();
    QVERIFY(!m_drive->burn(m_drive->imageOf(500 * blockSize)));
    QTRY_VERIFY_WITH_TIMEOUT(!m_drive->recorder().isToBeAskedAgain(), 60'000);
    QVERIFY(device.mediaIsPresent() && !device.mediaIsBusy());
    QVERIFY(device.ejectMedia());
    QTRY_VERIFY_WITH_TIMEOUT(device.trayIsOpen() && !device.mediaIsPresent(), 20'000);
    m_drive->emulated().setFaults({});
    m_drive->insert(DRDeviceMediaTypeCDRW, 20'000);
    QVERIFY(m_drive->burn(m_drive->imageOf(500 * blockSize)));
}

// libburn keeps a drive in its list that has not even said what it is.
void RecorderMonitorTest::saysNothingAtFirst()
{
    m_drive.reset();
    m_drive = std::make_unique<RealDrive>(QStringLiteral("refuse 0x12"));
    QVERIFY(!m_drive->burn(m_drive->imageOf(500 * blockSize)));
    m_drive->emulated().setFaults({});
    const Result<> burned = m_drive->burn(m_drive->imageOf(500 * blockSize));
    QVERIFY2(burned, qPrintable(burned.error()));
}

// The job of another drive comes first, and somebody changes the medium meanwhile.
void RecorderMonitorTest::eraseThatWaitedIsForItsMedium()
{
    const DescribedRecorder other({}, {});
    std::promise<void> ended;
    m_drive->recorder().jobs().post(
        [&ended](const std::stop_token &) { ended.get_future().wait(); }, &other);
    DRErase erase = DRErase::initWithDevice(m_drive->device());
    erase.start();
    const int changes = m_drive->recorder().mediumChanges();
    m_drive->emulated().insert(QStringLiteral("cd-rw"));
    const bool isHeard =
        QTest::qWaitFor([&] { return m_drive->recorder().mediumChanges() > changes; }, 20'000);
    ended.set_value();
    QVERIFY(isHeard);
    QTRY_COMPARE(erase.errorText(),
                 QStringLiteral("The medium was changed while this waited for another recorder."));
}

void RecorderMonitorTest::comesAndGoes()
{
    m_drive->insert(DRDeviceMediaTypeDVDPlusRW, 3000);
    m_drive->detach();
    QVERIFY(!m_drive->device().isValid());
    m_drive->attach();
    QVERIFY(m_drive->device().isValid());
    QCOMPARE(m_drive->device().mediaType(), QString(DRDeviceMediaTypeDVDPlusRW));
    QVERIFY(m_drive->device().ejectMedia());
    QTRY_VERIFY_WITH_TIMEOUT(!m_drive->device().mediaIsPresent() && m_drive->device().trayIsOpen(),
                             20'000);
}

MAPLORN_TEST_MAIN(RecorderMonitorTest)
#include "RecorderMonitorTest.moc"
