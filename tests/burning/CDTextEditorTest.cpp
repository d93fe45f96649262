// The CD-Text editor of the audio page: opening and closing it, and what is kept of what is typed.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "SteppedRecorder.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QLabel>
#include <QTabWidget>

namespace {

const QString defaultLanguage = QStringLiteral("Default");

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
    void genreIsNotShownAgain();
    void sizesAreKeptAsBytes();
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
    const auto text = [&page](const char *label) { return page.control<QLabel>(label)->text(); };
    QCOMPARE(text("selectedLanguageLabel").remove(u'&'), QStringLiteral("Selected Language"));
    QCOMPARE(text("availableLanguageLabel").remove(u'&'), QStringLiteral("Available Language"));
    QCOMPARE(page.control<QWidget>("specialMessageCheckBox")->toolTip(),
             QStringLiteral("This is optional"));
    const auto *encodings = page.control<QComboBox>("encodingPopUp");
    QCOMPARE(page.items("encodingPopUp").join(u'/'), QStringLiteral("ISO-Latin-1/7-bit ASCII"));
    QCOMPARE(encodings->itemData(0).toInt(), 513);
    QCOMPARE(encodings->itemData(1).toInt(), 1536);
    const auto *genres = page.control<QComboBox>("genrePopUp");
    QCOMPARE(genres->count(), 28);
    QCOMPARE(genres->itemData(genres->findText(QStringLiteral("Pop"))).toInt(), 20);
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
        << false << "The burning device doesn't have the capability of writing CD-Text"
        << "Please change the burning device that can write CD-Text";
    QTest::newRow("no tracks") << true << "Please add tracks first"
                               << "Only after added tracks,you can set CD-Text";
}

void CDTextEditorTest::openingChecksInOrder()
{
    QFETCH(const bool, canWrite);
    QFETCH(const QString, message);
    QFETCH(const QString, informativeText);
    AudioPage page;
    const QVariantMap capabilities{{DRDeviceCanWriteCDTextKey, canWrite}};
    page.use(std::make_shared<DescribedRecorder>(
        SteppedRecorder::medium(), QVariantMap{{DRDeviceWriteCapabilitiesKey, capabilities}}));
    AlertRecorder alerts;
    alerts.expect(message, informativeText);
    page.click("cdtextButton");
    QVERIFY(alerts.isDone());
    QVERIFY(!page.editor()->isVisible());
}

void CDTextEditorTest::openingShowsTheFirstTracksFields()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    page.openEditor();
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("First"), QStringLiteral("Second")});
    page.click("saveButton");
    QVERIFY(!page.editor()->isVisible());

    auto *table = page.control<QTableView>("table");
    const QPoint secondRow = table->visualRect(table->model()->index(1, 1)).center();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, secondRow);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, secondRow);
    QVERIFY(page.editor()->isVisible());
    QCOMPARE(tab(page), QStringLiteral("Track"));
    QCOMPARE(page.items("tracksPopUp").join(u' '), QStringLiteral("a.wav b.wav"));
    QCOMPARE(page.control<QComboBox>("tracksPopUp")->currentIndex(), 1);
    QCOMPARE(page.shown("trackTitleField"), QStringLiteral("First"));
    page.pick("tracksPopUp", QStringLiteral("b.wav"));
    QCOMPARE(page.shown("trackTitleField"), QStringLiteral("Second"));
    page.click("saveButton");

    page.click("cdtextButton");
    QCOMPARE(tab(page), QStringLiteral("Disc"));
    QCOMPARE(page.control<QComboBox>("tracksPopUp")->currentIndex(), 0);
    QCOMPARE(page.shown("trackTitleField"), QStringLiteral("First"));
    QCOMPARE(page.shown("discTitleField"), QStringLiteral("Disc"));
}

void CDTextEditorTest::switchingItOnEnablesEverything()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.click("cdtextButton");
    for (const bool isOn : {false, true, false}) {
        page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(isOn);
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
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    page.openEditor();
    page.type("discPerformerField", QStringLiteral("Choir"));
    const QVariantMap flags{{DRCDTextCopyrightAssertedForTitlesKey, false},
                            {DRCDTextCopyrightAssertedForNamesKey, false},
                            {DRCDTextCopyrightAssertedForSpecialMessagesKey, false},
                            {DRCDTextGenreCodeKey, 1}};
    QVariantMap disc = flags;
    disc.insert(DRCDTextPerformerKey, QStringLiteral("Choir"));
    QCOMPARE(page.texts(defaultLanguage, 0), disc);
    page.type("discPerformerField", QString());
    QCOMPARE(page.texts(defaultLanguage, 0), disc);
    page.click("performerSongwriterComposerArrangerCheckBox");
    disc.insert(DRCDTextCopyrightAssertedForNamesKey, true);
    QCOMPARE(page.texts(defaultLanguage, 0), disc);

    page.pick("tracksPopUp", QStringLiteral("b.wav"));
    page.type("trackComposerField", QStringLiteral("Somebody"));
    QCOMPARE(page.texts(defaultLanguage, 2),
             (QVariantMap{{DRCDTextComposerKey, QStringLiteral("Somebody")}}));
    QVERIFY(page.texts(defaultLanguage, 1).isEmpty());
}

void CDTextEditorTest::genreIsNotShownAgain()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.pick("genrePopUp", QStringLiteral("Jazz"));
    QCOMPARE(page.texts(defaultLanguage, 0).value(DRCDTextGenreCodeKey), 14);
    page.pick("selectedLanguagePopUp", defaultLanguage);
    QCOMPARE(page.control<QComboBox>("genrePopUp")->currentText(), QStringLiteral("Unknown"));
    QCOMPARE(page.texts(defaultLanguage, 0).value(DRCDTextGenreCodeKey), 14);
}

void CDTextEditorTest::sizesAreKeptAsBytes()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    const std::initializer_list<std::pair<const char *, QLatin1StringView>> fields{
        {"sizeField", DRCDTextSizeKey},
        {"tocField", DRCDTextTOCKey},
        {"toc2Field", DRCDTextTOC2Key}};
    for (const auto &[field, key] : fields)
        page.type(field, QStringLiteral("zwölf"));
    for (const auto &[field, key] : fields)
        QCOMPARE(page.texts(defaultLanguage, 0).value(key), QVariant(QByteArray("zwölf")));
    page.pick("selectedLanguagePopUp", defaultLanguage);
    for (const auto &[field, key] : fields)
        QCOMPARE(page.shown(field), QStringLiteral("zwölf"));
}

void CDTextEditorTest::titleOfTheFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("up to the first dot") << "a.b.mp3"
                                         << "a";
    QTest::newRow("all of a name without one") << "A Song"
                                               << "A Song";
    QTest::newRow("blanks stay") << "01 - A Song.wav"
                                 << "01 - A Song";
}

void CDTextEditorTest::titleOfTheFileName()
{
    QFETCH(const QString, name);
    QFETCH(const QString, title);
    const AudioPage page;
    page.editor()->edit({QStringLiteral("first.wav"), name}, CDTextPanel::Tab::Track, 1);
    page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(true);
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
        << true << QString() << QString() << "Disc title cannot be null"
        << "Please fill in the disc title"
        << "Disc"
        << "discTitleField";
    QTest::newRow("the track's title as it is shown, before those that are kept")
        << true << "Disc" << QString() << "Track title cannot be null"
        << "Please fill in the track title"
        << "Track"
        << "trackTitleField";
    QTest::newRow("a track that is not shown") << true << "Disc"
                                               << "First"
                                               << "b.wav is not set track title"
                                               << "Please fill in the track title"
                                               << "Track"
                                               << "trackTitleField";
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
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    page.openEditor();
    page.type("discTitleField", disc);
    page.type("trackTitleField", track);
    page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(isOn);
    AlertRecorder alerts;
    if (!message.isEmpty())
        alerts.expect(message, informativeText);
    auto *tabs = page.control<QTabWidget>("tabView");
    tabs->setCurrentIndex(tabShown == QLatin1StringView("Disc") ? 1 : 0);
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
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Disc title cannot be null"),
                  QStringLiteral("Please fill in the disc title"));
    QTest::keyClick(page.editor(), Qt::Key_Escape);
    QVERIFY(alerts.isDone());
    QVERIFY(page.editor()->isVisible());
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("Track")});
    QTest::keyClick(page.editor(), Qt::Key_Escape);
    QVERIFY(!page.editor()->isVisible());
}

void CDTextEditorTest::charactersThatTheDiscCannotHold_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("inLatin1"); // what the tool tip names
    QTest::addColumn<QString>("inAscii");
    QTest::newRow("beyond both") << "discTitleField"
                                 << "a中b"
                                 << "中"
                                 << "中";
    QTest::newRow("beyond ASCII") << "trackTitleField"
                                  << "é" << QString() << "é";
    QTest::newRow("within both") << "trackTitleField"
                                 << "e" << QString() << QString();
    QTest::newRow("the identity is ASCII always") << "discIdentityField"
                                                  << "é"
                                                  << "é"
                                                  << "é";
    QTest::newRow("never burned, never marked") << "tocField"
                                                << "中" << QString() << QString();
}

void CDTextEditorTest::charactersThatTheDiscCannotHold()
{
    QFETCH(const QString, field);
    QFETCH(const QString, text);
    QFETCH(const QString, inLatin1);
    QFETCH(const QString, inAscii);
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    auto *edit = page.control<QLineEdit>(qPrintable(field));
    const QString usualTip = edit->toolTip();
    page.type(qPrintable(field), text);
    const auto isMarked = [&](const QString &missing) {
        const QString tip =
            missing.isEmpty()
                ? usualTip
                : QStringLiteral("The disc will have “?” in the place of: ") + missing;
        const bool isWhite = edit->palette().color(QPalette::Base) == QColor(Qt::white);
        return edit->toolTip() == tip && isWhite == missing.isEmpty();
    };
    QVERIFY2(isMarked(inLatin1), qPrintable(edit->toolTip()));
    page.pick("encodingPopUp", QStringLiteral("7-bit ASCII"));
    QVERIFY2(isMarked(inAscii), qPrintable(edit->toolTip()));
    page.type(qPrintable(field), QStringLiteral("e"));
    QVERIFY2(isMarked({}), qPrintable(edit->toolTip()));
}

void CDTextEditorTest::recordingCodes_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("letters, then digits") << "AB1230000001" << true;
    QTest::newRow("owner of letters") << "ABXYZ0000001" << true;
    QTest::newRow("digit for the country") << "1B1230000001" << false;
    QTest::newRow("digit for the country's second letter") << "A11230000001" << false;
    QTest::newRow("ten characters") << "AB12300000" << false;
    QTest::newRow("thirteen characters") << "AB12300000012" << false;
    QTest::newRow("none") << QString() << false;
    QTest::newRow("small letters") << "ab1230000001" << false;
    QTest::newRow("small letter for the owner") << "AB12x0000001" << false;
    QTest::newRow("letter for the year") << "AB123A000001" << false;
    QTest::newRow("letter at the end") << "AB123000000A" << false;
    QTest::newRow("hyphens") << "AB-123-00-00001" << false;
    QTest::newRow("a letter of another script") << "ÄB1230000001" << false;
    QTest::newRow("digits of another script") << "AB12300000٠١" << false;
}

void CDTextEditorTest::recordingCodes()
{
    QFETCH(const QString, code);
    QFETCH(const bool, isValid);
    QCOMPARE(CDTextPanel::isValidISRC(code), isValid);
}

MAPLORN_WINDOW_TEST_MAIN(CDTextEditorTest)
#include "CDTextEditorTest.moc"
