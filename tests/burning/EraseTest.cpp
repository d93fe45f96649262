// The erase page against a drive of either kind, with each kind of medium.
#include "AlertRecorder.h"
#include "DRKeys.h"
#include "DescribedRecorder.h"
#include "EraseViewController.h"
#include "JobLog.h"
#include "MediaTypes.h"
#include "RealDrive.h"
#include "Session.h"
#include "VirtualDrive.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 30000; // ms

// A recorder with an erasable medium whose erase reports what the test says, and ends so.
class SteppedErase : public DescribedRecorder
{
public:
    SteppedErase()
        : DescribedRecorder(
            {{DRDeviceMediaStateKey, QString(DRDeviceMediaStateMediaPresent)},
             {DRDeviceMediaInfoKey, QVariantMap{{DRDeviceMediaIsErasableKey, true}}}},
            {{DRDeviceWriteCapabilitiesKey, QVariantMap{{DRDeviceCanWriteCDKey, true}}}})
    {
    }

    [[nodiscard]] Result<> erase(EraseType, JobReport &report) override
    {
        report.beginPhase(DRStatusStateErasing, 0.5, 1, 100, 0);
        m_end.acquire();
        return Failure{u"The medium is worn out."_s};
    }
    void end() { m_end.release(); }

private:
    QSemaphore m_end;
};

}

class EraseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_drive = makeTestDrive();
        Session::setWorking(false);
    }
    void cleanup()
    {
        m_page.reset();
        m_drive.reset();
    }

    void checksInOrder_data();
    void checksInOrder();
    void erasesEveryKindOfMedium_data();
    void erasesEveryKindOfMedium();
    void failureLeavesTheControls();
    void cancelErasesNothing();
    void erasesWhatWasConfirmed();
    void burnBeforeIsKept();

private:
    void show()
    {
        m_page.reset(EraseViewController::getViewController());
        m_page->show();
    }
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return m_page->findChild<Control *>(QLatin1StringView(name));
    }
    void click() const { QTest::mouseClick(control<QPushButton>("eraseButton"), Qt::LeftButton); }
    void erase(AlertRecorder &alerts, QMessageBox::StandardButton answer = QMessageBox::Ok) const
    {
        alerts.expect(u"Are you sure to erase?"_s, u"The operation is not irreversible"_s, answer);
        click();
    }
    // Something to erase.
    void write() const
    {
        DRBurn burn = DRBurn::initWithDevice(m_drive->device());
        const JobLog log(burn);
        burn.writeLayout(DRBurn::layoutForImageFile(m_drive->makeSource(u"a"_s, 4096)));
        QVERIFY(log.waitForEnd() && !m_drive->device().mediaIsBlank());
    }

    std::unique_ptr<TestDrive> m_drive;
    std::unique_ptr<EraseViewController> m_page;
};

void EraseTest::checksInOrder_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("help");

    QTest::newRow("no recorder") << u"detached"_s << u"No recorder is attached."_s
                                 << u"Please connect a burning device."_s;
    QTest::newRow("writes nothing") << u"reader"_s << u"The device has no capability of write."_s
                                    << u"Please change a device that have capability of write."_s;
    QTest::newRow("no medium") << u"ejected"_s << u"The media is not present."_s
                               << u"Please wait or re-insert the media"_s;
    QTest::newRow("written once for all")
        << u"cd-r"_s << u"The media cannot be erased."_s << u"Please change a erasable media."_s;
}

void EraseTest::checksInOrder()
{
    QFETCH(const QString, state);
    QFETCH(const QString, message);
    QFETCH(const QString, help);
    const auto reader = std::make_shared<DescribedRecorder>(QVariantMap());
    if (state == "ejected"_L1)
        QVERIFY(m_drive->device().ejectMedia());
    else if (state == "cd-r"_L1)
        m_drive->insert(DRDeviceMediaTypeCDR);
    else
        m_drive->detach();
    if (state == "reader"_L1)
        m_drive->service().attach(reader);
    QTRY_COMPARE(m_drive->device().mediaIsPresent(), state != "ejected"_L1);
    show();
    AlertRecorder alerts;
    alerts.expect(message, help);
    click();
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(!Session::isWorking());
}

void EraseTest::erasesEveryKindOfMedium_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("eraseType");
    QTest::addColumn<bool>("eject");

    for (const MediaType &medium : MediaTypes::all())
        for (const int eraseType : {0, 1})
            if (VirtualDrive::isRewritable(medium))
                QTest::addRow("%s %d", medium.name.data(), eraseType)
                    << QString(medium.type) << eraseType << (eraseType == 1);
}

void EraseTest::erasesEveryKindOfMedium()
{
    QFETCH(const QString, type);
    QFETCH(const int, eraseType);
    QFETCH(const bool, eject);
    if (!m_drive->takes(type))
        QSKIP("not emulated");
    m_drive->insert(type, 2000);
    write();
    show();
    auto *progress = control<QGroupBox>("progressBox");
    QVERIFY(progress->isHidden());
    control<QComboBox>("eraseTypePopUp")->setCurrentIndex(eraseType);
    control<QCheckBox>("ejectAfterErasedCheckBox")->setChecked(eject);
    AlertRecorder alerts;
    erase(alerts);
    alerts.expect(u"The erase operation is completed."_s, u"Please take out the media."_s);
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), patience);
    QVERIFY(progress->isHidden() && control<QPushButton>("eraseButton")->isEnabled());
    QCOMPARE(control<QProgressBar>("progressIndicator")->value(), 0);
    QCOMPARE(control<QGroupBox>("stateBox")->title(), u"Done"_s);
    QVERIFY(!Session::isWorking() && !m_page->hasRunningJob());
    QTRY_COMPARE_WITH_TIMEOUT(m_drive->device().mediaIsPresent(), !eject, patience);
    QVERIFY(eject || m_drive->device().mediaIsBlank());
}

void EraseTest::failureLeavesTheControls()
{
    const auto recorder = std::make_shared<SteppedErase>();
    m_drive->detach();
    m_drive->service().attach(recorder);
    show();
    AlertRecorder alerts;
    erase(alerts);
    QTRY_COMPARE_WITH_TIMEOUT(control<QProgressBar>("progressIndicator")->value(), 50, patience);
    QVERIFY(control<QGroupBox>("progressBox")->isVisible() && Session::isWorking());
    QVERIFY(m_page->hasRunningJob());
    QCOMPARE(control<QGroupBox>("stateBox")->title(), u"Erasing"_s);
    bool isNumber = false;
    QVERIFY(control<QLabel>("elapsedTimeValue")->text().toInt(&isNumber) >= 0 && isNumber);
    recorder->end();
    QTRY_COMPARE_WITH_TIMEOUT(control<QGroupBox>("stateBox")->title(), u"Failed"_s, patience);
    for (const char *name :
         {"devicesPopUp", "eraseTypePopUp", "ejectAfterErasedCheckBox", "eraseButton"})
        QVERIFY2(!control<QWidget>(name)->isEnabled(), name);
    QCOMPARE(control<QGroupBox>("progressBox")->toolTip(), u"The medium is worn out."_s);
    QVERIFY(Session::isWorking() && !m_page->hasRunningJob());
    m_page.reset();
    m_drive->service().detach(recorder);
}

void EraseTest::cancelErasesNothing()
{
    write();
    show();
    AlertRecorder alerts;
    erase(alerts, QMessageBox::Cancel);
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(!m_drive->device().mediaIsBlank() && !Session::isWorking());
}

void EraseTest::erasesWhatWasConfirmed()
{
    write();
    const auto other = std::make_shared<SteppedErase>();
    m_drive->service().attach(other);
    show();
    auto *devices = control<QComboBox>("devicesPopUp");
    devices->setCurrentText(other->displayName());
    AlertRecorder alerts;
    erase(alerts);
    devices->setCurrentText(
        m_drive->device().displayName()); // as another recorder that comes has it
    QTRY_COMPARE(control<QProgressBar>("progressIndicator")->value(), 50);
    QVERIFY(alerts.isDone() && !m_drive->device().mediaIsBlank());
    other->end();
    QTRY_COMPARE(control<QGroupBox>("stateBox")->title(), u"Failed"_s);
}

// An erase that waited for the burn's end would take the disc that was just made.
void EraseTest::burnBeforeIsKept()
{
    m_drive->keepToSpeed();
    DRBurn burn = DRBurn::initWithDevice(m_drive->device());
    burn.setRequestedBurnSpeed(706); // KB/s: it runs still when the erase is started
    const JobLog log(burn);
    burn.writeLayout(DRBurn::layoutForImageFile(m_drive->makeSource(u"a"_s, 4 << 20)));
    show();
    AlertRecorder alerts;
    erase(alerts);
    QTRY_COMPARE_WITH_TIMEOUT(control<QGroupBox>("stateBox")->title(), u"Failed"_s, patience);
    QCOMPARE(control<QGroupBox>("progressBox")->toolTip(), u"The recorder is busy."_s);
    QVERIFY(!log.states().contains(QString(DRStatusStateDone)));
    burn.abort();
    QVERIFY(log.waitForEnd());
}

MAPLORN_WINDOW_TEST_MAIN(EraseTest)
#include "EraseTest.moc"
