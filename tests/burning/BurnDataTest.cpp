// The data page against a drive of either kind: checks, control states, burns and their ends.
#include "DRKeys.h"
#include "DataPage.h"
#include "DescribedRecorder.h"
#include "LevelIndicator.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QSemaphore>

#include <atomic>

namespace {

constexpr qint64 blockSize = 2048;
constexpr qint64 smallDisc = 1000; // blocks

const QString connectDevice = QStringLiteral("Please connect a burning device.");
const QString noDevice = QStringLiteral("No recorder is attached.");

void writeFile(const QString &path, qint64 size)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(1);
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    QCOMPARE(file.write(bytes), size);
}

// A recorder with a blank medium whose burn ends, as failed, when the test says so.
class SlowToEnd : public DescribedRecorder
{
public:
    SlowToEnd()
        : DescribedRecorder(
            {{DRDeviceMediaStateKey, QString(DRDeviceMediaStateMediaPresent)},
             {DRDeviceMediaInfoKey, QVariantMap{{DRDeviceMediaIsBlankKey, true}}}},
            {{DRDeviceWriteCapabilitiesKey, QVariantMap{{DRDeviceCanWriteCDKey, true}}}})
    {
    }

    [[nodiscard]] Result<> burn(const BurnRequest &, JobReport &) override
    {
        m_begun = true;
        m_end.acquire();
        return Failure{QStringLiteral("ended late")};
    }
    [[nodiscard]] bool hasBegun() const { return m_begun; }
    void end() { m_end.release(); }

private:
    std::atomic_bool m_begun = false;
    QSemaphore m_end;
};

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
    void speedTextWhileWriting();
    void failureTellsItsReason();
    void abortEnablesAtOnce();
    void lateEndLeavesTheNewerBurnAlone();
    void refusedQuestionsChangeNothing();
    void clearSetsDone();
    void newMediumIsShownOnComingBack();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    // An image file of that many bytes in the temporary folder.
    [[nodiscard]] QString image(qint64 size) const
    {
        const QString file = path(QStringLiteral("source.iso"));
        writeFile(file, size);
        return file;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void BurnDataTest::textsAndStatesAtStart()
{
    const DataPage page;
    QCOMPARE(page.control<QGroupBox>("deviceBox")->title(), QStringLiteral("Device"));
    QCOMPARE(page.control<QWidget>("mediaTypeButton")->toolTip(),
             QStringLiteral("Click to refresh the media status"));
    QCOMPARE(page.control<QLabel>("sourceTipLabel")->text(),
             QStringLiteral("Please selec a folder to burn"));
    QCOMPARE(page.control<QLabel>("discSizeLabel")->text(), QStringLiteral("737.0 MB"));
    QCOMPARE(page.control<QLabel>("fileSizeLabel")->text(), QString());
    QCOMPARE(page.control<QComboBox>("devicesPopUp")->currentText(),
             page.drive.device().displayName());
    QVERIFY(!page.control<QWidget>("stopButton")->isEnabled());
    QVERIFY(!page.control<QWidget>("clearButton")->isEnabled());
    QVERIFY(page.control<QWidget>("openButton")->isEnabled());
    QVERIFY(page.control<QWidget>("appendableCheckBox")->isVisible());
}

void BurnDataTest::selectChecksTheMedium_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    QTest::newRow("no recorder") << "detached" << noDevice << connectDevice;
    QTest::newRow("no medium") << "ejected"
                               << "The media is not present."
                               << "Please wait or re-insert the media";
    QTest::newRow("written medium") << "written"
                                    << "The media is not blank."
                                    << "Please insert blank media.";
}

void BurnDataTest::selectChecksTheMedium()
{
    QFETCH(const QString, state);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    DataPage page;
    AlertRecorder alerts;
    if (state == QLatin1StringView("detached")) {
        page.drive.detach();
        QTRY_COMPARE(page.control<QComboBox>("devicesPopUp")->currentText(), noDevice);
    } else if (state == QLatin1StringView("ejected")) {
        QVERIFY(page.drive.device().ejectMedia());
        QTRY_VERIFY(!page.drive.device().mediaIsPresent());
    } else {
        page.chooseType(1);
        page.choose(image(blockSize));
        page.startBurn(alerts);
        page.waitForEnd();
        page.click("mediaTypeButton");
        QCOMPARE(page.control<QLabel>("discSizeLabel")->text(), QStringLiteral("0 Bytes"));
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
        << none << false << "The device has no capability of write."
        << "Please change a device that have capability of write.";
    QTest::newRow("no medium, with the text of this check alone")
        << none << true << "The media is not present."
        << "Please insert blank media.";
    QTest::newRow("written medium, before the missing source")
        << written << true << "The media is not blank."
        << "Please insert blank media.";
    QTest::newRow("no source") << blank << true << "Source cannot be null"
                               << "Please select file or folder";
}

void BurnDataTest::burnChecksInOrder()
{
    QFETCH(const QVariantMap, medium);
    QFETCH(const bool, writes);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    DataPage page;
    page.drive.detach();
    QVariantMap status{{DRDeviceMediaStateKey, QString(DRDeviceMediaStateNone)}};
    if (!medium.isEmpty())
        status = {{DRDeviceMediaStateKey, QString(DRDeviceMediaStateMediaPresent)},
                  {DRDeviceMediaInfoKey, medium}};
    const QVariantMap capabilities{{DRDeviceCanWriteDVDKey, writes}};
    page.drive.service().attach(std::make_shared<DescribedRecorder>(
        status, QVariantMap{{DRDeviceWriteCapabilitiesKey, capabilities}}));
    QTRY_COMPARE(page.control<QComboBox>("devicesPopUp")->currentText(),
                 QStringLiteral("Described"));
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
    page.chooseType(1);
    page.choose(image(size));
    QCOMPARE(page.control<LevelIndicator>("levelIndicator")->value(), level);
    AlertRecorder alerts;
    if (level > 100)
        alerts.expect(QStringLiteral("Source size is more than disc capacity"),
                      QStringLiteral("Please select the smaller source or change disc with more "
                                     "capacity"));
    else
        alerts.expect(QStringLiteral("Are you sure to burn?"),
                      QStringLiteral("Burn the data on the disc"), QMessageBox::Cancel);
    page.click("burnButton");
    QTRY_VERIFY(alerts.isDone());
}

void BurnDataTest::speedsOfAnEarlierMediumStay()
{
    DataPage page;
    page.drive.detach();
    const auto statusWith = [](const QVariantList &speeds) {
        return QVariantMap{{DRDeviceMediaInfoKey, QVariantMap{{DRDeviceBurnSpeedsKey, speeds}}}};
    };
    const auto recorder = std::make_shared<DescribedRecorder>(statusWith({4.0, 16.0}));
    page.drive.service().attach(recorder);
    QTRY_COMPARE(page.control<QComboBox>("devicesPopUp")->currentText(),
                 QStringLiteral("Described"));
    auto *speeds = page.control<QComboBox>("speedPopUp");
    speeds->clear();
    const auto titles = [speeds] {
        QStringList list;
        for (int i = 0; i < speeds->count(); ++i)
            list.append(speeds->itemText(i));
        return list.join(QLatin1Char(' '));
    };
    page.click("mediaTypeButton");
    QCOMPARE(titles(), QStringLiteral("AUTO 4 16"));
    recorder->setStatus(statusWith({4.0, 8.0}));
    page.click("mediaTypeButton");
    QCOMPARE(titles(), QStringLiteral("16 AUTO 4 8"));
    recorder->setStatus(statusWith({706.0, 1411.2}));
    page.click("mediaTypeButton");
    QCOMPARE(titles(), QStringLiteral("16 4 8 AUTO 706 1411.2"));
    QCOMPARE(speeds->currentText(), QStringLiteral("AUTO"));

    speeds->setCurrentText(QStringLiteral("706"));
    Q_EMIT speeds->activated(speeds->currentIndex());
    QCOMPARE(page.control<QLabel>("speedLabel")->text(), QStringLiteral("K/S"));
    page.click("mediaTypeButton");
    QCOMPARE(page.control<QLabel>("speedLabel")->text(), QString());
}

void BurnDataTest::kindOfSourceEmptiesTheField()
{
    const DataPage page;
    page.choose(m_folder->path());
    page.chooseType(1);
    QCOMPARE(page.control<QLabel>("sourceTipLabel")->text(),
             QStringLiteral("Please selec a image file(.iso or .dmg) to burn"));
    QCOMPARE(page.control<QLineEdit>("sourceField")->text(), QString());
    QCOMPARE(page.control<QLineEdit>("sourceField")->toolTip(), m_folder->path());
    QCOMPARE(page.control<QLabel>("fileSizeLabel")->text(), QStringLiteral("0 Bytes"));
}

void BurnDataTest::burnsFolderAndVerifies()
{
    writeFile(path(QStringLiteral("-file")), 3 * blockSize + 1);
    DataPage page;
    page.choose(m_folder->path());
    page.control<QAbstractButton>("verifyCheckBox")->setChecked(true);
    AlertRecorder alerts;
    page.startBurn(alerts);
    QCOMPARE(alerts.seen().first().buttons, (QList{QMessageBox::Ok, QMessageBox::Cancel}));
    page.waitForEnd();
    QCOMPARE(page.control<QGroupBox>("progressBox")->title(), QStringLiteral("Finishing"));
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 100);
    const qint64 burned = page.drive.device().mediaSpaceUsed().value_or(DRMSF()).blocks();
    QVERIFY(page.drive.burnedData(burned * blockSize)
                .contains(fileContent(path(QStringLiteral("-file")))));
    QVERIFY(!page.drive.isHeld());
    QVERIFY(!page.drive.device().mediaIsReserved());
}

void BurnDataTest::burnsImageAsItIs()
{
    DataPage page;
    page.chooseType(1);
    const QString source = image(5 * blockSize);
    page.choose(source);
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
    const auto areEnabled = [&page](std::initializer_list<const char *> names) {
        int count = 0;
        for (const char *name : names)
            count += page.control<QWidget>(name)->isEnabled() ? 1 : 0;
        return count == 0 ? 0 : count == static_cast<int>(names.size()) ? 1 : -1;
    };
    const auto inputs = [&] {
        return areEnabled({"devicesPopUp", "mediaTypeButton", "sourceTypePopUp", "sourceField",
                           "sourceButton", "speedPopUp", "verifyCheckBox", "appendableCheckBox",
                           "burnButton", "clearButton"});
    };
    const auto others = [&] { return areEnabled({"stopButton", "openButton", "saveButton"}); };
    QCOMPARE(inputs(), 0);
    QCOMPARE(others(), 1);
    QVERIFY(Session::isWorking());
    page.waitForEnd();
    QCOMPARE(inputs(), 1);
    QCOMPARE(others(), 0);
    QVERIFY(!Session::isWorking());
}

void BurnDataTest::speedTextWhileWriting()
{
    DataPage page;
    page.chooseType(1);
    page.choose(image(1000 * blockSize));
    page.chooseSlowest();
    AlertRecorder alerts;
    page.startBurn(alerts);
    const auto *label = page.control<QLabel>("progressLabel");
    QTRY_VERIFY(!label->text().isEmpty());
    static const QRegularExpression form(
        QStringLiteral("^ \\[ \\d+X - \\d+(\\.\\d)? (Bytes|KB|MB)/S \\]$"));
    QVERIFY2(form.match(label->text()).hasMatch(), qPrintable(label->text()));
    page.waitForEnd();
}

void BurnDataTest::failureTellsItsReason()
{
    DataPage page;
    page.chooseType(1);
    const QString source = image(blockSize);
    page.choose(source);
    QVERIFY(QFile::remove(source));
    AlertRecorder alerts;
    page.startBurn(alerts);
    const auto *box = page.control<QGroupBox>("progressBox");
    page.waitForEnd();
    QCOMPARE(box->title(), QStringLiteral("Failed"));
    QVERIFY(box->toolTip().contains(QStringLiteral("source.iso")));
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 0);
    QVERIFY(!Session::isWorking());
    QVERIFY2(page.drive.device().mediaIsBlank(), "nothing was written");
    QVERIFY(!page.drive.device().mediaIsReserved());
}

void BurnDataTest::abortEnablesAtOnce()
{
    DataPage page;
    page.chooseType(1);
    page.choose(image(1000 * blockSize));
    page.chooseSlowest();
    AlertRecorder alerts;
    page.startBurn(alerts);
    QTRY_COMPARE(page.control<QGroupBox>("progressBox")->title(), QStringLiteral("Write"));
    alerts.expect(QStringLiteral("Are you sure to abort the burning?"),
                  QStringLiteral("The abort will leave the data incomplete on the disc"));
    page.click("stopButton");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(page.control<QWidget>("burnButton")->isEnabled());
    QVERIFY(!Session::isWorking());
    QTRY_COMPARE(page.control<QGroupBox>("progressBox")->title(), QStringLiteral("Failed"));
    QVERIFY(!page.drive.device().mediaIsBlank());
}

void BurnDataTest::lateEndLeavesTheNewerBurnAlone()
{
    DataPage page;
    const auto slow = std::make_shared<SlowToEnd>();
    page.drive.service().attach(slow);
    QTRY_COMPARE(page.control<QComboBox>("devicesPopUp")->count(), 2);
    page.chooseType(1);
    page.choose(image(500 * blockSize));
    auto *devices = page.control<QComboBox>("devicesPopUp");
    devices->setCurrentIndex(1);
    AlertRecorder alerts;
    page.startBurn(alerts);
    QTRY_VERIFY(slow->hasBegun()); // aborted before, it would end at once
    alerts.expect(QStringLiteral("Are you sure to abort the burning?"),
                  QStringLiteral("The abort will leave the data incomplete on the disc"));
    page.click("stopButton");
    QTRY_VERIFY(page.control<QWidget>("burnButton")->isEnabled());

    devices->setCurrentIndex(0);
    page.chooseSlowest();
    page.startBurn(alerts);
    slow->end();
    QTRY_VERIFY(!slow->isReserved());
    QVERIFY(page.page->hasRunningJob());
    QVERIFY(page.control<QWidget>("stopButton")->isEnabled());
    QVERIFY(Session::isWorking());
    QVERIFY(page.drive.device().mediaIsReserved());
    QVERIFY(page.control<QGroupBox>("progressBox")->title() != QStringLiteral("Failed"));
    page.waitForEnd();
    QVERIFY(!page.drive.device().mediaIsBlank());
}

void BurnDataTest::refusedQuestionsChangeNothing()
{
    DataPage page;
    page.choose(m_folder->path());
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Are you sure to burn?"),
                  QStringLiteral("Burn the data on the disc"), QMessageBox::Cancel);
    page.click("burnButton");
    QTRY_VERIFY(alerts.isDone());
    alerts.expect(QStringLiteral("Are you sure to clear?"),
                  QStringLiteral("Clear the burning information"), QMessageBox::Cancel);
    page.click("clearButton");
    QTRY_VERIFY(alerts.isDone());
    QCOMPARE(page.control<QLineEdit>("sourceField")->text(), m_folder->path());
    QVERIFY(page.drive.device().mediaIsBlank());
    QVERIFY(!page.page->hasRunningJob());
}

void BurnDataTest::clearSetsDone()
{
    const DataPage page;
    page.choose(m_folder->path());
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Are you sure to clear?"),
                  QStringLiteral("Clear the burning information"));
    page.click("clearButton");
    QTRY_VERIFY(alerts.isDone());
    QTRY_COMPARE(page.control<QGroupBox>("progressBox")->title(), QStringLiteral("Done"));
    QCOMPARE(page.control<QLineEdit>("sourceField")->text(), QString());
    QCOMPARE(page.control<QLineEdit>("sourceField")->toolTip(), QString());
    QCOMPARE(page.control<QLabel>("fileSizeLabel")->text(), QString());
    QVERIFY(!page.control<QWidget>("clearButton")->isEnabled());
}

void BurnDataTest::newMediumIsShownOnComingBack()
{
    DataPage page;
    page.page->hide();
    page.drive.insert(DRDeviceMediaTypeDVDPlusRW);
    page.page->show();
    QCOMPARE(page.control<QLabel>("discSizeLabel")->text(), QStringLiteral("4.70 GB"));
    QCOMPARE(page.control<QWidget>("mediaTypeButton")->accessibleDescription(),
             QStringLiteral("DVD+RW"));
}

MAPLORN_WINDOW_TEST_MAIN(BurnDataTest)
#include "BurnDataTest.moc"
