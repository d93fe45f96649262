// Records of the audio page: how they are named, and what a record holds.
#include "AudioRepository.h"
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "FileTools.h"
#include "PropertyList.h"
#include "RecordNamePanel.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QCheckBox>

using namespace Qt::StringLiterals;

namespace {

const QString textList = u"CD-Text.plist"_s;

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString recordFile(const QString &record, const QString &name)
{
    return MiscTool::getCachedPath() + u"/Repository/Music/%1/%2"_s.arg(record, name);
}

// The sheet that asks for a name; null where there is none.
RecordNamePanel *namePanel(const AudioPage &page)
{
    for (RecordNamePanel *panel : page.page->findChildren<RecordNamePanel *>())
        if (panel->isVisible())
            return panel;
    return nullptr;
}

QLineEdit *nameField(const AudioPage &page)
{
    RecordNamePanel *panel = namePanel(page);
    return panel ? panel->findChild<QLineEdit *>(u"recordNameField"_s) : nullptr;
}

void answer(const AudioPage &page, QDialogButtonBox::StandardButton button)
{
    RecordNamePanel *panel = namePanel(page);
    QVERIFY(panel);
    panel->findChild<QDialogButtonBox *>()->button(button)->click();
    QVERIFY(!panel->isVisible());
}

void save(const AudioPage &page, AlertRecorder &alerts, const QString &name = {})
{
    page.click("exportButton");
    QVERIFY(nameField(page));
    if (!name.isEmpty())
        nameField(page)->setText(name);
    alerts.expect(u"Exported successfully"_s, u"The record has been exported to repository."_s);
    answer(page, QDialogButtonBox::Ok);
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), AudioPage::patience);
    page.waitForEnd();
}

}

class AudioRepositoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Session::setWorking(false);
        QVERIFY(QDir(MiscTool::getCachedPath()).removeRecursively());
    }

    void recordsAreNumbered();
    void nameThatExistsIsAskedForAgain();
    void nameThatNoFolderCanHave_data();
    void nameThatNoFolderCanHave();
    void filesAreCopiedByteForByte();
    void missingFileIsLeftOut();
    void firstOfTwoFilesOfANameIsKept();
    void savingLeavesTheSessionAlone();
    void textsGoWithTheFirstLanguagesDisc_data();
    void textsGoWithTheFirstLanguagesDisc();
    void textsKeepTheirShape();
    void lookingIntoARecord();
};

void AudioRepositoryTest::recordsAreNumbered()
{
    const AudioPage page{"a.wav"};
    AlertRecorder alerts;
    for (const char *name : {"Record1", "Record2"}) {
        page.click("exportButton");
        QCOMPARE(nameField(page)->text(), QLatin1StringView(name));
        QCOMPARE(nameField(page)->size(), QSize(292, 24));
        answer(page, QDialogButtonBox::Cancel);
        QVERIFY(!page.page->hasRunningJob());
        save(page, alerts);
    }
    const QString repository = MiscTool::getCachedPath() + u"/Repository"_s;
    QCOMPARE(entries(repository).join(u' '), u"Music"_s);
    QCOMPARE(entries(AudioRepository::folder()).join(u' '), u"Record1 Record2"_s);
}

void AudioRepositoryTest::nameThatExistsIsAskedForAgain()
{
    const AudioPage page{"a.wav"};
    AlertRecorder alerts;
    save(page, alerts, u"Mine"_s);
    QVERIFY(QFile::remove(recordFile(u"Mine"_s, u"a.wav"_s)));
    page.click("exportButton");
    nameField(page)->setText(u"Mine"_s);
    alerts.expect(u"The record has existed."_s, u"Please change a different record name."_s);
    answer(page, QDialogButtonBox::Ok);
    QVERIFY(alerts.isDone());
    QVERIFY(nameField(page));
    QCOMPARE(nameField(page)->text(), u"Record2"_s);
    answer(page, QDialogButtonBox::Cancel);
    QVERIFY2(!QFile::exists(recordFile(u"Mine"_s, u"a.wav"_s)), "the record stayed as it was");
}

void AudioRepositoryTest::nameThatNoFolderCanHave_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("root") << u"/"_s;
    QTest::newRow("below another") << u"a/b"_s;
    QTest::newRow("the store itself") << u"."_s;
    QTest::newRow("the one above") << u".."_s;
    QTest::newRow("empty") << u""_s;
    QTest::newRow("too long") << QString(300, u'x');
    QTest::newRow("too long in bytes alone") << QString(100, u'中');
}

void AudioRepositoryTest::nameThatNoFolderCanHave()
{
    QFETCH(const QString, name);
    const AudioPage page{"a.wav"};
    AlertRecorder alerts;
    page.click("exportButton");
    QVERIFY(!namePanel(page)->findChild<QLabel *>(u"hintLabel"_s)->isVisible());
    nameField(page)->setText(name);
    answer(page, QDialogButtonBox::Ok);
    QVERIFY(nameField(page));
    QCOMPARE(nameField(page)->text(), u"Record1"_s);
    QCOMPARE(namePanel(page)->findChild<QLabel *>(u"hintLabel"_s)->text(),
             u"A record needs a name that a folder can have."_s);
    answer(page, QDialogButtonBox::Cancel);
    QVERIFY(entries(AudioRepository::folder()).isEmpty());
}

void AudioRepositoryTest::filesAreCopiedByteForByte()
{
    const AudioPage page;
    const QString sound = page.track(u"a.wav"_s, 1.3);
    const QString link = page.drive.sourcePath(u"linked.wav"_s);
    QVERIFY(QFile::link(u"a.wav"_s, link));
    const QString nonsense = page.drive.storeSource(u"中 é.mp3"_s, "no\0sound\n");
    page.add({sound, link, nonsense});
    AlertRecorder alerts;
    save(page, alerts, u"中文 é"_s);
    const auto copy = [](const QString &name) { return recordFile(u"中文 é"_s, name); };
    QCOMPARE(entries(copy({})).size(), 3);
    QCOMPARE(fileContent(copy(u"a.wav"_s)), fileContent(sound));
    QVERIFY(!QFileInfo(copy(u"linked.wav"_s)).isSymLink());
    QCOMPARE(fileContent(copy(u"linked.wav"_s)), fileContent(sound));
    QCOMPARE(fileContent(copy(u"中 é.mp3"_s)), fileContent(nonsense));
}

void AudioRepositoryTest::missingFileIsLeftOut()
{
    const AudioPage page;
    const QString gone = page.track(u"a.wav"_s);
    page.add({gone, page.track(u"b.wav"_s)});
    QVERIFY(QFile::remove(gone));
    AlertRecorder alerts;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"left out.*a\\.wav"_s));
    save(page, alerts, u"Mine"_s);
    QCOMPARE(entries(recordFile(u"Mine"_s, {})).join(u' '), u"b.wav"_s);
}

void AudioRepositoryTest::firstOfTwoFilesOfANameIsKept()
{
    const AudioPage page;
    QVERIFY(QDir().mkpath(page.drive.sourcePath(u"one"_s)));
    QVERIFY(QDir().mkpath(page.drive.sourcePath(u"two"_s)));
    const QString first = page.drive.storeSource(u"one/a.mp3"_s, "first");
    page.add({first, page.drive.storeSource(u"two/a.mp3"_s, "second")});
    QCOMPARE(page.names().join(u' '), u"a.mp3 a.mp3"_s);
    AlertRecorder alerts;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"left out.*a\\.mp3"_s));
    save(page, alerts, u"Mine"_s);
    QCOMPARE(fileContent(recordFile(u"Mine"_s, u"a.mp3"_s)), "first"_ba);
}

void AudioRepositoryTest::savingLeavesTheSessionAlone()
{
    const AudioPage page{"a.wav"};
    AlertRecorder alerts;
    page.click("exportButton");
    alerts.expect(u"Exported successfully"_s, u"The record has been exported to repository."_s);
    answer(page, QDialogButtonBox::Ok);
    QVERIFY(page.page->hasRunningJob());
    QVERIFY(!Session::isWorking());
    QVERIFY(!page.isEnabled("exportButton"));
    QVERIFY2(page.isVisible("loadingView"), "shows that it waits");
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), AudioPage::patience);
    QVERIFY(!Session::isWorking());
    QVERIFY(page.isEnabled("exportButton"));
    QVERIFY(!page.isVisible("loadingView"));
}

void AudioRepositoryTest::textsGoWithTheFirstLanguagesDisc_data()
{
    QTest::addColumn<QString>("disc");     // of the default language
    QTest::addColumn<QString>("language"); // added after that
    QTest::addColumn<bool>("hasList");
    QTest::newRow("no texts") << QString() << QString() << false;
    QTest::newRow("a disc title") << u"Disc"_s << QString() << true;
    QTest::newRow("empty language behind it") << u"Disc"_s << u"German"_s << true;
    QTest::newRow("empty language before it") << u"Disc"_s << u"Albanian"_s << false;
}

void AudioRepositoryTest::textsGoWithTheFirstLanguagesDisc()
{
    QFETCH(const QString, disc);
    QFETCH(const QString, language);
    QFETCH(const bool, hasList);
    const AudioPage page{"a.wav"};
    page.openEditor();
    page.type("trackTitleField", u"Track"_s);
    if (!disc.isEmpty())
        page.type("discTitleField", disc);
    if (!language.isEmpty())
        page.addLanguage(language);
    page.check("cdtextEnabledCheckBox", false);
    page.click("saveButton");
    AlertRecorder alerts;
    save(page, alerts, u"Mine"_s);
    QCOMPARE(entries(recordFile(u"Mine"_s, {})).contains(textList), hasList);
}

void AudioRepositoryTest::textsKeepTheirShape()
{
    const AudioPage page{"a.wav", "b.wav"};
    page.openEditor();
    page.writeTitles(u"Disc"_s, {u"<First> & é"_s});
    page.type("tocField", u"中"_s);
    page.click("titlesCopyrightCheckBox");
    page.pick("genrePopUp", u"Jazz"_s);
    page.addLanguage(u"German"_s);
    page.check("cdtextEnabledCheckBox", false);
    page.click("saveButton");
    AlertRecorder alerts;
    save(page, alerts, u"Mine"_s);
    const QVariantMap disc{{DRCDTextTitleKey, u"Disc"_s},
                           {DRCDTextTOCKey, "中"_ba},
                           {DRCDTextCopyrightAssertedForTitlesKey, true},
                           {DRCDTextCopyrightAssertedForNamesKey, false},
                           {DRCDTextCopyrightAssertedForSpecialMessagesKey, false},
                           {DRCDTextGenreCodeKey, qint64(14)}};
    const QVariantMap first{{DRCDTextTitleKey, u"<First> & é"_s}};
    const QVariantMap none;
    const QVariantMap expected{{u"Default"_s, QVariantList{disc, first, none}},
                               {u"German"_s, QVariantList{none, none, none}}};
    QCOMPARE(PropertyList::readMap(recordFile(u"Mine"_s, textList)), expected);
}

void AudioRepositoryTest::lookingIntoARecord()
{
    const AudioPage page;
    const QString record = AudioRepository::folder() + u"/Mine"_s;
    QVERIFY(QDir().mkpath(record + u"/folder"_s));
    QFile file(record + u"/.a.wav"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QTest::ignoreMessage(QtInfoMsg, "folder");
    QTest::ignoreMessage(QtInfoMsg, ".a.wav");
    QFileDialog *chooser = page.openChooser("importButton");
    QVERIFY(chooser);
    QCOMPARE(chooser->fileMode(), QFileDialog::Directory);
    AudioPage::accept(chooser, record);
    QVERIFY(page.isEnabled("clearButton"));
    QVERIFY(page.isEnabled("exportButton"));
    QCOMPARE(page.label("tracksDurationLabel"), u"00:00:00"_s);
    QVERIFY2(page.names().isEmpty(), "nothing is read back");
}

MAPLORN_WINDOW_TEST_MAIN(AudioRepositoryTest)
#include "AudioRepositoryTest.moc"
