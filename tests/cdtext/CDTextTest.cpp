#include "TestMain.h"

#include "CDTextLanguages.h"
#include "CDTextPacks.h"
#include "DRCDTextKeys.h"
#include "LibburnPacks.h"
#include "PackTools.h"

#include <atomic>
#include <thread>

using namespace PackTools;
using namespace Qt::StringLiterals;

namespace {

constexpr quint8 sizePack = 0x8f;

QString times(int count, QChar character)
{
    return QString(count, character);
}

// A disc with a text of every kind, those of the language told apart by its mark.
QList<QVariantMap> everyField(const QString &mark, int trackCount)
{
    const auto perTrack =
        std::to_array({DRCDTextTitleKey, DRCDTextPerformerKey, DRCDTextSongwriterKey,
                       DRCDTextComposerKey, DRCDTextArrangerKey});
    QList<QVariantMap> dictionaries;
    for (int index = 0; index <= trackCount; ++index) {
        QVariantMap dictionary;
        for (const QLatin1StringView key : perTrack)
            dictionary.insert(
                key, QString(key.sliced(8, 4) % ' '_L1 % mark % u' ' % QString::number(index)));
        dictionary.insert(DRCDTextMCNISRCKey, index == 0
                                                  ? u"4006408126004"_s
                                                  : u"DEA12%1"_s.arg(index, 7, 10, QChar(u'0')));
        dictionaries.append(dictionary);
    }
    QVariantMap &disc = dictionaries.first();
    disc.insert(DRCDTextSpecialMessageKey, QString(u"Message "_s + mark));
    disc.insert(DRCDTextDiscIdentKey, u"MD 4711"_s);
    disc.insert(DRCDTextClosedKey, u"Closed"_s);
    disc.insert(DRCDTextGenreCodeKey, 14);
    for (const QLatin1StringView key : {DRCDTextSizeKey, DRCDTextTOCKey, DRCDTextTOC2Key})
        disc.insert(key, "never written"_ba);
    return dictionaries;
}

}

class CDTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void smallDiscByteForByte();
    void everyPackHasItsChecksumAndNumber();
    void eightLanguagesAreReadBack();
    void countedAsEncoded_data();
    void countedAsEncoded();
    void limitOfALanguage_data();
    void limitOfALanguage();
    void eightFullLanguagesFit();
    void refused();
    void reasonOfTheEncoderIsTold();
    void blocksWithoutTextAreLeftOut();
    void threadsAtOnce();
};

void CDTextTest::smallDiscByteForByte()
{
    QList<QVariantMap> disc = titles({u"Demo"_s, u"One"_s, u"Two longer title"_s});
    for (QVariantMap &dictionary : disc)
        dictionary.insert(DRCDTextPerformerKey, u"Ann"_s);
    const QByteArrayList expected{
        "80000000 44656d6f004f6e650054776f df5a"_ba, // Demo, One, Two
        "80020103 206c6f6e676572207469746c 491d"_ba, // 3 characters of track 2 stand before
        "8002020f 650000000000000000000000 3086"_ba, // 15 or more stand before
        "81000300 416e6e00416e6e0009000000 df57"_ba, // disc, track 1, TAB for track 2
        "8f000400 000102000301000000000000 05e6"_ba, // Latin-1, tracks 1 to 2, packs of each type
        "8f010500 000000000000000306000000 6fe7"_ba, // the last number of each block
        "8f020600 000000000900000000000000 9123"_ba, // English
    };
    const QByteArray made = packs({block(u"en"_s, disc)}, 2);
    QCOMPARE(made.toHex(), expected.join().replace(' ', ""));
}

void CDTextTest::everyPackHasItsChecksumAndNumber()
{
    const QByteArray made = packs({block(u"en"_s, everyField(u"x"_s, 44))}, 44);
    QVERIFY(made.size() / CDTextPacks::packSize > 200);
    for (qsizetype number = 0; number * CDTextPacks::packSize < made.size(); ++number) {
        const QByteArray pack = made.mid(number * CDTextPacks::packSize, CDTextPacks::packSize);
        QCOMPARE(pack.last(2).toHex(), checksum(pack).toHex());
        QCOMPARE(quint8(pack.at(2)), quint8(number));
    }
}

void CDTextTest::eightLanguagesAreReadBack()
{
    constexpr int trackCount = 3;
    const QStringList languages{u"en"_s, u"de"_s, u"fr"_s, u"es"_s,
                                u"it"_s, u"sv"_s, u""_s,   u"pt"_s};
    QList<DRCDTextBlock> blocks;
    for (const QString &language : languages)
        blocks.append(block(language, everyField(u"é "_s + language, trackCount)));
    const QByteArray made = packs(blocks, trackCount);
    Reader reader(made);
    for (int index = 0; index < 8; ++index) {
        QVERIFY(payload(made, 0x88, index).isEmpty() && payload(made, 0x89, index).isEmpty());
        const QString &language = languages.at(index);
        QVERIFY2(reader.select(index), qUtf8Printable(language));
        QCOMPARE(reader.language(), int(CDTextLanguages::ebuCode(language)));
        QCOMPARE(reader.genre(), 14);
        QCOMPARE(reader.lastTrack(), trackCount);
        QCOMPARE(reader.text(CDTEXT_FIELD_MESSAGE, 0), u"Message é "_s + language);
        QCOMPARE(reader.text(CDTEXT_FIELD_DISCID, 0), u"MD 4711"_s);
        QCOMPARE(reader.text(CDTEXT_FIELD_UPC_EAN, 0), u"4006408126004"_s);
        QCOMPARE(reader.text(CDTEXT_FIELD_ISRC, 3), u"DEA120000003"_s);
        for (int track = 0; track <= trackCount; ++track) {
            const QString rest = u"é %1 %2"_s.arg(language).arg(track);
            QCOMPARE(reader.text(CDTEXT_FIELD_TITLE, track), u"Titl "_s + rest);
            QCOMPARE(reader.text(CDTEXT_FIELD_PERFORMER, track), u"Perf "_s + rest);
            QCOMPARE(reader.text(CDTEXT_FIELD_SONGWRITER, track), u"Song "_s + rest);
            QCOMPARE(reader.text(CDTEXT_FIELD_COMPOSER, track), u"Comp "_s + rest);
            QCOMPARE(reader.text(CDTEXT_FIELD_ARRANGER, track), u"Arra "_s + rest);
        }
    }
}

void CDTextTest::countedAsEncoded_data()
{
    QTest::addColumn<QList<QVariantMap>>("dictionaries");
    QTest::addColumn<int>("trackCount");

    QTest::newRow("no dictionaries") << QList<QVariantMap>() << 2;
    QTest::newRow("empty dictionaries") << titles({{}, {}, {}}) << 2;
    QTest::newRow("a text on the disc alone") << titles({u"D"_s, {}, {}}) << 2;
    QTest::newRow("a text on a track alone") << titles({{}, {}, u"T"_s}) << 2;
    QTest::newRow("a pack full to the last byte") << titles({u"12345"_s, u"12345"_s}) << 1;
    QTest::newRow("a byte more than a pack") << titles({u"12345"_s, u"123456"_s}) << 1;
    QTest::newRow("text longer than a position can tell") << titles({times(500, u'x')}) << 1;
    QTest::newRow("a repeated text") << titles({u"D"_s, u"again"_s, u"again"_s, u"again"_s}) << 3;
    QTest::newRow("the disc's text is no repetition")
        << titles({u"again again"_s, u"again again"_s, u"x"_s}) << 2;
    QTest::newRow("a repeated single letter") << titles({u"D"_s, u"x"_s, u"x"_s, u"x"_s}) << 3;
    QTest::newRow("no repetition over a gap")
        << titles({u"D"_s, u"again again"_s, {}, u"again again"_s}) << 3;
    QTest::newRow("a repetition once cleaned")
        << titles({u"D"_s, u"a long\ttext"_s, u"a long text"_s, u"a long\ntext"_s}) << 3;
    QTest::newRow("a repetition once replaced")
        << titles({u"D"_s, u"a long \u0416"_s, u"a long \U0001F600"_s, u"a long ?"_s}) << 3;
    QTest::newRow("a repetition once composed")
        << titles({u"D"_s, u"caf\u00e9 caf\u00e9"_s, u"cafe\u0301 cafe\u0301"_s}) << 2;
    QTest::newRow("empty texts do not repeat") << titles(QStringList{u"D"_s}) << 99;
    QTest::newRow("a message has a text in every track")
        << under(DRCDTextSpecialMessageKey, {u"M"_s}) << 99;
    QTest::newRow("a repeated recording code")
        << under(DRCDTextMCNISRCKey, {{}, u"DEA120000003"_s, u"DEA120000003"_s}) << 2;
    QTest::newRow("closed has none in a track") << under(DRCDTextClosedKey, {u"C"_s}) << 99;
    QTest::newRow("a genre alone") << QList<QVariantMap>{{{DRCDTextGenreCodeKey, 5}}} << 1;
    QTest::newRow("every field") << everyField(u"x"_s, 7) << 7;
    QTest::newRow("every field in 40 tracks") << everyField(u"x"_s, 40) << 40;
    QTest::newRow("99 tracks") << everyField(u"x"_s, 36) << 99;
}

void CDTextTest::countedAsEncoded()
{
    QFETCH(QList<QVariantMap>, dictionaries);
    QFETCH(int, trackCount);

    for (const Encoding encoding : {Encoding::IsoLatin1, Encoding::Ascii}) {
        const DRCDTextBlock text = block(u"en"_s, dictionaries, encoding);
        const qsizetype encoded = packs({text}, trackCount).size() / CDTextPacks::packSize;
        QCOMPARE(CDTextPacks::packCount(text, trackCount), encoded == 0 ? 0 : int(encoded) - 3);
    }
}

void CDTextTest::limitOfALanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("name");

    QTest::newRow("a known language") << u"el"_s << u"Greek"_s;
    QTest::newRow("no language") << QString() << u"Default"_s;
}

void CDTextTest::limitOfALanguage()
{
    QFETCH(QString, language);
    QFETCH(QString, name);
    // Two bytes are the ends of the disc's text and of the track's.
    const int full = CDTextPacks::maxPayloadPacks * 12 - 2;

    const DRCDTextBlock fits = block(language, titles({times(full, u'x')}));
    QCOMPARE(CDTextPacks::packCount(fits, 1), CDTextPacks::maxPayloadPacks);
    QCOMPARE(packs({fits}, 1).size(), 255 * CDTextPacks::packSize);

    const DRCDTextBlock tooLong = block(language, titles({times(full + 1, u'x')}));
    QCOMPARE(CDTextPacks::packCount(tooLong, 1), CDTextPacks::maxPayloadPacks + 1);
    const DRCDTextBlock other = block(u"sv"_s, titles({u"D"_s}));
    const QString error = CDTextPacks::encode({other, tooLong}, 1).error();
    QVERIFY2(error.contains(name) && error.contains(u"253"_s), qUtf8Printable(error));
}

void CDTextTest::eightFullLanguagesFit()
{
    const QStringList languages{u"en"_s, u"de"_s, u"fr"_s, u"es"_s,
                                u"it"_s, u"sv"_s, u"pl"_s, u"pt"_s};
    QList<DRCDTextBlock> blocks;
    for (const QString &language : languages)
        blocks.append(block(language, titles({times(252 * 12 - 2, u'x')})));
    const QByteArray made = packs(blocks, 1);
    QCOMPARE(made.size(), 8 * 255 * CDTextPacks::packSize);
    // From byte 20 on, every language tells the last number of each.
    for (int index = 0; index < 8; ++index)
        QCOMPARE(payload(made, sizePack, index).mid(20, 8), QByteArray(8, char(254)));
}

void CDTextTest::refused()
{
    const DRCDTextBlock text = block(u"en"_s, titles({u"D"_s}));
    QVERIFY(CDTextPacks::encode(QList<DRCDTextBlock>(8, text), 1));
    QVERIFY(!CDTextPacks::encode(QList<DRCDTextBlock>(9, text), 1));
    QVERIFY(CDTextPacks::encode({text}, 99));
    QVERIFY(!CDTextPacks::encode({text}, 100));
    QVERIFY(!CDTextPacks::encode({text}, 0));
}

void CDTextTest::reasonOfTheEncoderIsTold()
{
    const CDTextPayload::Texts text{0x80, "D"_ba + '\0', {QByteArray(1, '\0')}};
    CDTextPayload::Texts tooLong = text;
    tooLong.disc = QByteArray(3036, 'x'); // 253 packs
    CDTextPayload::Texts noText = text;
    noText.packType = 0x90;
    QCOMPARE(LibburnPacks::make({{0, 0, 9, {tooLong}}}, 1).error(),
             u"Too many CD-TEXT packs in block"_s);
    // And not the reason of the call before.
    QCOMPARE(LibburnPacks::make({{0, 0, 9, {noText}}}, 1).error(),
             u"CD-TEXT pack type out of range"_s);
    QVERIFY(LibburnPacks::make({{0, 0, 9, {text}}}, 1));
}

// The editor stores a genre for every language, chosen or not.
void CDTextTest::blocksWithoutTextAreLeftOut()
{
    const DRCDTextBlock empty = block(u"de"_s, {{{DRCDTextGenreCodeKey, 1}}});
    const DRCDTextBlock text = block(u"fr"_s, titles({u"D"_s}));
    QVERIFY(packs({}, 1).isEmpty());
    QVERIFY(packs({empty, empty}, 1).isEmpty());

    const QByteArray made = packs({empty, text, empty, text}, 1);
    QCOMPARE(made, packs({text, text}, 1));
    const QByteArray codes = payload(made, sizePack).mid(28, 8);
    QCOMPARE(codes.toHex(), "0f0f000000000000"_ba);
}

void CDTextTest::threadsAtOnce()
{
    const QList<DRCDTextBlock> blocks{block(u"en"_s, everyField(u"x"_s, 20))};
    const QByteArray expected = packs(blocks, 20);
    std::atomic_int wrong = 0;
    {
        std::array<std::jthread, 4> threads;
        for (std::jthread &thread : threads)
            thread = std::jthread([&blocks, &expected, &wrong] {
                for (int round = 0; round < 25; ++round) {
                    const Result<QByteArray> made = CDTextPacks::encode(blocks, 20);
                    wrong += made && made.value() == expected ? 0 : 1;
                }
            });
    }
    QCOMPARE(wrong.load(), 0);
}

MAPLORN_TEST_MAIN(CDTextTest)
#include "CDTextTest.moc"
