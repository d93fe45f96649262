// The languages of the CD-Text editor: as they are added, removed and burned, with the texts and
// the encoding of each.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QLabel>

namespace {

const QString defaultLanguage = QStringLiteral("Default");
const QString german = QStringLiteral("German");

// The languages and encodings of what would be burned: "de/Ascii".
QStringList blocks(const AudioPage &page)
{
    QStringList list;
    for (const QVariant &value : page.editor()->getCDText().toList()) {
        const auto block = value.value<DRCDTextBlock>();
        list.append(block.language()
                    + (block.encoding() == DRCDTextBlock::Encoding::Ascii
                           ? QStringLiteral("/Ascii")
                           : QStringLiteral("/IsoLatin1")));
    }
    return list;
}

}

class CDTextLanguagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eightLanguagesAndNoMore();
    void sameLanguageIsRefused();
    void otherLanguagesLoseTheirEncoding();
    void newLanguageHasEmptyTexts();
    void removedLanguageCanBeAddedAgain();
    void missingTitleOfASecondLanguage();
    void oneLanguageIsABlockMoreAreAList();
    void tracksAfterClearHaveNoTexts();
    void tooMuchTextNamesTheLanguage();
};

void CDTextLanguagesTest::eightLanguagesAndNoMore()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    const QStringList names = page.items("availableLanguagePopUp").first(8);
    for (qsizetype i = 6; i >= 0; --i)
        page.addLanguage(names.at(i));
    QCOMPARE(page.items("selectedLanguagePopUp"), QStringList(defaultLanguage) + names.first(7));
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Can not add language any more"),
                  QStringLiteral("CDText only supports 8 languages"));
    page.addLanguage(names.last());
    QVERIFY(alerts.isDone());
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->count(), 8);

    page.click("mediaTypeButton"); // which offers all names again
    page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(true);
    alerts.expect(QStringLiteral("Can not add language any more"),
                  QStringLiteral("CDText only supports 8 languages"));
    page.addLanguage(names.first());
    QVERIFY2(alerts.isDone(), "too many, before it is one of them");
}

void CDTextLanguagesTest::sameLanguageIsRefused()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.addLanguage(german);
    QVERIFY(!page.items("availableLanguagePopUp").contains(german));
    page.type("discTitleField", QStringLiteral("Scheibe"));
    page.click("mediaTypeButton");
    QVERIFY(page.items("availableLanguagePopUp").contains(german));
    QVERIFY2(!page.editor()->isTextEnabled(), "every refresh switches it off");
    page.control<QCheckBox>("cdtextEnabledCheckBox")->setChecked(true);
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("The language has been added"),
                  QStringLiteral("You cannot add the same language"));
    page.addLanguage(german);
    QVERIFY(alerts.isDone());
    QCOMPARE(page.items("selectedLanguagePopUp").size(), 2);
    QCOMPARE(page.texts(german, 0).value(DRCDTextTitleKey), QStringLiteral("Scheibe"));
}

void CDTextLanguagesTest::otherLanguagesLoseTheirEncoding()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.pick("encodingPopUp", QStringLiteral("7-bit ASCII"));
    page.addLanguage(german);
    QCOMPARE(blocks(page).join(u' '), QStringLiteral("/IsoLatin1 de/Ascii"));
    page.pick("encodingPopUp", QStringLiteral("ISO-Latin-1"));
    QCOMPARE(blocks(page).join(u' '), QStringLiteral("/IsoLatin1 de/IsoLatin1"));
    page.addLanguage(QStringLiteral("Albanian"));
    QCOMPARE(page.items("selectedLanguagePopUp").join(u' '),
             QStringLiteral("Default Albanian German"));
    QCOMPARE(blocks(page).join(u' '), QStringLiteral("/IsoLatin1 sq/IsoLatin1"));
    page.pick("selectedLanguagePopUp", german);
    QCOMPARE(page.control<QComboBox>("encodingPopUp")->currentIndex(), -1);
    page.pick("encodingPopUp", QStringLiteral("7-bit ASCII"));
    QCOMPARE(blocks(page).join(u' '), QStringLiteral("/IsoLatin1 sq/IsoLatin1 de/Ascii"));
    page.pick("selectedLanguagePopUp", QStringLiteral("Albanian"));
    QCOMPARE(page.control<QComboBox>("encodingPopUp")->currentText(),
             QStringLiteral("ISO-Latin-1"));
}

void CDTextLanguagesTest::newLanguageHasEmptyTexts()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav")),
              page.track(QStringLiteral("c.wav"))});
    page.openEditor();
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("First")});
    page.click("titlesCopyrightCheckBox");
    page.addLanguage(german);
    QCOMPARE(page.editor()->store().list(german), QList<QVariantMap>(4));
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->currentText(), german);
    QCOMPARE(page.shown("discTitleField"), QString());
    QCOMPARE(page.shown("trackTitleField"), QString());
    QVERIFY(!page.control<QCheckBox>("titlesCopyrightCheckBox")->isChecked());
    page.pick("selectedLanguagePopUp", defaultLanguage);
    QCOMPARE(page.shown("discTitleField"), QStringLiteral("Disc"));
    QCOMPARE(page.shown("trackTitleField"), QStringLiteral("First"));
    QVERIFY(page.control<QCheckBox>("titlesCopyrightCheckBox")->isChecked());
}

void CDTextLanguagesTest::removedLanguageCanBeAddedAgain()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    const QStringList all = page.items("availableLanguagePopUp");
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("The default language cannot be removed"),
                  QStringLiteral("The default language must be retained"));
    page.click("removeLanguageButton");
    QVERIFY(alerts.isDone());
    page.addLanguage(german);
    page.type("discTitleField", QStringLiteral("Scheibe"));
    page.click("removeLanguageButton");
    QCOMPARE(page.items("selectedLanguagePopUp"), QStringList(defaultLanguage));
    QCOMPARE(page.items("availableLanguagePopUp"), all);
    QVERIFY(!page.editor()->store().contains(german));
    page.addLanguage(german);
    QCOMPARE(page.editor()->store().list(german), QList<QVariantMap>(2));
    QCOMPARE(page.shown("discTitleField"), QString());
}

void CDTextLanguagesTest::missingTitleOfASecondLanguage()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav")), page.track(QStringLiteral("b.wav"))});
    page.openEditor();
    page.addLanguage(german);
    page.writeTitles(QStringLiteral("Scheibe"), {QStringLiteral("Erstes")});
    page.pick("selectedLanguagePopUp", defaultLanguage);
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("First"), QStringLiteral("Second")});
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("b.wav is not set track title"),
                  QStringLiteral("Please fill in the track title"));
    page.click("saveButton");
    QVERIFY(alerts.isDone());
    QVERIFY(page.editor()->isVisible());
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->currentText(), german);
    QCOMPARE(page.control<QComboBox>("tracksPopUp")->currentText(), QStringLiteral("b.wav"));
    QCOMPARE(page.shown("trackTitleField"), QString());
    QCOMPARE(page.shown("discTitleField"), QStringLiteral("Disc")); // nothing was loaded
    page.type("trackTitleField", QStringLiteral("Zweites"));
    QCOMPARE(page.texts(german, 2).value(DRCDTextTitleKey), QStringLiteral("Zweites"));
    page.click("saveButton");
    QVERIFY(!page.editor()->isVisible());
}

void CDTextLanguagesTest::oneLanguageIsABlockMoreAreAList()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("First")});
    const QVariant one = page.editor()->getCDText();
    QCOMPARE(one.metaType(), QMetaType::fromType<DRCDTextBlock>());
    QCOMPARE(one.value<DRCDTextBlock>().language(), QString());
    QCOMPARE(one.value<DRCDTextBlock>().trackDictionaries(),
             page.editor()->store().list(defaultLanguage));
    page.addLanguage(german);
    page.writeTitles(QStringLiteral("Scheibe"), {QStringLiteral("Erstes")});
    QCOMPARE(page.editor()->getCDText().metaType(), QMetaType::fromType<QVariantList>());
    const QVariantList two = page.editor()->getCDText().toList();
    QCOMPARE(two.size(), 2);
    QCOMPARE(two.last().value<DRCDTextBlock>().language(), QStringLiteral("de"));
    QCOMPARE(two.last().value<DRCDTextBlock>().trackDictionaries(),
             page.editor()->store().list(german));
}

void CDTextLanguagesTest::tracksAfterClearHaveNoTexts()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    AlertRecorder alerts;
    page.clear(alerts);
    page.add({page.track(QStringLiteral("b.wav")), page.track(QStringLiteral("c.wav"))});
    QVERIFY(page.editor()->store().toMap().isEmpty());
    page.control<QTableView>("table")->selectRow(0);
    page.click("removeButton");
    page.openEditor();
    QCOMPARE(page.editor()->getCDText().value<DRCDTextBlock>().trackDictionaries().size(), 0);
    page.writeTitles(QStringLiteral("Disc"), {QStringLiteral("Track")});
    QCOMPARE(page.editor()->store().list(defaultLanguage).size(), 2);
    QCOMPARE(page.texts(defaultLanguage, 1).value(DRCDTextTitleKey), QStringLiteral("Track"));
}

void CDTextLanguagesTest::tooMuchTextNamesTheLanguage()
{
    const AudioPage page;
    page.add({page.track(QStringLiteral("a.wav"))});
    page.openEditor();
    const auto *label = page.control<QLabel>("spaceLabel");
    QVERIFY(label->text().endsWith(QStringLiteral(" of 252 packs used")));
    page.addLanguage(german);
    constexpr int packSize = 12; // bytes of text
    page.type("discTitleField", QString(253 * packSize, u'x'));
    QVERIFY(label->text().contains(QStringLiteral("Too much text: German")));
    page.pick("selectedLanguagePopUp", defaultLanguage);
    QVERIFY2(label->text().contains(QStringLiteral("Too much text: German")),
             "whichever language is shown");
    page.pick("selectedLanguagePopUp", german);
    page.type("discTitleField", QStringLiteral("x"));
    QVERIFY(!label->text().contains(QStringLiteral("Too much")));
}

MAPLORN_WINDOW_TEST_MAIN(CDTextLanguagesTest)
#include "CDTextLanguagesTest.moc"
