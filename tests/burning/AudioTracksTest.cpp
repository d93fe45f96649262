// The audio page's list of tracks: what may be added, how it is counted against the disc, and what
// comes and goes with a track.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "LevelIndicator.h"
#include "SteppedRecorder.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>

namespace {

const QString connectDevice = QStringLiteral("Please connect a burning device.");
const QString noDevice = QStringLiteral("No recorder is attached.");

constexpr QLatin1StringView noMedium;

// Drags files over the table and drops them there; false where it does not take them.
bool drop(const AudioPage &page, const QList<QUrl> &urls)
{
    QMimeData content;
    content.setUrls(urls);
    QWidget *viewport = page.control<QTableView>("table")->viewport();
    const QPoint where = viewport->rect().center();
    QDragEnterEvent enter(where, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &enter);
    if (!enter.isAccepted())
        return false;
    QDragMoveEvent move(where, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    QDropEvent end(where, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &end);
    return move.isAccepted() && end.isAccepted();
}

bool dropFiles(const AudioPage &page, const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    return drop(page, urls);
}

void setMedium(SteppedRecorder &recorder, const QString &mediaClass, bool isBlank)
{
    if (mediaClass == noMedium)
        recorder.setStatus({{DRDeviceMediaStateKey, QString(DRDeviceMediaStateNone)}});
    else
        recorder.setStatus(SteppedRecorder::medium(
            mediaClass == DRDeviceMediaClassCD ? DRDeviceMediaClassCD : DRDeviceMediaClassDVD,
            isBlank));
}

}

class AudioTracksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAndStatesAtStart();
    void addChecksInOrder_data();
    void addChecksInOrder();
    void acceptedExtensions();
    void cancelledChooserStillRefreshes();
    void sameFileIsListedOnce();
    void whatCannotBeDecodedCountsNothing();
    void fractionsOfASecondAreDropped();
    void levelIsTruncated_data();
    void levelIsTruncated();
    void noDivisionWithoutADisc();
    void addingSwitchesCDTextOff();
    void removingTakesTheTextsOfOneLanguage();
    void nothingSelectedRemovesNothing();
    void droppedFilesAreFiltered();
    void dropTakesTheSameChecks_data();
    void dropTakesTheSameChecks();
    void clearEmptiesEverything();
};

void AudioTracksTest::textsAndStatesAtStart()
{
    const AudioPage page;
    const auto title = [&page](const char *box) { return page.control<QGroupBox>(box)->title(); };
    QCOMPARE(title("deviceBox"), QStringLiteral("Device"));
    QCOMPARE(title("capacityBox"), QStringLiteral("Capacity"));
    QCOMPARE(title("tracksBox"), QStringLiteral("Tracks"));
    QCOMPARE(title("optionsBox"), QStringLiteral("Options"));
    QCOMPARE(title("progressBox"), QStringLiteral("Progress"));
    const auto tip = [&page](const char *name) { return page.control<QWidget>(name)->toolTip(); };
    QCOMPARE(tip("addButton"), QStringLiteral("Add"));
    QCOMPARE(tip("removeButton"), QStringLiteral("Remove"));
    QCOMPARE(tip("cdtextButton"), QStringLiteral("CDText"));
    QCOMPARE(tip("mediaTypeButton"), QStringLiteral("Click to refresh the media status"));
    const QAbstractItemModel *model = page.control<QTableView>("table")->model();
    QStringList headers;
    for (int column = 1; column < model->columnCount(); ++column)
        headers.append(model->headerData(column, Qt::Horizontal).toString());
    QCOMPARE(headers.join(u' '), QStringLiteral("Track Duration Path"));
    QCOMPARE(page.control<QCheckBox>("verifyCheckBox")->text(),
             QStringLiteral("Verify after burning"));
    QCOMPARE(page.control<QCheckBox>("appendableCheckBox")->text(),
             QStringLiteral("Leave disc appendable after burning"));
    QCOMPARE(page.control<QLabel>("discDurationLabel")->text(), QStringLiteral("79:57:74"));
    QCOMPARE(page.control<QLabel>("tracksDurationLabel")->text(), QString());
    QVERIFY(!page.control<QWidget>("stopButton")->isVisible());
    QVERIFY(!page.control<QWidget>("clearButton")->isEnabled());
    QVERIFY(!page.control<QWidget>("exportButton")->isEnabled());
    QVERIFY(page.control<QWidget>("importButton")->isEnabled());
    QCOMPARE(page.editor()->store().toMap(),
             (QVariantMap{{QStringLiteral("Default"), QVariantList{QVariantMap()}}}));
}

void AudioTracksTest::addChecksInOrder_data()
{
    QTest::addColumn<bool>("isAttached");
    QTest::addColumn<QString>("mediaClass");
    QTest::addColumn<bool>("isBlank");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    const QString cd = DRDeviceMediaClassCD;
    const QString dvd = DRDeviceMediaClassDVD;
    QTest::newRow("recorder gone, before its written DVD")
        << false << dvd << false << noDevice << connectDevice;
    QTest::newRow("no medium, before it is no CD")
        << true << QString(noMedium) << false << "The media is not present."
        << "Please wait or re-insert the media";
    QTest::newRow("written DVD, before it is not blank")
        << true << dvd << false << "The media is not CD."
        << "Burning music only supports CD.";
    QTest::newRow("blank DVD") << true << dvd << true << "The media is not CD."
                               << "Burning music only supports CD.";
    QTest::newRow("written CD") << true << cd << false << "The media is not blank."
                                << "Please insert blank media.";
}

void AudioTracksTest::addChecksInOrder()
{
    QFETCH(const bool, isAttached);
    QFETCH(const QString, mediaClass);
    QFETCH(const bool, isBlank);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    AudioPage page;
    const auto recorder = std::make_shared<SteppedRecorder>();
    page.use(recorder);
    setMedium(*recorder, mediaClass, isBlank);
    recorder->setAttached(isAttached);
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    page.click("addButton");
    QVERIFY(alerts.isDone());
    QVERIFY2(!page.page->findChild<QFileDialog *>(), "no file can be chosen");
    recorder->setAttached(true);
}

// Names that are typed in pass the chooser's filter.
void AudioTracksTest::acceptedExtensions()
{
    const QString accepted =
        QStringLiteral("a.m4a a.m4b a.m4p a.mp3 a.caf a.aiff a.au a.sd2 a.wav a.snd a.amr a.b.WAV");
    const QString others = QStringLiteral("a.aif a.aac a.flac a.mp4 a.wave a.txt wav a.wav.zip");
    const AudioPage page;
    QStringList paths;
    for (const QString &name : others.split(u' ') + accepted.split(u' '))
        paths.append(page.drive.storeSource(name, "no sound"));
    page.add(paths);
    QCOMPARE(page.names().join(u' '), accepted);
}

void AudioTracksTest::cancelledChooserStillRefreshes()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("Track")});
    page.click("saveButton");
    QVERIFY(page.editor()->isTextEnabled());
    page.openChooser("addButton")->reject();
    QCOMPARE(page.names(), QStringList(QStringLiteral("a.wav")));
    QVERIFY2(!page.editor()->isTextEnabled(), "what follows the choosing ran");
    QVERIFY(page.control<QWidget>("clearButton")->isEnabled());
}

void AudioTracksTest::sameFileIsListedOnce()
{
    const AudioPage page;
    const QString a = page.track(QStringLiteral("a.wav"), 2);
    page.add({a});
    page.add({a});
    QCOMPARE(page.names(), QStringList(QStringLiteral("a.wav")));
    page.add({page.track(QStringLiteral("c.wav")), a, page.track(QStringLiteral("b.wav"))});
    QCOMPARE(page.names().join(u' '), QStringLiteral("a.wav c.wav b.wav"));
    QCOMPARE(page.column(0).join(u' '), QStringLiteral("1 2 3"));
    QCOMPARE(page.column(2).first(), QStringLiteral("00:02:00"));
    QCOMPARE(page.column(3).first(), a);
    QCOMPARE(page.control<QLabel>("tracksDurationLabel")->text(), QStringLiteral("00:04:00"));
    QCOMPARE(page.editor()->store().list(QStringLiteral("Default")).size(), 4);
    QVERIFY(page.control<QWidget>("clearButton")->isEnabled());
    QVERIFY(page.control<QWidget>("exportButton")->isEnabled());
}

void AudioTracksTest::whatCannotBeDecodedCountsNothing()
{
    const AudioPage page;
    page.add({page.drive.storeSource(QStringLiteral("noise.mp3"), "no sound"),
              page.drive.storeSource(QStringLiteral("empty.m4p"), {}),
              page.track(QStringLiteral("a.wav"))});
    QCOMPARE(page.column(2).join(u' '), QStringLiteral("00:00:00 00:00:00 00:01:00"));
    QCOMPARE(page.control<QLabel>("tracksDurationLabel")->text(), QStringLiteral("00:01:00"));
}

void AudioTracksTest::fractionsOfASecondAreDropped()
{
    AudioPage page;
    page.drive.insert(DRDeviceMediaTypeCDRW, 4425);
    page.add({page.track(QStringLiteral("a.wav"), 59.9)});
    QCOMPARE(page.column(2).first(), QStringLiteral("00:59:00"));
    QCOMPARE(page.control<QLabel>("discDurationLabel")->text(), QStringLiteral("00:59:00"));
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), quint64(100));
}

void AudioTracksTest::levelIsTruncated_data()
{
    QTest::addColumn<qint64>("capacity"); // for 150 blocks
    QTest::addColumn<quint64>("level");
    QTest::newRow("just below half") << qint64(301) << quint64(49);
    QTest::newRow("exactly the disc") << qint64(150) << quint64(100);
    QTest::newRow("less than a percent more passes") << qint64(149) << quint64(100);
    QTest::newRow("more than a percent more is too much") << qint64(148) << quint64(101);
}

void AudioTracksTest::levelIsTruncated()
{
    QFETCH(const qint64, capacity);
    QFETCH(const quint64, level);
    AudioPage page;
    page.drive.insert(DRDeviceMediaTypeCDR, capacity);
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), level);
    AlertRecorder alerts;
    if (level > 100)
        alerts.expect(QStringLiteral("Tracks duration is more than disc duration"),
                      QStringLiteral("Please remove some tracks"));
    else
        alerts.expect(QStringLiteral("Are you sure to burn?"),
                      QStringLiteral("Burn the data on the disc"), QMessageBox::Cancel);
    page.click("burnButton");
    QTRY_VERIFY(alerts.isDone());
}

void AudioTracksTest::noDivisionWithoutADisc()
{
    AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    QVERIFY(page.drive.device().ejectMedia());
    QTRY_VERIFY(!page.drive.device().mediaIsPresent());
    page.control<QTableView>("table")->selectRow(0);
    page.click("removeButton");
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), quint64(0));
    page.click("mediaTypeButton");
    QCOMPARE(page.control<QLabel>("discDurationLabel")->text(), QString());
}

void AudioTracksTest::addingSwitchesCDTextOff()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("First")});
    page.click("saveButton");
    page.add({page.track(QStringLiteral("b.wav"))});
    QVERIFY(!page.editor()->isTextEnabled());
    const QList<QVariantMap> list = page.editor()->store().list(QStringLiteral("Default"));
    QCOMPARE(list.size(), 3);
    QCOMPARE(list.at(1).value(DRCDTextTitleKey), QStringLiteral("First"));
    QVERIFY(list.at(2).isEmpty());
}

void AudioTracksTest::removingTakesTheTextsOfOneLanguage()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav")),
              page.track(QStringLiteral("c.wav"))});
    page.openEditor();
    const QStringList titles{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};
    page.writeTitles(QStringLiteral("Disc"), titles);
    page.addLanguage(QStringLiteral("German"));
    page.writeTitles(QStringLiteral("Scheibe"), titles);
    page.click("saveButton");
    page.control<QTableView>("table")->selectRow(1);
    page.click("removeButton");
    QCOMPARE(page.names().join(u' '), QStringLiteral("a.wav c.wav"));
    QCOMPARE(page.column(0).join(u' '), QStringLiteral("1 2"));
    QCOMPARE(page.control<QLabel>("tracksDurationLabel")->text(), QStringLiteral("00:02:00"));
    const auto kept = [&page](const QString &language) {
        QStringList list;
        for (const QVariantMap &texts : page.editor()->store().list(language))
            list.append(texts.value(DRCDTextTitleKey).toString());
        return list.join(u' ');
    };
    QCOMPARE(kept(QStringLiteral("German")), QStringLiteral("Scheibe A C"));
    QCOMPARE(kept(QStringLiteral("Default")), QStringLiteral("Disc A B C"));
    QVERIFY2(page.editor()->isTextEnabled(), "only adding switches it off");
}

void AudioTracksTest::nothingSelectedRemovesNothing()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.click("removeButton");
    QCOMPARE(page.names().size(), 1);
    QCOMPARE(page.editor()->store().list(QStringLiteral("Default")).size(), 2);
}

void AudioTracksTest::droppedFilesAreFiltered()
{
    const AudioPage page;
    const QString a = page.track(QStringLiteral("a.wav"));
    const QString notes = page.drive.storeSource(QStringLiteral("notes.txt"), "text");
    const QString folder = page.drive.sourcePath(QStringLiteral("folder.wav"));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY2(!drop(page, {QUrl(QStringLiteral("https://example.org/a.wav"))}), "no file");
    QVERIFY2(!dropFiles(page, {notes, folder}), "nothing to add");
    QVERIFY(dropFiles(page, {folder, page.track(QStringLiteral("B.WAV")), notes, a, a}));
    QTRY_COMPARE_WITH_TIMEOUT(page.names().join(u' '), QStringLiteral("B.WAV a.wav"),
                              AudioPage::patience);
    QVERIFY(page.control<QWidget>("clearButton")->isEnabled());
    QVERIFY(page.control<QWidget>("addButton")->isEnabled());
}

void AudioTracksTest::dropTakesTheSameChecks_data()
{
    addChecksInOrder_data();
}

void AudioTracksTest::dropTakesTheSameChecks()
{
    QFETCH(const bool, isAttached);
    QFETCH(const QString, mediaClass);
    QFETCH(const bool, isBlank);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    AudioPage page;
    const auto recorder = std::make_shared<SteppedRecorder>();
    page.use(recorder);
    setMedium(*recorder, mediaClass, isBlank);
    recorder->setAttached(isAttached);
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    QVERIFY(dropFiles(page, {page.track(QStringLiteral("a.wav"))}));
    QVERIFY2(alerts.seen().isEmpty(), "the program that the file comes from does not wait for it");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(page.names().isEmpty());
    recorder->setAttached(true);
}

void AudioTracksTest::clearEmptiesEverything()
{
    AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.addLanguage(QStringLiteral("German"));
    page.writeTitles(QStringLiteral("Scheibe"), {QStringLiteral("Lied")});
    page.click("titlesCopyrightCheckBox");
    page.pick("genrePopUp", QStringLiteral("Jazz"));
    page.pick("selectedLanguagePopUp", QStringLiteral("Default"));
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("Track")});
    page.click("titlesCopyrightCheckBox");
    page.pick("genrePopUp", QStringLiteral("Jazz"));
    page.click("saveButton");
    page.control<QProgressBar>("progressIndicator")->setValue(50);
    page.control<QLabel>("progressLabel")->setText(QStringLiteral("of an earlier burn"));
    AlertRecorder alerts;
    page.clear(alerts);
    QVERIFY(page.names().isEmpty());
    for (const char *label : {"tracksDurationLabel", "discDurationLabel", "progressLabel"})
        QCOMPARE(page.control<QLabel>(label)->text(), QString());
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), quint64(0));
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 0);
    QCOMPARE(page.control<QGroupBox>("progressBox")->title(), QStringLiteral("Done"));
    QVERIFY(page.editor()->store().toMap().isEmpty());
    QVERIFY(!page.editor()->isTextEnabled());
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->count(), 1);
    QCOMPARE(page.control<QComboBox>("genrePopUp")->currentIndex(), 0);
    QVERIFY(!page.control<QCheckBox>("titlesCopyrightCheckBox")->isChecked());
    for (const QLineEdit *field : page.editor()->findChildren<QLineEdit *>())
        QCOMPARE(field->text(), QString());
    QVERIFY(!page.control<QWidget>("clearButton")->isEnabled());
    QVERIFY(!page.control<QWidget>("exportButton")->isEnabled());
}

MAPLORN_WINDOW_TEST_MAIN(AudioTracksTest)
#include "AudioTracksTest.moc"
