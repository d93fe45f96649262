// The audio page's list of tracks: what may be added, how it is counted against the disc, and what
// comes and goes with a track.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "LevelIndicator.h"
#include "SteppedRecorder.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QMimeData>
#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace {

const QString connectDevice = u"Please connect a burning device."_s;
const QString noDevice = u"No recorder is attached."_s;

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
    void addAndDropCheckInOrder_data();
    void addAndDropCheckInOrder();
    void acceptedExtensions();
    void choosingSwitchesCDTextOffEvenWhenCancelled();
    void sameFileIsListedOnce();
    void whatCannotBeDecodedCountsNothing();
    void fractionsOfASecondAreDropped();
    void levelIsTruncated_data();
    void levelIsTruncated();
    void noDivisionWithoutADisc();
    void removingTakesTheTextsOfOneLanguage();
    void droppedFilesAreFiltered();
    void clearEmptiesEverything();
};

void AudioTracksTest::textsAndStatesAtStart()
{
    const AudioPage page;
    const QAbstractItemModel *model = page.control<QTableView>("table")->model();
    QStringList headers;
    for (int column = 1; column < model->columnCount(); ++column)
        headers.append(model->headerData(column, Qt::Horizontal).toString());
    QCOMPARE(headers.join(u' '), u"Track Duration Path"_s);
    QCOMPARE(page.label("discDurationLabel"), u"79:57:74"_s);
    QCOMPARE(page.label("tracksDurationLabel"), QString());
    QVERIFY(!page.isVisible("stopButton"));
    QVERIFY(!page.isEnabled("clearButton"));
    QVERIFY(!page.isEnabled("exportButton"));
    QVERIFY(page.isEnabled("importButton"));
    QCOMPARE(page.editor()->store().toMap(),
             (QVariantMap{{u"Default"_s, QVariantList{QVariantMap()}}}));
}

void AudioTracksTest::addAndDropCheckInOrder_data()
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
        << true << QString(noMedium) << false << u"The media is not present."_s
        << u"Please wait or re-insert the media"_s;
    QTest::newRow("written DVD, before it is not blank")
        << true << dvd << false << u"The media is not CD."_s
        << u"Burning music only supports CD."_s;
    QTest::newRow("blank DVD") << true << dvd << true << u"The media is not CD."_s
                               << u"Burning music only supports CD."_s;
    QTest::newRow("written CD") << true << cd << false << u"The media is not blank."_s
                                << u"Please insert blank media."_s;
}

void AudioTracksTest::addAndDropCheckInOrder()
{
    QFETCH(const bool, isAttached);
    QFETCH(const QString, mediaClass);
    QFETCH(const bool, isBlank);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    AudioPage page;
    const auto recorder = page.use<SteppedRecorder>();
    setMedium(*recorder, mediaClass, isBlank);
    recorder->setAttached(isAttached);
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    page.click("addButton");
    QVERIFY(alerts.isDone());
    QVERIFY2(!page.page->findChild<QFileDialog *>(), "no file can be chosen");
    alerts.expect(message, informativeText);
    QVERIFY(dropFiles(page, {page.track(u"a.wav"_s)}));
    QVERIFY2(!alerts.isDone(), "the program that the file comes from does not wait for it");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(page.names().isEmpty());
    recorder->setAttached(true);
}

// Names that are typed in pass the chooser's filter.
void AudioTracksTest::acceptedExtensions()
{
    const QString accepted =
        u"a.m4a a.m4b a.m4p a.mp3 a.caf a.aiff a.au a.sd2 a.wav a.snd a.amr a.b.WAV"_s;
    const QString others = u"a.aif a.aac a.flac a.mp4 a.wave a.txt wav a.wav.zip"_s;
    const AudioPage page;
    QStringList paths;
    for (const QString &name : others.split(u' ') + accepted.split(u' '))
        paths.append(page.drive.storeSource(name, "no sound"));
    page.add(paths);
    QCOMPARE(page.names().join(u' '), accepted);
}

void AudioTracksTest::choosingSwitchesCDTextOffEvenWhenCancelled()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    page.writeTitles(u"Disc"_s, {u"Track"_s});
    page.click("saveButton");
    QVERIFY(page.editor()->isTextEnabled());
    page.openChooser("addButton")->reject();
    QCOMPARE(page.names(), QStringList(u"a.wav"_s));
    QVERIFY2(!page.editor()->isTextEnabled(), "what follows the choosing ran");
    QVERIFY(page.isEnabled("clearButton"));

    page.openEditor();
    page.click("saveButton");
    QVERIFY(page.editor()->isTextEnabled());
    page.add({page.track(u"b.wav"_s)});
    QVERIFY(!page.editor()->isTextEnabled());
    const QList<QVariantMap> list = page.editor()->store().list(u"Default"_s);
    QCOMPARE(list.size(), 3);
    QCOMPARE(list.at(1).value(DRCDTextTitleKey), u"Track"_s);
    QVERIFY(list.at(2).isEmpty());
}

void AudioTracksTest::sameFileIsListedOnce()
{
    const AudioPage page;
    const QString a = page.track(u"a.wav"_s, 2);
    page.add({a});
    page.add({a});
    QCOMPARE(page.names(), QStringList(u"a.wav"_s));
    page.add({page.track(u"c.wav"_s), a, page.track(u"b.wav"_s)});
    QCOMPARE(page.names().join(u' '), u"a.wav c.wav b.wav"_s);
    QCOMPARE(page.column(0).join(u' '), u"1 2 3"_s);
    QCOMPARE(page.column(2).first(), u"00:02:00"_s);
    QCOMPARE(page.column(3).first(), a);
    QCOMPARE(page.label("tracksDurationLabel"), u"00:04:00"_s);
    QCOMPARE(page.editor()->store().list(u"Default"_s).size(), 4);
    QVERIFY(page.isEnabled("clearButton"));
    QVERIFY(page.isEnabled("exportButton"));
}

void AudioTracksTest::whatCannotBeDecodedCountsNothing()
{
    const AudioPage page;
    page.add({page.drive.storeSource(u"noise.mp3"_s, "no sound"),
              page.drive.storeSource(u"empty.m4p"_s, {}), page.track(u"a.wav"_s)});
    QCOMPARE(page.column(2).join(u' '), u"00:00:00 00:00:00 00:01:00"_s);
    QCOMPARE(page.label("tracksDurationLabel"), u"00:01:00"_s);
}

void AudioTracksTest::fractionsOfASecondAreDropped()
{
    AudioPage page;
    page.drive.insert(DRDeviceMediaTypeCDRW, 4425);
    page.add({page.track(u"a.wav"_s, 59.9)});
    QCOMPARE(page.column(2).first(), u"00:59:00"_s);
    QCOMPARE(page.label("discDurationLabel"), u"00:59:00"_s);
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
    page.add({page.track(u"a.wav"_s), page.track(u"b.wav"_s)});
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), level);
    AlertRecorder alerts;
    if (level <= 100)
        return page.startBurn(alerts, QMessageBox::Cancel);
    alerts.expect(u"Tracks duration is more than disc duration"_s, u"Please remove some tracks"_s);
    page.click("burnButton");
    QTRY_VERIFY(alerts.isDone());
}

void AudioTracksTest::noDivisionWithoutADisc()
{
    AudioPage page{"a.wav", "b.wav"};
    QVERIFY(page.drive.device().ejectMedia());
    QTRY_VERIFY(!page.drive.device().mediaIsPresent());
    page.control<QTableView>("table")->selectRow(0);
    page.click("removeButton");
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), quint64(0));
    page.click("mediaTypeButton");
    QCOMPARE(page.label("discDurationLabel"), QString());
}

void AudioTracksTest::removingTakesTheTextsOfOneLanguage()
{
    const AudioPage page{"a.wav", "b.wav", "c.wav"};
    page.openEditor();
    const QStringList titles{u"A"_s, u"B"_s, u"C"_s};
    page.writeTitles(u"Disc"_s, titles);
    page.addLanguage(u"German"_s);
    page.writeTitles(u"Scheibe"_s, titles);
    page.click("saveButton");
    page.click("removeButton");
    QVERIFY2(page.names().size() == 3, "nothing was selected");
    QCOMPARE(page.editor()->store().list(u"Default"_s).size(), 4);
    page.control<QTableView>("table")->selectRow(1);
    page.click("removeButton");
    QCOMPARE(page.names().join(u' '), u"a.wav c.wav"_s);
    QCOMPARE(page.column(0).join(u' '), u"1 2"_s);
    QCOMPARE(page.label("tracksDurationLabel"), u"00:02:00"_s);
    const auto kept = [&page](const QString &language) {
        QStringList list;
        for (const QVariantMap &texts : page.editor()->store().list(language))
            list.append(texts.value(DRCDTextTitleKey).toString());
        return list.join(u' ');
    };
    QCOMPARE(kept(u"German"_s), u"Scheibe A C"_s);
    QCOMPARE(kept(u"Default"_s), u"Disc A B C"_s);
    QVERIFY2(page.editor()->isTextEnabled(), "only adding switches it off");
}

void AudioTracksTest::droppedFilesAreFiltered()
{
    const AudioPage page;
    const QString a = page.track(u"a.wav"_s);
    const QString notes = page.drive.storeSource(u"notes.txt"_s, "text");
    const QString folder = page.drive.sourcePath(u"folder.wav"_s);
    QVERIFY(QDir().mkpath(folder));
    QVERIFY2(!drop(page, {QUrl(u"https://example.org/a.wav"_s)}), "no file");
    QVERIFY2(!dropFiles(page, {notes, folder}), "nothing to add");
    QVERIFY(dropFiles(page, {folder, page.track(u"B.WAV"_s), notes, a, a}));
    QTRY_COMPARE_WITH_TIMEOUT(page.names().join(u' '), u"B.WAV a.wav"_s, AudioPage::patience);
    QVERIFY(page.isEnabled("clearButton"));
    QVERIFY(page.isEnabled("addButton"));
}

void AudioTracksTest::clearEmptiesEverything()
{
    AudioPage page{"a.wav"};
    page.openEditor();
    page.addLanguage(u"German"_s);
    page.writeTitles(u"Scheibe"_s, {u"Lied"_s});
    page.click("titlesCopyrightCheckBox");
    page.pick("genrePopUp", u"Jazz"_s);
    page.pick("selectedLanguagePopUp", u"Default"_s);
    page.writeTitles(u"Disc"_s, {u"Track"_s});
    page.click("titlesCopyrightCheckBox");
    page.pick("genrePopUp", u"Jazz"_s);
    page.click("saveButton");
    page.control<QProgressBar>("progressIndicator")->setValue(50);
    page.control<QLabel>("progressLabel")->setText(u"of an earlier burn"_s);
    AlertRecorder alerts;
    page.clear(alerts);
    QVERIFY(page.names().isEmpty());
    for (const char *label : {"tracksDurationLabel", "discDurationLabel", "progressLabel"})
        QCOMPARE(page.label(label), QString());
    QCOMPARE(page.control<LevelIndicator>("capacityIndicator")->value(), quint64(0));
    QCOMPARE(page.control<QProgressBar>("progressIndicator")->value(), 0);
    QCOMPARE(page.progressTitle(), u"Done"_s);
    QVERIFY(page.editor()->store().toMap().isEmpty());
    QVERIFY(!page.editor()->isTextEnabled());
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->count(), 1);
    QCOMPARE(page.control<QComboBox>("genrePopUp")->currentIndex(), 0);
    QVERIFY(!page.control<QCheckBox>("titlesCopyrightCheckBox")->isChecked());
    for (const QLineEdit *field : page.editor()->findChildren<QLineEdit *>())
        QCOMPARE(field->text(), QString());
    QVERIFY(!page.isEnabled("clearButton"));
    QVERIFY(!page.isEnabled("exportButton"));
}

MAPLORN_WINDOW_TEST_MAIN(AudioTracksTest)
#include "AudioTracksTest.moc"
