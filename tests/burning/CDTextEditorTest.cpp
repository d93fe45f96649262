// The CD-Text editor of the audio page: opening and closing it, and what is kept of what is typed.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "SteppedRecorder.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace {

const QString defaultLanguage = u"Default"_s;

QString tab(const AudioPage &page)
{
    const auto *tabs = page.control<QTabWidget>("tabView");
    return tabs->tabText(tabs->currentIndex());
}

}

class CDTextEditorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAndChoices();
    void openingChecksInOrder_data();
    void openingChecksInOrder();
    void openingShowsTheFirstTracksFields();
    void switchingItOnEnablesEverything();
    void typingIsKeptAtOnce();
    void sizesAreKeptAsBytesAndTheGenreIsNotShownAgain();
    void titleOfTheFileName_data();
    void titleOfTheFileName();
    void closingChecksInOrder_data();
    void closingChecksInOrder();
    void escapeChecksToo();
    void charactersThatTheDiscCannotHold_data();
    void charactersThatTheDiscCannotHold();
    void recordingCodes_data();
    void recordingCodes();
};

void CDTextEditorTest::textsAndChoices()
{
    const AudioPage page;
    QCOMPARE(page.label("selectedLanguageLabel").remove(u'&'), u"Selected Language"_s);
    QCOMPARE(page.label("availableLanguageLabel").remove(u'&'), u"Available Language"_s);
    QCOMPARE(page.control<QWidget>("specialMessageCheckBox")->toolTip(), u"This is optional"_s);
    const auto *encodings = page.control<QComboBox>("encodingPopUp");
    QCOMPARE(page.items("encodingPopUp").join(u'/'), u"ISO-Latin-1/7-bit ASCII"_s);
    QCOMPARE(encodings->itemData(0).toInt(), 513);
    QCOMPARE(encodings->itemData(1).toInt(), 1536);
    const auto *genres = page.control<QComboBox>("genrePopUp");
    QCOMPARE(genres->count(), 28);
    QCOMPARE(genres->itemData(genres->findText(u"Pop"_s)).toInt(), 20);
    QCOMPARE(genres->itemData(27).toInt(), 28);
    QStringList sorted = page.items("availableLanguagePopUp");
    sorted.sort();
    QCOMPARE(page.items("availableLanguagePopUp"), sorted);
    QCOMPARE(page.items("selectedLanguagePopUp"), QStringList(defaultLanguage));
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->currentData().toInt(), 513);
}

void CDTextEditorTest::openingChecksInOrder_data()
{
    QTest::addColumn<bool>("canWrite");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    QTest::newRow("no capability, before the missing tracks")
        << false << u"The burning device doesn't have the capability of writing CD-Text"_s
        << u"Please change the burning device that can write CD-Text"_s;
    QTest::newRow("no tracks") << true << u"Please add tracks first"_s
                               << u"Only after added tracks,you can set CD-Text"_s;
}

void CDTextEditorTest::openingChecksInOrder()
{
    QFETCH(const bool, canWrite);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    AudioPage page;
    const QVariantMap capabilities{{DRDeviceCanWriteCDTextKey, canWrite}};
    page.use<DescribedRecorder>(SteppedRecorder::medium(),
                                QVariantMap{{DRDeviceWriteCapabilitiesKey, capabilities}});
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    page.click("cdtextButton");
    QVERIFY(alerts.isDone());
    QVERIFY(!page.editor()->isVisible());
}

void CDTextEditorTest::openingShowsTheFirstTracksFields()
{
    const AudioPage page{"a.wav", "b.wav"};
    page.openEditor();
    page.writeTitles(u"Disc"_s, {u"First"_s, u"Second"_s});
    page.click("saveButton");
    QVERIFY(!page.editor()->isVisible());

    auto *table = page.control<QTableView>("table");
    const QPoint secondRow = table->visualRect(table->model()->index(1, 1)).center();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, secondRow);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, secondRow);
    QVERIFY(page.editor()->isVisible());
    QCOMPARE(tab(page), u"Track"_s);
    QCOMPARE(page.items("tracksPopUp").join(u' '), u"a.wav b.wav"_s);
    QCOMPARE(page.control<QComboBox>("tracksPopUp")->currentIndex(), 1);
    QCOMPARE(page.shown("trackTitleField"), u"First"_s);
    page.pick("tracksPopUp", u"b.wav"_s);
    QCOMPARE(page.shown("trackTitleField"), u"Second"_s);
    page.click("saveButton");

    page.click("cdtextButton");
    QCOMPARE(tab(page), u"Disc"_s);
    QCOMPARE(page.control<QComboBox>("tracksPopUp")->currentIndex(), 0);
    QCOMPARE(page.shown("trackTitleField"), u"First"_s);
    QCOMPARE(page.shown("discTitleField"), u"Disc"_s);
}

void CDTextEditorTest::switchingItOnEnablesEverything()
{
    const AudioPage page{"a.wav"};
    page.click("cdtextButton");
    for (const bool isOn : {false, true, false}) {
        page.check("cdtextEnabledCheckBox", isOn);
        QList<QWidget *> controls;
        for (const char *name :
             {"selectedLanguagePopUp", "availableLanguagePopUp", "encodingPopUp", "genrePopUp",
              "tracksPopUp", "convertButton", "titlesCopyrightCheckBox", "specialMessageCheckBox",
              "performerSongwriterComposerArrangerCheckBox"})
            controls.append(page.control<QWidget>(name));
        const QList<QLineEdit *> fields = page.editor()->findChildren<QLineEdit *>();
        QCOMPARE(fields.size(), 17);
        for (QLineEdit *field : fields) {
            controls.append(field);
            QCOMPARE(field->palette().color(QPalette::Base),
                     isOn ? QColor(Qt::white) : QColor(Qt::lightGray));
        }
        for (const QWidget *control : std::as_const(controls))
            QVERIFY2(control->isEnabled() == isOn, qPrintable(control->objectName()));
    }
}

void CDTextEditorTest::typingIsKeptAtOnce()
{
    const AudioPage page{"a.wav", "b.wav"};
    page.openEditor();
    page.type("discPerformerField", u"Choir"_s);
    const QVariantMap flags{{DRCDTextCopyrightAssertedForTitlesKey, false},
                            {DRCDTextCopyrightAssertedForNamesKey, false},
                            {DRCDTextCopyrightAssertedForSpecialMessagesKey, false},
                            {DRCDTextGenreCodeKey, 1}};
    QVariantMap disc = flags;
    disc.insert(DRCDTextPerformerKey, u"Choir"_s);
    QCOMPARE(page.texts(defaultLanguage, 0), disc);
    page.type("discPerformerField", QString());
    QCOMPARE(page.texts(defaultLanguage, 0), disc);
    page.click("performerSongwriterComposerArrangerCheckBox");
    disc.insert(DRCDTextCopyrightAssertedForNamesKey, true);
    QCOMPARE(page.texts(defaultLanguage, 0), disc);

    page.pick("tracksPopUp", u"b.wav"_s);
    page.type("trackComposerField", u"Somebody"_s);
    QCOMPARE(page.texts(defaultLanguage, 2), (QVariantMap{{DRCDTextComposerKey, u"Somebody"_s}}));
    QVERIFY(page.texts(defaultLanguage, 1).isEmpty());
}

void CDTextEditorTest::sizesAreKeptAsBytesAndTheGenreIsNotShownAgain()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    const std::initializer_list<std::pair<const char *, QLatin1StringView>> fields{
        {"sizeField", DRCDTextSizeKey},
        {"tocField", DRCDTextTOCKey},
        {"toc2Field", DRCDTextTOC2Key}};
    for (const auto &[field, key] : fields)
        page.type(field, u"zwölf"_s);
    for (const auto &[field, key] : fields)
        QCOMPARE(page.texts(defaultLanguage, 0).value(key), QVariant("zwölf"_ba));
    page.pick("genrePopUp", u"Jazz"_s);
    QCOMPARE(page.texts(defaultLanguage, 0).value(DRCDTextGenreCodeKey), 14);
    page.pick("selectedLanguagePopUp", defaultLanguage);
    QCOMPARE(page.chosen("genrePopUp"), u"Unknown"_s);
    QCOMPARE(page.texts(defaultLanguage, 0).value(DRCDTextGenreCodeKey), 14);
    for (const auto &[field, key] : fields)
        QCOMPARE(page.shown(field), u"zwölf"_s);
}

void CDTextEditorTest::titleOfTheFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("up to the first dot") << u"a.b.mp3"_s << u"a"_s;
    QTest::newRow("all of a name without one") << u"A Song"_s << u"A Song"_s;
    QTest::newRow("blanks stay") << u"01 - A Song.wav"_s << u"01 - A Song"_s;
}

void CDTextEditorTest::titleOfTheFileName()
{
    QFETCH(const QString, name);
    QFETCH(const QString, title);
    const AudioPage page;
    page.editor()->edit({u"first.wav"_s, name}, CDTextPanel::Tab::Track, 1);
    page.check("cdtextEnabledCheckBox");
    page.click("convertButton");
    QCOMPARE(page.shown("trackTitleField"), title);
    QCOMPARE(page.texts(defaultLanguage, 2).value(DRCDTextTitleKey), title);
}

void CDTextEditorTest::closingChecksInOrder_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<QString>("disc");
    QTest::addColumn<QString>("track");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("informativeText");
    QTest::addColumn<QString>("tabShown");
    QTest::addColumn<QString>("focused");
    QTest::newRow("switched off, nothing is asked for")
        << false << QString() << QString() << QString() << QString() << QString() << QString();
    QTest::newRow("no disc title, before the track's")
        << true << QString() << QString() << u"Disc title cannot be null"_s
        << u"Please fill in the disc title"_s << u"Disc"_s << u"discTitleField"_s;
    QTest::newRow("the track's title as it is shown, before those that are kept")
        << true << u"Disc"_s << QString() << u"Track title cannot be null"_s
        << u"Please fill in the track title"_s << u"Track"_s << u"trackTitleField"_s;
    QTest::newRow("a track that is not shown")
        << true << u"Disc"_s << u"First"_s << u"b.wav is not set track title"_s
        << u"Please fill in the track title"_s << u"Track"_s << u"trackTitleField"_s;
}

void CDTextEditorTest::closingChecksInOrder()
{
    QFETCH(const bool, isOn);
    QFETCH(const QString, disc);
    QFETCH(const QString, track);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    QFETCH(const QString, tabShown);
    QFETCH(const QString, focused);
    const AudioPage page{"a.wav", "b.wav"};
    page.openEditor();
    page.type("discTitleField", disc);
    page.type("trackTitleField", track);
    page.check("cdtextEnabledCheckBox", isOn);
    AlertRecorder alerts;
    if (!message.isEmpty())
        alerts.expect(message, informativeText);
    auto *tabs = page.control<QTabWidget>("tabView");
    tabs->setCurrentIndex(tabShown == "Disc"_L1 ? 1 : 0);
    page.click("saveButton");
    QVERIFY(alerts.isDone());
    QCOMPARE(page.editor()->isVisible(), !message.isEmpty());
    if (message.isEmpty())
        return;
    QCOMPARE(tab(page), tabShown);
    QCOMPARE(page.editor()->focusWidget()->objectName(), focused);
}

void CDTextEditorTest::escapeChecksToo()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    AlertRecorder alerts;
    alerts.expect(u"Disc title cannot be null"_s, u"Please fill in the disc title"_s);
    QTest::keyClick(page.editor(), Qt::Key_Escape);
    QVERIFY(alerts.isDone());
    QVERIFY(page.editor()->isVisible());
    page.writeTitles(u"Disc"_s, {u"Track"_s});
    QTest::keyClick(page.editor(), Qt::Key_Escape);
    QVERIFY(!page.editor()->isVisible());
}

void CDTextEditorTest::charactersThatTheDiscCannotHold_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("inLatin1"); // what the tool tip names
    QTest::addColumn<QString>("inAscii");
    QTest::newRow("beyond both") << u"discTitleField"_s << u"a中b"_s << u"中"_s << u"中"_s;
    QTest::newRow("beyond ASCII") << u"trackTitleField"_s << u"é"_s << QString() << u"é"_s;
    QTest::newRow("within both") << u"trackTitleField"_s << u"e"_s << QString() << QString();
    QTest::newRow("the identity is ASCII always")
        << u"discIdentityField"_s << u"é"_s << u"é"_s << u"é"_s;
    QTest::newRow("never burned, never marked")
        << u"tocField"_s << u"中"_s << QString() << QString();
}

void CDTextEditorTest::charactersThatTheDiscCannotHold()
{
    QFETCH(const QString, field);
    QFETCH(const QString, text);
    QFETCH(const QString, inLatin1);
    QFETCH(const QString, inAscii);
    const AudioPage page{"a.wav"};
    page.openEditor();
    auto *edit = page.control<QLineEdit>(qPrintable(field));
    const QString usualTip = edit->toolTip();
    page.type(qPrintable(field), text);
    const auto isMarked = [&](const QString &missing) {
        const QString tip =
            missing.isEmpty() ? usualTip : u"The disc will have “?” in the place of: "_s + missing;
        const bool isWhite = edit->palette().color(QPalette::Base) == QColor(Qt::white);
        return edit->toolTip() == tip && isWhite == missing.isEmpty();
    };
    QVERIFY2(isMarked(inLatin1), qPrintable(edit->toolTip()));
    page.pick("encodingPopUp", u"7-bit ASCII"_s);
    QVERIFY2(isMarked(inAscii), qPrintable(edit->toolTip()));
    page.type(qPrintable(field), u"e"_s);
    QVERIFY2(isMarked({}), qPrintable(edit->toolTip()));
}

void CDTextEditorTest::recordingCodes_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("letters, then digits") << u"AB1230000001"_s << true;
    QTest::newRow("owner of letters") << u"ABXYZ0000001"_s << true;
    QTest::newRow("digit for the country") << u"1B1230000001"_s << false;
    QTest::newRow("digit for the country's second letter") << u"A11230000001"_s << false;
    QTest::newRow("ten characters") << u"AB12300000"_s << false;
    QTest::newRow("thirteen characters") << u"AB12300000012"_s << false;
    QTest::newRow("none") << QString() << false;
    QTest::newRow("small letters") << u"ab1230000001"_s << false;
    QTest::newRow("small letter for the owner") << u"AB12x0000001"_s << false;
    QTest::newRow("letter for the year") << u"AB123A000001"_s << false;
    QTest::newRow("letter at the end") << u"AB123000000A"_s << false;
    QTest::newRow("hyphens") << u"AB-123-00-00001"_s << false;
    QTest::newRow("a letter of another script") << u"ÄB1230000001"_s << false;
    QTest::newRow("digits of another script") << u"AB12300000٠١"_s << false;
}

void CDTextEditorTest::recordingCodes()
{
    QFETCH(const QString, code);
    QFETCH(const bool, isValid);
    QCOMPARE(CDTextPanel::isValidISRC(code), isValid);
}

MAPLORN_WINDOW_TEST_MAIN(CDTextEditorTest)
#include "CDTextEditorTest.moc"
