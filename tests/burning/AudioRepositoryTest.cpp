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
#include <QLabel>

namespace {

const QString textList = QStringLiteral("CD-Text.plist");

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString recordFile(const QString &record, const QString &name)
{
    return MiscTool::getCachedPath() + QStringLiteral("/Repository/Music/%1/%2").arg(record, name);
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
    return panel ? panel->findChild<QLineEdit *>(QStringLiteral("recordNameField")) : nullptr;
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
    alerts.expect(QStringLiteral("Exported successfully"),
                  QStringLiteral("The record has been exported to repository."));
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
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    AlertRecorder alerts;
    for (const char *name : {"Record1", "Record2"}) {
        page.click("exportButton");
        QCOMPARE(nameField(page)->text(), QLatin1StringView(name));
        QCOMPARE(nameField(page)->size(), QSize(292, 24));
        answer(page, QDialogButtonBox::Cancel);
        QVERIFY(!page.page->hasRunningJob());
        save(page, alerts);
    }
    const QString repository = MiscTool::getCachedPath() + QStringLiteral("/Repository");
    QCOMPARE(entries(repository).join(u' '), QStringLiteral("Music"));
    QCOMPARE(entries(AudioRepository::folder()).join(u' '), QStringLiteral("Record1 Record2"));
}

void AudioRepositoryTest::nameThatExistsIsAskedForAgain()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    AlertRecorder alerts;
    save(page, alerts, QStringLiteral("Mine"));
    QVERIFY(QFile::remove(recordFile(QStringLiteral("Mine"), QStringLiteral("a.wav"))));
    page.click("exportButton");
    nameField(page)->setText(QStringLiteral("Mine"));
    alerts.expect(QStringLiteral("The record has existed."),
                  QStringLiteral("Please change a different record name."));
    answer(page, QDialogButtonBox::Ok);
    QVERIFY(alerts.isDone());
    QVERIFY(nameField(page));
    QCOMPARE(nameField(page)->text(), QStringLiteral("Record2"));
    answer(page, QDialogButtonBox::Cancel);
    QVERIFY2(!QFile::exists(recordFile(QStringLiteral("Mine"), QStringLiteral("a.wav"))),
             "the record stayed as it was");
}

void AudioRepositoryTest::nameThatNoFolderCanHave_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("root") << "/";
    QTest::newRow("below another") << "a/b";
    QTest::newRow("the store itself") << ".";
    QTest::newRow("the one above") << "..";
    QTest::newRow("empty") << "";
    QTest::newRow("too long") << QString(300, u'x');
    QTest::newRow("too long in bytes alone") << QString(100, u'中');
}

void AudioRepositoryTest::nameThatNoFolderCanHave()
{
    QFETCH(const QString, name);
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    AlertRecorder alerts;
    page.click("exportButton");
    QVERIFY(!namePanel(page)->findChild<QLabel *>(QStringLiteral("hintLabel"))->isVisible());
    nameField(page)->setText(name);
    answer(page, QDialogButtonBox::Ok);
    QVERIFY(nameField(page));
    QCOMPARE(nameField(page)->text(), QStringLiteral("Record1"));
    QCOMPARE(namePanel(page)->findChild<QLabel *>(QStringLiteral("hintLabel"))->text(),
             QStringLiteral("A record needs a name that a folder can have."));
    answer(page, QDialogButtonBox::Cancel);
    QVERIFY(entries(AudioRepository::folder()).isEmpty());
}

void AudioRepositoryTest::filesAreCopiedByteForByte()
{
    const AudioPage page;
    const QString sound = page.track(QStringLiteral("a.wav"), 1.3);
    const QString link = page.drive.sourcePath(QStringLiteral("linked.wav"));
    QVERIFY(QFile::link(QStringLiteral("a.wav"), link));
    const QString nonsense = page.drive.storeSource(QStringLiteral("中 é.mp3"), "no\0sound\n");
    page.add({sound, link, nonsense});
    AlertRecorder alerts;
    save(page, alerts, QStringLiteral("中文 é"));
    const auto copy = [](const QString &name) {
        return recordFile(QStringLiteral("中文 é"), name);
    };
    QCOMPARE(entries(copy({})).size(), 3);
    QCOMPARE(fileContent(copy(QStringLiteral("a.wav"))), fileContent(sound));
    QVERIFY(!QFileInfo(copy(QStringLiteral("linked.wav"))).isSymLink());
    QCOMPARE(fileContent(copy(QStringLiteral("linked.wav"))), fileContent(sound));
    QCOMPARE(fileContent(copy(QStringLiteral("中 é.mp3"))), fileContent(nonsense));
}

void AudioRepositoryTest::missingFileIsLeftOut()
{
    const AudioPage page;
    const QString gone = page.track(QStringLiteral("a.wav"));
    page.add({gone, page.track(QStringLiteral("b.wav"))});
    QVERIFY(QFile::remove(gone));
    AlertRecorder alerts;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("left out.*a\\.wav")));
    save(page, alerts, QStringLiteral("Mine"));
    QCOMPARE(entries(recordFile(QStringLiteral("Mine"), {})).join(u' '), QStringLiteral("b.wav"));
}

void AudioRepositoryTest::firstOfTwoFilesOfANameIsKept()
{
    const AudioPage page;
    QVERIFY(QDir().mkpath(page.drive.sourcePath(QStringLiteral("one"))));
    QVERIFY(QDir().mkpath(page.drive.sourcePath(QStringLiteral("two"))));
    const QString first = page.drive.storeSource(QStringLiteral("one/a.mp3"), "first");
    page.add({first, page.drive.storeSource(QStringLiteral("two/a.mp3"), "second")});
    QCOMPARE(page.names().join(u' '), QStringLiteral("a.mp3 a.mp3"));
    AlertRecorder alerts;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("left out.*a\\.mp3")));
    save(page, alerts, QStringLiteral("Mine"));
    QCOMPARE(fileContent(recordFile(QStringLiteral("Mine"), QStringLiteral("a.mp3"))),
             QByteArray("first"));
}

void AudioRepositoryTest::savingLeavesTheSessionAlone()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    AlertRecorder alerts;
    page.click("exportButton");
    alerts.expect(QStringLiteral("Exported successfully"),
                  QStringLiteral("The record has been exported to repository."));
    answer(page, QDialogButtonBox::Ok);
    QVERIFY(page.page->hasRunningJob());
    QVERIFY(!Session::isWorking());
    QVERIFY(!page.control<QWidget>("exportButton")->isEnabled());
    QVERIFY2(page.control<QWidget>("loadingView")->isVisible(), "shows that it waits");
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), AudioPage::patience);
    QVERIFY(!Session::isWorking());
    QVERIFY(page.control<QWidget>("exportButton")->isEnabled());
    QVERIFY(!page.control<QWidget>("loadingView")->isVisible());
}

void AudioRepositoryTest::textsGoWithTheFirstLanguagesDisc_data()
{
    QTest::addColumn<QString>("disc");     // of the default language
    QTest::addColumn<QString>("language"); // added after that
    QTest::addColumn<bool>("hasList");
    QTest::newRow("no texts") << QString() << QString() << false;
    QTest::newRow("a disc title") << "Disc" << QString() << true;
    QTest::newRow("empty language behind it") << "Disc"
                                              << "German" << true;
    QTest::newRow("empty language before it") << "Disc"
                                              << "Albanian" << false;
}

void AudioRepositoryTest::textsGoWithTheFirstLanguagesDisc()
{
    QFETCH(const QString, disc);
    QFETCH(const QString, language);
    QFETCH(const bool, hasList);
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.type("trackTitleField", QStringLiteral("Track"));
    if (!disc.isEmpty())
        page.type("discTitleField", disc);
    if (!language.isEmpty())
        page.addLanguage(language);
    page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(false);
    page.click("saveButton");
    AlertRecorder alerts;
    save(page, alerts, QStringLiteral("Mine"));
    QCOMPARE(entries(recordFile(QStringLiteral("Mine"), {})).contains(textList), hasList);
}

void AudioRepositoryTest::textsKeepTheirShape()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    page.openEditor();
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("<First> & é")});
    page.type("tocField", QStringLiteral("中"));
    page.click("titlesCopyrightCheckBox");
    page.pick("genrePopUp", QStringLiteral("Jazz"));
    page.addLanguage(QStringLiteral("German"));
    page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(false);
    page.click("saveButton");
    AlertRecorder alerts;
    save(page, alerts, QStringLiteral("Mine"));
    const QVariantMap disc{{DRCDTextTitleKey, QStringLiteral("Disc")},
                           {DRCDTextTOCKey, QByteArray("中")},
                           {DRCDTextCopyrightAssertedForTitlesKey, true},
                           {DRCDTextCopyrightAssertedForNamesKey, false},
                           {DRCDTextCopyrightAssertedForSpecialMessagesKey, false},
                           {DRCDTextGenreCodeKey, qint64(14)}};
    const QVariantMap first{{DRCDTextTitleKey, QStringLiteral("<First> & é")}};
    const QVariantMap none;
    const QVariantMap expected{{QStringLiteral("Default"), QVariantList{disc, first, none}},
                               {QStringLiteral("German"), QVariantList{none, none, none}}};
    QCOMPARE(PropertyList::readMap(recordFile(QStringLiteral("Mine"), textList)), expected);
}

void AudioRepositoryTest::lookingIntoARecord()
{
    const AudioPage page;
    const QString record = AudioRepository::folder() + QStringLiteral("/Mine");
    QVERIFY(QDir().mkpath(record + QStringLiteral("/folder")));
    QFile file(record + QStringLiteral("/.a.wav"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QTest::ignoreMessage(QtInfoMsg, "folder");
    QTest::ignoreMessage(QtInfoMsg, ".a.wav");
    QFileDialog *chooser = page.openChooser("importButton");
    QVERIFY(chooser);
    QCOMPARE(chooser->fileMode(), QFileDialog::Directory);
    AudioPage::accept(chooser, record);
    QVERIFY(page.control<QWidget>("clearButton")->isEnabled());
    QVERIFY(page.control<QWidget>("exportButton")->isEnabled());
    QCOMPARE(page.control<QLabel>("tracksDurationLabel")->text(), QStringLiteral("00:00:00"));
    QVERIFY2(page.names().isEmpty(), "nothing is read back");
}

MAPLORN_WINDOW_TEST_MAIN(AudioRepositoryTest)
#include "AudioRepositoryTest.moc"
