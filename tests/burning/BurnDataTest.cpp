// The data page against a drive of either kind: checks, control states, burns and their ends.
#include "DRKeys.h"
#include "DataPage.h"
#include "LevelIndicator.h"
#include "Session.h"
#include "SteppedRecorder.h"
#include "WindowTestMain.h"

#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 blockSize = 2048;
constexpr qint64 smallDisc = 1000; // blocks

const QString connectDevice = u"Please connect a burning device."_s;
const QString noDevice = u"No recorder is attached."_s;

}

class BurnDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        Session::setWorking(false);
    }

    void textsAndStatesAtStart();
    void selectChecksTheMedium_data();
    void selectChecksTheMedium();
    void burnChecksInOrder_data();
    void burnChecksInOrder();
    void levelIsTruncated_data();
    void levelIsTruncated();
    void speedsOfAnEarlierMediumStay();
    void kindOfSourceEmptiesTheField();
    void burnsFolderAndVerifies();
    void burnsImageAsItIs();
    void controlsWhileBurning();
    void failureTellsItsReason();
    void speedIsShownAndAbortEnablesAtOnce();
    void lateEndLeavesTheNewerBurnAlone();
    void refusedQuestionsChangeNothing();
    void clearSetsDone();
    void newMediumIsShownOnComingBack();

private:
    // An image file of that many bytes.
    [[nodiscard]] static QString image(const DataPage &page, qint64 size)
    {
        return page.drive.makeSource(u"source.iso"_s, size);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void BurnDataTest::textsAndStatesAtStart()
{
    const DataPage page;
    QCOMPARE(page.control<QGroupBox>("deviceBox")->title(), u"Device"_s);
    QCOMPARE(page.control<QWidget>("mediaTypeButton")->toolTip(),
             u"Click to refresh the media status"_s);
    QCOMPARE(page.label("sourceTipLabel"), u"Please selec a folder to burn"_s);
    QCOMPARE(page.label("discSizeLabel"), u"737.0 MB"_s);
    QCOMPARE(page.label("fileSizeLabel"), QString());
    QCOMPARE(page.chosen("devicesPopUp"), page.drive.device().displayName());
    QVERIFY(!page.isEnabled("stopButton"));
    QVERIFY(!page.isEnabled("clearButton"));
    QVERIFY(page.isEnabled("openButton"));
    QVERIFY(page.isVisible("appendableCheckBox"));
}

void BurnDataTest::selectChecksTheMedium_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    QTest::newRow("no recorder") << u"detached"_s << noDevice << connectDevice;
    QTest::newRow("no medium") << u"ejected"_s << u"The media is not present."_s
                               << u"Please wait or re-insert the media"_s;
    QTest::newRow("written medium")
        << u"written"_s << u"The media is not blank."_s << u"Please insert blank media."_s;
}

void BurnDataTest::selectChecksTheMedium()
{
    QFETCH(const QString, state);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    DataPage page;
    AlertRecorder alerts;
    if (state == "detached"_L1) {
        page.drive.detach();
        QTRY_COMPARE(page.chosen("devicesPopUp"), noDevice);
    } else if (state == "ejected"_L1) {
        QVERIFY(page.drive.device().ejectMedia());
        QTRY_VERIFY(!page.drive.device().mediaIsPresent());
    } else {
        page.chooseImage(image(page, blockSize));
        page.startBurn(alerts);
        page.waitForEnd();
        page.click("mediaTypeButton");
        QCOMPARE(page.label("discSizeLabel"), u"0 Bytes"_s);
    }
    alerts.expect(message, informativeText);
    page.click("sourceButton");
    QVERIFY(alerts.isDone());
    QVERIFY(!page.page->findChild<QFileDialog *>());
}

void BurnDataTest::burnChecksInOrder_data()
{
    QTest::addColumn<QVariantMap>("medium");
    QTest::addColumn<bool>("writes");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    const QVariantMap none;
    const QVariantMap blank{{DRDeviceMediaIsBlankKey, true}};
    const QVariantMap written{{DRDeviceMediaIsBlankKey, false}};
    QTest::newRow("a reader, before its missing medium")
        << none << false << u"The device has no capability of write."_s
        << u"Please change a device that have capability of write."_s;
    QTest::newRow("no medium, with the text of this check alone")
        << none << true << u"The media is not present."_s << u"Please insert blank media."_s;
    QTest::newRow("written medium, before the missing source")
        << written << true << u"The media is not blank."_s << u"Please insert blank media."_s;
    QTest::newRow("no source") << blank << true << u"Source cannot be null"_s
                               << u"Please select file or folder"_s;
}

void BurnDataTest::burnChecksInOrder()
{
    QFETCH(const QVariantMap, medium);
    QFETCH(const bool, writes);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    DataPage page;
    QVariantMap status{{DRDeviceMediaStateKey, QString(DRDeviceMediaStateNone)}};
    if (!medium.isEmpty())
        status = {{DRDeviceMediaStateKey, QString(DRDeviceMediaStateMediaPresent)},
                  {DRDeviceMediaInfoKey, medium}};
    const QVariantMap capabilities{{DRDeviceCanWriteDVDKey, writes}};
    page.use<DescribedRecorder>(status, QVariantMap{{DRDeviceWriteCapabilitiesKey, capabilities}});
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    page.click("burnButton");
    QVERIFY(alerts.isDone());
}

void BurnDataTest::levelIsTruncated_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<quint64>("level");
    const qint64 whole = smallDisc * blockSize;
    QTest::newRow("just below half") << whole / 2 - 1 << quint64(49);
    QTest::newRow("exactly the disc") << whole << quint64(100);
    QTest::newRow("half a percent more passes") << whole + whole / 200 << quint64(100);
    QTest::newRow("one percent more is too much") << whole + whole / 100 << quint64(101);
}

void BurnDataTest::levelIsTruncated()
{
    QFETCH(const qint64, size);
    QFETCH(const quint64, level);
    DataPage page;
    page.drive.insert(DRDeviceMediaTypeCDR, smallDisc);
    page.click("mediaTypeButton");
    page.chooseImage(image(page, size));
    QCOMPARE(page.control<LevelIndicator>("levelIndicator")->value(), level);
    AlertRecorder alerts;
    if (level <= 100)
        return page.startBurn(alerts, QMessageBox::Cancel);
    alerts.expect(u"Source size is more than disc capacity"_s,
                  u"Please select the smaller source or change disc with more capacity"_s);
    page.click("burnButton");
    QTRY_VERIFY(alerts.isDone());
}

void BurnDataTest::speedsOfAnEarlierMediumStay()
{
    DataPage page;
    const auto statusWith = [](const QVariantList &speeds) {
        return QVariantMap{{DRDeviceMediaInfoKey, QVariantMap{{DRDeviceBurnSpeedsKey, speeds}}}};
    };
    const auto recorder = page.use<DescribedRecorder>(statusWith({4.0, 16.0}));
    auto *speeds = page.control<QComboBox>("speedPopUp");
    speeds->clear();
    const auto titles = [&] {
        page.click("mediaTypeButton");
        QStringList list;
        for (int i = 0; i < speeds->count(); ++i)
            list.append(speeds->itemText(i));
        return list.join(u' ');
    };
    QCOMPARE(titles(), u"AUTO 4 16"_s);
    recorder->setStatus(statusWith({4.0, 8.0}));
    QCOMPARE(titles(), u"16 AUTO 4 8"_s);
    recorder->setStatus(statusWith({706.0, 1411.2}));
    QCOMPARE(titles(), u"16 4 8 AUTO 706 1411.2"_s);
    QCOMPARE(speeds->currentText(), u"AUTO"_s);

    speeds->setCurrentText(u"706"_s);
    Q_EMIT speeds->activated(speeds->currentIndex());
    QCOMPARE(page.label("speedLabel"), u"K/S"_s);
    page.click("mediaTypeButton");
    QCOMPARE(page.label("speedLabel"), QString());
}

void BurnDataTest::kindOfSourceEmptiesTheField()
{
    const DataPage page;
    page.choose(m_folder->path());
    page.chooseType(1);
    QCOMPARE(page.label("sourceTipLabel"), u"Please selec a image file(.iso or .dmg) to burn"_s);
    QCOMPARE(page.shown("sourceField"), QString());
    QCOMPARE(page.control<QLineEdit>("sourceField")->toolTip(), m_folder->path());
    QCOMPARE(page.label("fileSizeLabel"), u"0 Bytes"_s);
}

void BurnDataTest::burnsFolderAndVerifies()
{
    DataPage page;
    const QString source = page.drive.makeSource(u"-file"_s, 3 * blockSize + 1);
    page.choose(QFileInfo(source).path());
    page.check("verifyCheckBox");
    AlertRecorder alerts;
    page.startBurn(alerts);
    QCOMPARE(alerts.seen().first().buttons, (QList{QMessageBox::Ok, QMessageBox::Cancel}));
    page.waitForEnd();
    QCOMPARE(page.progressTitle(), u"Finishing"_s);
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 100);
    const qint64 burned = page.drive.device().mediaSpaceUsed().value_or(DRMSF()).blocks();
    QVERIFY(page.drive.burnedData(burned * blockSize).contains(fileContent(source)));
    QVERIFY(!page.drive.isHeld());
    QVERIFY(!page.drive.device().mediaIsReserved());
}

void BurnDataTest::burnsImageAsItIs()
{
    DataPage page;
    const QString source = image(page, 5 * blockSize);
    page.chooseImage(source);
    AlertRecorder alerts;
    page.startBurn(alerts);
    page.waitForEnd();
    QCOMPARE(page.drive.burnedData(5 * blockSize), fileContent(source));
}

void BurnDataTest::controlsWhileBurning()
{
    DataPage page;
    page.choose(m_folder->path());
    page.chooseSlowest();
    AlertRecorder alerts;
    page.startBurn(alerts);
    for (const bool isBurning : {true, false}) {
        for (const char *input :
             {"devicesPopUp", "mediaTypeButton", "sourceTypePopUp", "sourceField", "sourceButton",
              "speedPopUp", "verifyCheckBox", "appendableCheckBox", "burnButton", "clearButton"})
            QVERIFY2(page.isEnabled(input) != isBurning, input);
        for (const char *other : {"stopButton", "openButton", "saveButton"})
            QVERIFY2(page.isEnabled(other) == isBurning, other);
        QCOMPARE(Session::isWorking(), isBurning);
        page.waitForEnd();
    }
}

void BurnDataTest::failureTellsItsReason()
{
    DataPage page;
    const QString source = image(page, blockSize);
    page.chooseImage(source);
    QVERIFY(QFile::remove(source));
    AlertRecorder alerts;
    page.startBurn(alerts);
    const auto *box = page.control<QGroupBox>("progressBox");
    page.waitForEnd();
    QCOMPARE(box->title(), u"Failed"_s);
    QVERIFY(box->toolTip().contains(u"source.iso"_s));
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 0);
    QVERIFY(!Session::isWorking());
    QVERIFY2(page.drive.device().mediaIsBlank(), "nothing was written");
    QVERIFY(!page.drive.device().mediaIsReserved());
}

void BurnDataTest::speedIsShownAndAbortEnablesAtOnce()
{
    DataPage page;
    page.chooseImage(image(page, 5000 * blockSize));
    page.chooseSlowest();
    AlertRecorder alerts;
    page.startBurn(alerts);
    QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), u"Write"_s, DataPage::patience);
    const auto *label = page.control<QLabel>("progressLabel");
    QTRY_VERIFY_WITH_TIMEOUT(!label->text().isEmpty(), DataPage::patience);
    static const QRegularExpression form(u"^ \\[ \\d+X - \\d+(\\.\\d)? (Bytes|KB|MB)/S \\]$"_s);
    QVERIFY2(form.match(label->text()).hasMatch(), qPrintable(label->text()));
    page.stopBurn(alerts);
    QVERIFY(page.isEnabled("burnButton"));
    QVERIFY(!Session::isWorking());
    QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), u"Failed"_s, DataPage::patience);
    QVERIFY(!page.drive.device().mediaIsBlank());
}

void BurnDataTest::lateEndLeavesTheNewerBurnAlone()
{
    DataPage page;
    const auto slow = std::make_shared<SteppedRecorder>();
    page.drive.service().attach(slow);
    QTRY_COMPARE(page.control<QComboBox>("devicesPopUp")->count(), 2);
    page.chooseImage(image(page, 5000 * blockSize)); // written for 14 s
    auto *devices = page.control<QComboBox>("devicesPopUp");
    QVERIFY2(page.drive.device().recorder()->isVirtual()
                 == (devices->findText(slow->displayName()) == 0),
             "what writes into files stands behind what burns discs");
    devices->setCurrentText(slow->displayName());
    AlertRecorder alerts;
    page.startBurn(alerts);
    QTRY_VERIFY_WITH_TIMEOUT(slow->hasBegun(), DataPage::patience); // before, it would end at once
    page.stopBurn(alerts);
    QVERIFY(page.isEnabled("burnButton"));

    devices->setCurrentText(page.drive.device().displayName());
    page.chooseSlowest();
    page.startBurn(alerts);
    slow->fail(u"ended late"_s);
    QTRY_VERIFY(!slow->isReserved());
    QVERIFY(page.page->hasRunningJob());
    QVERIFY(page.isEnabled("stopButton"));
    QVERIFY(Session::isWorking());
    QVERIFY(page.drive.device().mediaIsReserved());
    QVERIFY(page.progressTitle() != u"Failed"_s);
    QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), u"Write"_s, DataPage::patience);
    page.stopBurn(alerts);
    page.waitForEnd();
    QVERIFY(!page.drive.device().mediaIsBlank());
}

void BurnDataTest::refusedQuestionsChangeNothing()
{
    DataPage page;
    page.choose(m_folder->path());
    AlertRecorder alerts;
    page.startBurn(alerts, QMessageBox::Cancel);
    page.clear(alerts, QMessageBox::Cancel);
    QCOMPARE(page.shown("sourceField"), m_folder->path());
    QVERIFY(page.drive.device().mediaIsBlank());
    QVERIFY(!page.page->hasRunningJob());
}

void BurnDataTest::clearSetsDone()
{
    const DataPage page;
    page.choose(m_folder->path());
    AlertRecorder alerts;
    page.clear(alerts);
    QTRY_COMPARE(page.progressTitle(), u"Done"_s);
    QCOMPARE(page.shown("sourceField"), QString());
    QCOMPARE(page.control<QLineEdit>("sourceField")->toolTip(), QString());
    QCOMPARE(page.label("fileSizeLabel"), QString());
    QVERIFY(!page.isEnabled("clearButton"));
}

void BurnDataTest::newMediumIsShownOnComingBack()
{
    DataPage page;
    page.page->hide();
    page.drive.insert(DRDeviceMediaTypeDVDPlusRW);
    page.page->show();
    QCOMPARE(page.label("discSizeLabel"), u"4.70 GB"_s);
    QCOMPARE(page.control<QWidget>("mediaTypeButton")->accessibleDescription(), u"DVD+RW"_s);
}

MAPLORN_WINDOW_TEST_MAIN(BurnDataTest)
#include "BurnDataTest.moc"
