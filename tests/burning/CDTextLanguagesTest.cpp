// The languages of the CD-Text editor: as they are added, removed and burned, with the texts and
// the encoding of each.
#include "AudioPage.h"
#include "DRCDTextKeys.h"
#include "WindowTestMain.h"

#include <QCheckBox>

using namespace Qt::StringLiterals;

namespace {

const QString defaultLanguage = u"Default"_s;
const QString german = u"German"_s;

// The languages and encodings of what would be burned: "de/Ascii".
QStringList blocks(const AudioPage &page)
{
    QStringList list;
    for (const QVariant &value : page.editor()->getCDText().toList()) {
        const auto block = value.value<DRCDTextBlock>();
        list.append(
            block.language()
            + (block.encoding() == DRCDTextBlock::Encoding::Ascii ? u"/Ascii"_s : u"/IsoLatin1"_s));
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
    const AudioPage page{"a.wav"};
    page.openEditor();
    const QStringList names = page.items("availableLanguagePopUp").first(8);
    for (qsizetype i = 6; i >= 0; --i)
        page.addLanguage(names.at(i));
    QCOMPARE(page.items("selectedLanguagePopUp"), QStringList(defaultLanguage) + names.first(7));
    AlertRecorder alerts;
    alerts.expect(u"Can not add language any more"_s, u"CDText only supports 8 languages"_s);
    page.addLanguage(names.last());
    QVERIFY(alerts.isDone());
    QCOMPARE(page.control<QComboBox>("selectedLanguagePopUp")->count(), 8);

    page.click("mediaTypeButton"); // which offers all names again
    page.check("cdtextEnabledCheckBox");
    alerts.expect(u"Can not add language any more"_s, u"CDText only supports 8 languages"_s);
    page.addLanguage(names.first());
    QVERIFY2(alerts.isDone(), "too many, before it is one of them");
}

void CDTextLanguagesTest::sameLanguageIsRefused()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    page.addLanguage(german);
    QVERIFY(!page.items("availableLanguagePopUp").contains(german));
    page.type("discTitleField", u"Scheibe"_s);
    page.click("mediaTypeButton");
    QVERIFY(page.items("availableLanguagePopUp").contains(german));
    QVERIFY2(!page.editor()->isTextEnabled(), "every refresh switches it off");
    page.check("cdtextEnabledCheckBox");
    AlertRecorder alerts;
    alerts.expect(u"The language has been added"_s, u"You cannot add the same language"_s);
    page.addLanguage(german);
    QVERIFY(alerts.isDone());
    QCOMPARE(page.items("selectedLanguagePopUp").size(), 2);
    QCOMPARE(page.texts(german, 0).value(DRCDTextTitleKey), u"Scheibe"_s);
}

void CDTextLanguagesTest::otherLanguagesLoseTheirEncoding()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    page.pick("encodingPopUp", u"7-bit ASCII"_s);
    page.addLanguage(german);
    QCOMPARE(blocks(page).join(u' '), u"/IsoLatin1 de/Ascii"_s);
    page.pick("encodingPopUp", u"ISO-Latin-1"_s);
    QCOMPARE(blocks(page).join(u' '), u"/IsoLatin1 de/IsoLatin1"_s);
    page.addLanguage(u"Albanian"_s);
    QCOMPARE(page.items("selectedLanguagePopUp").join(u' '), u"Default Albanian German"_s);
    QCOMPARE(blocks(page).join(u' '), u"/IsoLatin1 sq/IsoLatin1"_s);
    page.pick("selectedLanguagePopUp", german);
    QCOMPARE(page.control<QComboBox>("encodingPopUp")->currentIndex(), -1);
    page.pick("encodingPopUp", u"7-bit ASCII"_s);
    QCOMPARE(blocks(page).join(u' '), u"/IsoLatin1 sq/IsoLatin1 de/Ascii"_s);
    page.pick("selectedLanguagePopUp", u"Albanian"_s);
    QCOMPARE(page.chosen("encodingPopUp"), u"ISO-Latin-1"_s);
}

void CDTextLanguagesTest::newLanguageHasEmptyTexts()
{
    const AudioPage page{"a.wav", "b.wav", "c.wav"};
    page.openEditor();
    page.writeTitles(u"Disc"_s, {u"First"_s});
    page.click("titlesCopyrightCheckBox");
    page.addLanguage(german);
    QCOMPARE(page.editor()->store().list(german), QList<QVariantMap>(4));
    QCOMPARE(page.chosen("selectedLanguagePopUp"), german);
    QCOMPARE(page.shown("discTitleField"), QString());
    QCOMPARE(page.shown("trackTitleField"), QString());
    QVERIFY(!page.control<QCheckBox>("titlesCopyrightCheckBox")->isChecked());
    page.pick("selectedLanguagePopUp", defaultLanguage);
    QCOMPARE(page.shown("discTitleField"), u"Disc"_s);
    QCOMPARE(page.shown("trackTitleField"), u"First"_s);
    QVERIFY(page.control<QCheckBox>("titlesCopyrightCheckBox")->isChecked());
}

void CDTextLanguagesTest::removedLanguageCanBeAddedAgain()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    const QStringList all = page.items("availableLanguagePopUp");
    AlertRecorder alerts;
    alerts.expect(u"The default language cannot be removed"_s,
                  u"The default language must be retained"_s);
    page.click("removeLanguageButton");
    QVERIFY(alerts.isDone());
    page.addLanguage(german);
    page.type("discTitleField", u"Scheibe"_s);
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
    const AudioPage page{"a.wav", "b.wav"};
    page.openEditor();
    page.addLanguage(german);
    page.writeTitles(u"Scheibe"_s, {u"Erstes"_s});
    page.pick("selectedLanguagePopUp", defaultLanguage);
    page.writeTitles(u"Disc"_s, {u"First"_s, u"Second"_s});
    AlertRecorder alerts;
    alerts.expect(u"b.wav is not set track title"_s, u"Please fill in the track title"_s);
    page.click("saveButton");
    QVERIFY(alerts.isDone());
    QVERIFY(page.editor()->isVisible());
    QCOMPARE(page.chosen("selectedLanguagePopUp"), german);
    QCOMPARE(page.chosen("tracksPopUp"), u"b.wav"_s);
    QCOMPARE(page.shown("trackTitleField"), QString());
    QCOMPARE(page.shown("discTitleField"), u"Disc"_s); // nothing was loaded
    page.type("trackTitleField", u"Zweites"_s);
    QCOMPARE(page.texts(german, 2).value(DRCDTextTitleKey), u"Zweites"_s);
    page.click("saveButton");
    QVERIFY(!page.editor()->isVisible());
}

void CDTextLanguagesTest::oneLanguageIsABlockMoreAreAList()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    page.writeTitles(u"Disc"_s, {u"First"_s});
    const QVariant one = page.editor()->getCDText();
    QCOMPARE(one.metaType(), QMetaType::fromType<DRCDTextBlock>());
    QCOMPARE(one.value<DRCDTextBlock>().language(), QString());
    QCOMPARE(one.value<DRCDTextBlock>().trackDictionaries(),
             page.editor()->store().list(defaultLanguage));
    page.addLanguage(german);
    page.writeTitles(u"Scheibe"_s, {u"Erstes"_s});
    QCOMPARE(page.editor()->getCDText().metaType(), QMetaType::fromType<QVariantList>());
    const QVariantList two = page.editor()->getCDText().toList();
    QCOMPARE(two.size(), 2);
    QCOMPARE(two.last().value<DRCDTextBlock>().language(), u"de"_s);
    QCOMPARE(two.last().value<DRCDTextBlock>().trackDictionaries(),
             page.editor()->store().list(german));
}

void CDTextLanguagesTest::tracksAfterClearHaveNoTexts()
{
    const AudioPage page{"a.wav"};
    AlertRecorder alerts;
    page.clear(alerts);
    page.add({page.track(u"b.wav"_s), page.track(u"c.wav"_s)});
    QVERIFY(page.editor()->store().toMap().isEmpty());
    page.control<QTableView>("table")->selectRow(0);
    page.click("removeButton");
    page.openEditor();
    QCOMPARE(page.editor()->getCDText().value<DRCDTextBlock>().trackDictionaries().size(), 0);
    page.writeTitles(u"Disc"_s, {u"Track"_s});
    QCOMPARE(page.editor()->store().list(defaultLanguage).size(), 2);
    QCOMPARE(page.texts(defaultLanguage, 1).value(DRCDTextTitleKey), u"Track"_s);
}

void CDTextLanguagesTest::tooMuchTextNamesTheLanguage()
{
    const AudioPage page{"a.wav"};
    page.openEditor();
    const auto *label = page.control<QLabel>("spaceLabel");
    QVERIFY(label->text().endsWith(u" of 252 packs used"_s));
    page.addLanguage(german);
    constexpr int packSize = 12; // bytes of text
    page.type("discTitleField", QString(253 * packSize, u'x'));
    QVERIFY(label->text().contains(u"Too much text: German"_s));
    page.pick("selectedLanguagePopUp", defaultLanguage);
    QVERIFY2(label->text().contains(u"Too much text: German"_s), "whichever language is shown");
    page.pick("selectedLanguagePopUp", german);
    page.type("discTitleField", u"x"_s);
    QVERIFY(!label->text().contains(u"Too much"_s));
}

MAPLORN_WINDOW_TEST_MAIN(CDTextLanguagesTest)
#include "CDTextLanguagesTest.moc"
