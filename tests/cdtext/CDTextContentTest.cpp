#include "TestMain.h"

#include "CDTextLanguages.h"
#include "CDTextPacks.h"
#include "DRCDTextKeys.h"
#include "PackTools.h"
#include "PropertyList.h"

using namespace PackTools;
using namespace Qt::StringLiterals;

namespace {

constexpr quint8 titlePack = 0x80;
constexpr quint8 genrePack = 0x87;
constexpr quint8 sizePack = 0x8f;

}

class CDTextContentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsBecomeBytes_data();
    void textsBecomeBytes();
    void payloads_data();
    void payloads();
    void copyright_data();
    void copyright();
    void blocksAreValues();
    void languagesAreThoseOfTheTable();
    void languagesAreThoseOfTheReader();
};

void CDTextContentTest::textsBecomeBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("missing");

    const auto latin = Encoding::IsoLatin1;
    const auto ascii = Encoding::Ascii;
    QTest::newRow("the last letter of Latin-1") << u"\u00ff"_s << latin << "\xff"_ba << u""_s;
    QTest::newRow("the first beyond Latin-1") << u"\u0100"_s << latin << "?"_ba << u"\u0100"_s;
    QTest::newRow("an accent in ASCII") << u"\u00e9~"_s << ascii << "?~"_ba << u"\u00e9"_s;
    QTest::newRow("each is told once, in order")
        << u"\u0416\u0411 \u0416"_s << latin << "?? ?"_ba << u"\u0416\u0411"_s;
    QTest::newRow("a surrogate pair is one character")
        << u"a\U0001F600b\U0001F601\U0001F600"_s << latin << "a?b??"_ba
        << u"\U0001F600\U0001F601"_s;
    QTest::newRow("half a surrogate pair")
        << QString(QChar(0xd83d)) + u'x' << latin << "?x"_ba << u"\ufffd"_s;
    QTest::newRow("a decomposed letter") << u"cafe\u0301"_s << latin << "caf\xe9"_ba << u""_s;
    QTest::newRow("a decomposed letter in ASCII")
        << u"cafe\u0301"_s << ascii << "caf?"_ba << u"\u00e9"_s;
    QTest::newRow("an accent that no letter composes with")
        << u"x\u0301"_s << latin << "x?"_ba << u"\u0301"_s;
    QTest::newRow("TAB would repeat the text before") << u"\t"_s << latin << " "_ba << u""_s;
    QTest::newRow("zero would end the text")
        << u"a"_s + QChar(0) + u'b' << latin << "a b"_ba << u""_s;
    QTest::newRow("line breaks") << u"a\r\nb\u0085c\u2028d\u2029e"_s << latin << "a  b c d e"_ba
                                 << u""_s;
    QTest::newRow("delete") << u"a\u007fb"_s << ascii << "a b"_ba << u""_s;
}

void CDTextContentTest::textsBecomeBytes()
{
    QFETCH(QString, text);
    QFETCH(Encoding, encoding);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, missing);

    QCOMPARE(CDTextPacks::unencodable(text, encoding), missing);
    const QByteArray made = packs({block(u"en"_s, titles({text}), encoding)}, 1);
    QCOMPARE(payload(made, titlePack), bytes.leftJustified(12, '\0'));
    QCOMPARE(payload(made, sizePack).at(0), encoding == Encoding::Ascii ? '\x01' : '\0');

    // Readers take these for ASCII whatever the language's encoding.
    const DRCDTextBlock ident =
        block(u"en"_s, under(DRCDTextDiscIdentKey, {u"\u00e9"_s}), encoding);
    QCOMPARE(payload(packs({ident}, 1), 0x86), "?"_ba.leftJustified(12, '\0'));
}

void CDTextContentTest::payloads_data()
{
    QTest::addColumn<QList<QVariantMap>>("dictionaries"); // of a disc of three tracks
    QTest::addColumn<quint8>("type");
    QTest::addColumn<QByteArray>("bytes");

    const auto row = [](const char *tag, const QStringList &texts, const QByteArray &bytes) {
        QTest::newRow(tag) << titles(texts) << titlePack << bytes;
    };
    row("fewer than the tracks", {u"D"_s, u"1"_s}, "D\0001\0\0\0"_ba);
    row("more than the tracks", {u"D"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s}, "D\0001\0002\0003\0"_ba);
    row("none in the middle", {u"D"_s, u"1"_s, u""_s, u"3"_s}, "D\0001\0\0003\0"_ba);
    row("none of the disc", {u""_s, u""_s, u"2"_s}, "\0\0002\0\0"_ba);
    row("only beyond the tracks", {u""_s, u""_s, u""_s, u""_s, u"4"_s}, {});

    const auto genreRow = [](const char *tag, const QVariantMap &genre, const QByteArray &bytes) {
        QVariantMap disc{{DRCDTextTitleKey, u"D"_s}};
        disc.insert(genre);
        QTest::newRow(tag) << QList{disc, disc} << genrePack << bytes;
    };
    genreRow("no genre", {}, {});
    genreRow("low byte last", {{DRCDTextGenreCodeKey, 28}}, "\0\x1c"_ba);
    genreRow("high byte first", {{DRCDTextGenreCodeKey, 0x0102}}, "\x01\x02"_ba);
    genreRow("genre under the key of what was read", {{DRCDTextGenreKey, 5}}, {});
}

void CDTextContentTest::payloads()
{
    QFETCH(QList<QVariantMap>, dictionaries);
    QFETCH(quint8, type);
    QFETCH(QByteArray, bytes);

    // Bytes alone: libcdio 2.1 gives the text behind an empty one to the wrong track.
    const QByteArray made = packs({block(u"en"_s, dictionaries)}, 3);
    QCOMPARE(payload(made, type), bytes.isEmpty() ? bytes : bytes.leftJustified(12, '\0'));
}

void CDTextContentTest::copyright_data()
{
    QTest::addColumn<QVariantMap>("disc");
    QTest::addColumn<int>("byte");

    QTest::newRow("not asserted") << QVariantMap() << 0;
    QTest::newRow("all flags off") << QVariantMap{{DRCDTextCopyrightAssertedForTitlesKey, false},
                                                  {DRCDTextCopyrightAssertedForNamesKey, 0}}
                                   << 0;
    QTest::newRow("titles") << QVariantMap{{DRCDTextCopyrightAssertedForTitlesKey, true}} << 3;
    QTest::newRow("names") << QVariantMap{{DRCDTextCopyrightAssertedForNamesKey, 1}} << 3;
    QTest::newRow("messages") << QVariantMap{{DRCDTextCopyrightAssertedForSpecialMessagesKey, true}}
                              << 3;
}

void CDTextContentTest::copyright()
{
    QFETCH(QVariantMap, disc);
    QFETCH(int, byte);

    const QVariantMap title{{DRCDTextTitleKey, u"D"_s}};
    QVariantMap asserting = title;
    asserting.insert(disc);
    const QByteArray made = packs({block(u"en"_s, {title}), block(u"de"_s, {asserting})}, 1);
    QCOMPARE(int(payload(made, sizePack, 0).at(3)), 0);
    QCOMPARE(int(payload(made, sizePack, 1).at(3)), byte);
}

void CDTextContentTest::blocksAreValues()
{
    const DRCDTextBlock text = block(u"en"_s, titles({u"D"_s}), Encoding::Ascii);
    QCOMPARE(QVariant::fromValue(text).value<DRCDTextBlock>(), text);
    QCOMPARE(QVariant::fromValue(QList{text}), QVariant::fromValue(QList{text}));
    QVERIFY(text != block(u"de"_s, titles({u"D"_s}), Encoding::Ascii));
    QVERIFY(text != block(u"en"_s, titles({u"D"_s}), Encoding::IsoLatin1));
    QVERIFY(text != block(u"en"_s, titles({u"E"_s}), Encoding::Ascii));
}

void CDTextContentTest::languagesAreThoseOfTheTable()
{
    QMap<QString, QString> names; // by code
    const QVariantMap table = PropertyList::readMap(QStringLiteral(LANGUAGE_TABLE));
    for (auto row = table.begin(); row != table.end(); ++row)
        names.insert(row->toString(), row.key());
    QCOMPARE(names.size(), table.size());
    QStringList codes = CDTextLanguages::codes();
    codes.sort();
    QCOMPARE(names.keys(), codes);
    for (const QString &code : std::as_const(codes))
        QCOMPARE(CDTextLanguages::nameOf(code), names.value(code));
    QCOMPARE(CDTextLanguages::nameOf(QString()), u"Default"_s);
}

void CDTextContentTest::languagesAreThoseOfTheReader()
{
    // Where the reader spells a name otherwise or has another one.
    const QMap<QString, QString> others{
        {u"be"_s, u"Bielorussian"_s}, {u"bm"_s, u"Bambora"_s},   {u"cv"_s, u"Churash"_s},
        {u"ff"_s, u"Fulani"_s},       {u"fy"_s, u"Frisian"_s},   {u"gn"_s, u"Gurani"_s},
        {u"gu"_s, u"Gujurati"_s},     {u"km"_s, u"Khmer"_s},     {u"lb"_s, u"Luxembourgian"_s},
        {u"lo"_s, u"Laotian"_s},      {u"mg"_s, u"Malagasay"_s}, {u"ms"_s, u"Malaysian"_s},
        {u"pa"_s, u"Punjabi"_s},      {u"ps"_s, u"Pushtu"_s},    {u"se"_s, u"Lappish"_s},
        {u"si"_s, u"Sinhalese"_s},    {u"tg"_s, u"Tadzhik"_s},   {u"wa"_s, u"Wallon"_s}};
    QSet<int> numbers{0};
    for (const QString &code : CDTextLanguages::codes()) {
        const quint8 number = CDTextLanguages::ebuCode(code);
        const QString reader = QString::fromLatin1(cdtext_lang2str(cdtext_lang_t(number)));
        QCOMPARE(others.value(code, CDTextLanguages::nameOf(code)), reader);
        QVERIFY2(!numbers.contains(number), qUtf8Printable(code));
        numbers.insert(number);
    }
    QCOMPARE(CDTextLanguages::ebuCode(u"xx"_s), quint8(0));
    QCOMPARE(CDTextLanguages::ebuCode(QString()), quint8(0));
}

MAPLORN_TEST_MAIN(CDTextContentTest)
#include "CDTextContentTest.moc"
