// Burns from the audio page: checks, what is asked of the recorder, control states, and how burns
// end.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "PackTools.h"
#include "Session.h"
#include "SteppedRecorder.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array inputs{"devicesPopUp",   "mediaTypeButton",    "addButton",
                            "removeButton",   "cdtextButton",       "speedPopUp",
                            "verifyCheckBox", "appendableCheckBox", "clearButton",
                            "exportButton",   "importButton",       "burnButton"};

// Compares the state of every control that a burn switches off.
void verifyInputs(const AudioPage &page, bool areEnabled)
{
    for (const char *name : inputs)
        QVERIFY2(page.isEnabled(name) == areEnabled, name);
}

}

class BurnAudioTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Session::setWorking(false); }

    void burnChecksInOrder_data();
    void burnChecksInOrder();
    void refusedQuestionChangesNothing();
    void speedAndOptionsAreAskedFor_data();
    void speedAndOptionsAreAskedFor();
    void textIsBurnedOnlyWhenItIsOn_data();
    void textIsBurnedOnlyWhenItIsOn();
    void controlsWhileBurning_data();
    void controlsWhileBurning();
    void titlesOfTheStates();
    void failureTellsItsReason();
    void lateEndLeavesTheNewerBurnAlone();
    void heldRecorderStaysSilent();
    void discNamesItsTracksInTwoLanguages();
};

void BurnAudioTest::burnChecksInOrder_data()
{
    QTest::addColumn<QVariantMap>("status");
    QTest::addColumn<bool>("isAttached");
    QTest::addColumn<bool>("writes");
    QTest::addColumn<bool>("hasTooLongTracks");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    const QVariantMap empty{{DRDeviceMediaStateKey, QString(DRDeviceMediaStateNone)}};
    const QVariantMap written = SteppedRecorder::medium(DRDeviceMediaClassCD, false);
    const QVariantMap blank = SteppedRecorder::medium(DRDeviceMediaClassCD, true, 75);
    QTest::newRow("recorder gone, before it is no writer")
        << empty << false << false << false << u"No recorder is attached."_s
        << u"Please connect a burning device."_s;
    QTest::newRow("a reader, before its missing medium")
        << empty << true << false << false << u"The device has no capability of write."_s
        << u"Please change a device that have capability of write."_s;
    QTest::newRow("no medium, with the text of this check alone")
        << empty << true << true << false << u"The media is not present."_s
        << u"Please insert blank media."_s;
    QTest::newRow("written medium, before the missing tracks")
        << written << true << true << false << u"The media is not blank."_s
        << u"Please insert blank media."_s;
    QTest::newRow("written medium, before the tracks that are too long")
        << written << true << true << true << u"The media is not blank."_s
        << u"Please insert blank media."_s;
    QTest::newRow("no tracks") << blank << true << true << false << u"Tracks cannot be null"_s
                               << u"Please select one or more tracks"_s;
    QTest::newRow("tracks too long")
        << blank << true << true << true << u"Tracks duration is more than disc duration"_s
        << u"Please remove some tracks"_s;
}

void BurnAudioTest::burnChecksInOrder()
{
    QFETCH(const QVariantMap, status);
    QFETCH(const bool, isAttached);
    QFETCH(const bool, writes);
    QFETCH(const bool, hasTooLongTracks);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    AudioPage page;
    const QVariantMap capabilities{{DRDeviceCanWriteDVDKey, writes}};
    const auto recorder =
        page.use<DescribedRecorder>(SteppedRecorder::medium(DRDeviceMediaClassCD, true, 75),
                                    QVariantMap{{DRDeviceWriteCapabilitiesKey, capabilities}});
    if (hasTooLongTracks)
        page.add({page.track(u"a.wav"_s, 2)});
    recorder->setStatus(status);
    recorder->setAttached(isAttached);
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    page.click("burnButton");
    QVERIFY(alerts.isDone());
    QCOMPARE(alerts.seen().size(), 1);
    recorder->setAttached(true);
}

void BurnAudioTest::refusedQuestionChangesNothing()
{
    AudioPage page{"a.wav"};
    AlertRecorder alerts;
    page.startBurn(alerts, QMessageBox::Cancel);
    QCOMPARE(alerts.seen().first().buttons, (QList{QMessageBox::Ok, QMessageBox::Cancel}));
    page.clear(alerts, QMessageBox::Cancel);
    QCOMPARE(page.names().size(), 1);
    QVERIFY(page.drive.device().mediaIsBlank());
    QVERIFY(!page.page->hasRunningJob());
    verifyInputs(page, true);
}

void BurnAudioTest::speedAndOptionsAreAskedFor_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<float>("speed");
    QTest::addColumn<bool>("isChecked");
    QTest::newRow("AUTO asks for no speed") << u"AUTO"_s << QString() << 0.0F << false;
    QTest::newRow("the speed itself, no multiple") << u"1411.2"_s << u"K/S"_s << 1411.2F << true;
}

void BurnAudioTest::speedAndOptionsAreAskedFor()
{
    QFETCH(const QString, choice);
    QFETCH(const QString, unit);
    QFETCH(const float, speed);
    QFETCH(const bool, isChecked);
    AudioPage page;
    const auto recorder = page.use<SteppedRecorder>();
    page.add({page.track(u"a.wav"_s), page.track(u"b.wav"_s)}); // whereupon its speeds are shown
    page.pick("speedPopUp", choice);
    QCOMPARE(page.label("speedLabel"), unit);
    page.check("verifyCheckBox", isChecked);
    page.check("appendableCheckBox", !isChecked);
    AlertRecorder alerts;
    page.startBurn(alerts);
    recorder->end();
    page.waitForEnd();
    QCOMPARE(static_cast<float>(recorder->request().speed), speed);
    QCOMPARE(recorder->request().verify, isChecked);
    QCOMPARE(recorder->request().appendable, !isChecked);
    QCOMPARE(recorder->request().tracks.size(), 2);
    QVERIFY(recorder->request().tracks.first().isAudio());
}

void BurnAudioTest::textIsBurnedOnlyWhenItIsOn_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::newRow("off: none, though there are texts") << false;
    QTest::newRow("on: the languages' blocks") << true;
}

void BurnAudioTest::textIsBurnedOnlyWhenItIsOn()
{
    QFETCH(const bool, isOn);
    AudioPage page{"a.wav"};
    const auto recorder = page.use<SteppedRecorder>();
    page.openEditor();
    page.writeTitles(u"Disc"_s, {u"Track"_s});
    page.check("cdtextEnabledCheckBox", isOn);
    page.click("saveButton");
    AlertRecorder alerts;
    page.startBurn(alerts);
    recorder->end();
    page.waitForEnd();
    const QList<DRCDTextBlock> blocks = recorder->request().cdText;
    QCOMPARE(blocks.size(), isOn ? 1 : 0);
    if (isOn)
        QCOMPARE(blocks.first().trackDictionaries(), page.editor()->store().list(u"Default"_s));
}

void BurnAudioTest::controlsWhileBurning_data()
{
    QTest::addColumn<QString>("end");
    QTest::newRow("until it is done") << u"done"_s;
    QTest::newRow("until it fails") << u"failed"_s;
    QTest::newRow("until it is aborted, and not until that has its effect") << u"aborted"_s;
}

void BurnAudioTest::controlsWhileBurning()
{
    QFETCH(const QString, end);
    AudioPage page{"a.wav"};
    const auto recorder = page.use<SteppedRecorder>();
    verifyInputs(page, true);
    AlertRecorder alerts;
    page.startBurn(alerts);
    verifyInputs(page, false);
    QVERIFY(page.isVisible("stopButton"));
    QVERIFY(Session::isWorking());
    QVERIFY(recorder->isReserved());
    QTRY_VERIFY_WITH_TIMEOUT(recorder->hasBegun(), AudioPage::patience);
    if (end == "aborted"_L1) {
        page.stopBurn(alerts);
        QVERIFY2(page.page->hasRunningJob(), "the burn has not ended yet");
    } else {
        end == "done"_L1 ? recorder->end() : recorder->fail(end);
        page.waitForEnd();
    }
    verifyInputs(page, true);
    QVERIFY(!page.isVisible("stopButton"));
    QVERIFY(!Session::isWorking());
    if (end == "aborted"_L1)
        recorder->fail(end);
    page.waitForEnd();
    QVERIFY(!recorder->isReserved());
    QVERIFY(!Session::isWorking());
}

void BurnAudioTest::titlesOfTheStates()
{
    AudioPage page{"a.wav"};
    const auto recorder = page.use<SteppedRecorder>();
    AlertRecorder alerts;
    page.startBurn(alerts);
    QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), u"Preparing"_s, AudioPage::patience);
    const auto *bar = page.control<QProgressBar>("progressIndicator");
    const std::initializer_list<std::pair<QLatin1StringView, const char *>> states{
        {DRStatusStateErasing, "Erasing"},
        {DRStatusStateNone, "None"},
        {DRStatusStateSessionOpen, "Session Open"},
        {DRStatusStateTrackOpen, "Track Open"},
        {DRStatusStateTrackWrite, "Write"},
        {DRStatusStateTrackClose, "Track Close"},
        {DRStatusStateSessionClose, "Session Close"},
        {DRStatusStateVerifying, "Verifying"}};
    for (const auto &[state, shown] : states) {
        recorder->enter(state);
        QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), QLatin1StringView(shown),
                                  AudioPage::patience);
        QVERIFY(bar->value() < bar->maximum());
    }
    recorder->enter(DRStatusStateFinishing);
    QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), u"Finishing"_s, AudioPage::patience);
    QCOMPARE(bar->value(), 100);
    recorder->end();
    page.waitForEnd();
    QCOMPARE(page.progressTitle(), u"Finishing"_s);
    QCOMPARE(bar->value(), 100);
}

void BurnAudioTest::failureTellsItsReason()
{
    AudioPage page;
    page.add({page.drive.storeSource(u"nonsense.mp3"_s, "no sound")});
    page.control<QLabel>("progressLabel")->setText(u"of an earlier burn"_s);
    AlertRecorder alerts;
    page.startBurn(alerts);
    page.waitForEnd();
    QCOMPARE(page.progressTitle(), u"Failed"_s);
    QVERIFY(page.control<QGroupBox>("progressBox")->toolTip().contains(u"nonsense.mp3"_s));
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 0);
    QCOMPARE(page.label("progressLabel"), QString());
    QVERIFY2(page.drive.device().mediaIsBlank(), "nothing was written");
    QVERIFY(!page.drive.device().mediaIsReserved());
}

void BurnAudioTest::lateEndLeavesTheNewerBurnAlone()
{
    AudioPage page;
    const auto slow = page.use<SteppedRecorder>();
    const auto newer = std::make_shared<SteppedRecorder>();
    page.drive.service().attach(newer);
    auto *devices = page.control<QComboBox>("devicesPopUp");
    QTRY_COMPARE(devices->count(), 2);
    page.add({page.track(u"a.wav"_s)});
    AlertRecorder alerts;
    page.startBurn(alerts);
    QTRY_VERIFY_WITH_TIMEOUT(slow->hasBegun(), AudioPage::patience);
    page.stopBurn(alerts);
    devices->setCurrentIndex(1);
    page.startBurn(alerts);
    newer->enter(DRStatusStateTrackWrite);
    QTRY_COMPARE_WITH_TIMEOUT(page.progressTitle(), u"Write"_s, AudioPage::patience);
    slow->fail(u"ended late"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!slow->isReserved(), AudioPage::patience);
    QCOMPARE(page.progressTitle(), u"Write"_s);
    verifyInputs(page, false);
    QVERIFY(page.isVisible("stopButton"));
    QVERIFY(Session::isWorking());
    QVERIFY(newer->isReserved());
    newer->end();
    page.waitForEnd();
    QVERIFY(!newer->isReserved());
}

void BurnAudioTest::heldRecorderStaysSilent()
{
    AudioPage page{"a.wav"};
    page.drive.holdElsewhere(true);
    AlertRecorder alerts;
    page.startBurn(alerts);
    QCoreApplication::processEvents();
    verifyInputs(page, false);
    QVERIFY(page.isVisible("stopButton"));
    QVERIFY(!page.page->hasRunningJob());
    QVERIFY(page.drive.device().mediaIsBlank());
    QVERIFY(!page.drive.device().mediaIsReserved());
    page.stopBurn(alerts);
    verifyInputs(page, true);
}

void BurnAudioTest::discNamesItsTracksInTwoLanguages()
{
    AudioPage page;
    page.add({page.track(u"a.wav"_s, 4), page.track(u"b.wav"_s, 5)});
    page.openEditor();
    page.writeTitles(u"Two"_s, {u"High"_s, u"Low"_s});
    page.addLanguage(u"German"_s);
    page.writeTitles(u"Zwei"_s, {u"Höhe"_s, u"Tiefe"_s});
    page.click("saveButton");
    page.check("verifyCheckBox");
    AlertRecorder alerts;
    page.startBurn(alerts);
    page.waitForEnd();
    QCOMPARE(page.progressTitle(), u"Finishing"_s);
    QVERIFY(!page.drive.isHeld());
    PackTools::Reader reader(page.drive.burnedPacks());
    const auto titles = [&reader](int block) {
        QStringList list;
        if (reader.select(block))
            for (int track = 0; track <= 2; ++track)
                list.append(reader.text(CDTEXT_FIELD_TITLE, track));
        return list.join(u' ');
    };
    QCOMPARE(titles(0), u"Two High Low"_s);
    QCOMPARE(titles(1), u"Zwei Höhe Tiefe"_s);
}

MAPLORN_WINDOW_TEST_MAIN(BurnAudioTest)
#include "BurnAudioTest.moc"
