// The choice lists and flags that the program carries, held against each other and against what
// their users rely on: clauses carry names raw, pop-ups have a first line that chooses nothing,
// the root company's values can be chosen.
#include "BundleUtil.h"
#include "PropertyList.h"
#include "TestMain.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>

#include <algorithm>

namespace {

const QString choose = QStringLiteral("Please choose");
// All entries of ISO 3166-1.
constexpr qsizetype countriesOfTheWorld = 249;

QVariantMap dictionary(const char *name)
{
    return PropertyList::readMap(
        QStringLiteral(":/reference/%1.plist").arg(QLatin1StringView(name)));
}

QStringList chosenFrom(const QStringList &list)
{
    return list.mid(1);
}

// Every country, in the order of the continents; one that is listed twice comes twice.
QStringList allCountries()
{
    QStringList countries;
    const QVariantMap continents = dictionary("Country");
    for (const QVariant &listed : continents)
        countries += chosenFrom(listed.toStringList());
    return countries;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

bool matches(const char *pattern, const QString &text)
{
    const QRegularExpression expression(
        QRegularExpression::anchoredPattern(QLatin1StringView(pattern)));
    return expression.match(text).hasMatch();
}

}

class ReferenceListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choices_data();
    void choices();
    void continentsAndCountryListsAgree();
    void everyCountryOnce();
    void namesAreFitForClauses();
    void callingCodesAndCurrencies();
    void flags();
    void lookUpCountry_data();
    void lookUpCountry();
    void rootCompany();
    void questions();
    void terms();
    void statusesPaymentMethodsCategories();
};

void ReferenceListsTest::choices_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<int>("least");

    BundleUtil lists;
    QTest::newRow("industries") << lists.getIndustries() << 30;
    QTest::newRow("titles") << lists.getTitles() << 4;
    QTest::newRow("continents") << lists.getBusinessContinents() << 6;
    QTest::newRow("questions 1") << lists.getFirstGroupSecurityQuestions() << 8;
    QTest::newRow("questions 2") << lists.getSecondGroupSecurityQuestions() << 8;
    QTest::newRow("questions 3") << lists.getThirdGroupSecurityQuestions() << 8;
    const QStringList continents = chosenFrom(lists.getBusinessContinents());
    for (const QString &continent : continents)
        QTest::newRow(qPrintable(continent))
            << lists.getCountries(lists.indexOfBusinessContinent(continent)) << 5;
}

void ReferenceListsTest::choices()
{
    QFETCH(QStringList, list);
    QFETCH(int, least);
    QCOMPARE(list.value(0), choose);
    QVERIFY(list.size() > least);
    QCOMPARE(list.count(choose), 1);
    QCOMPARE(list.removeDuplicates(), 0);
    for (const QString &line : std::as_const(list))
        QVERIFY2(!line.isEmpty() && line == line.simplified(), qPrintable(line));
}

void ReferenceListsTest::continentsAndCountryListsAgree()
{
    BundleUtil lists;
    const QStringList continents = chosenFrom(lists.getBusinessContinents());
    QCOMPARE(sorted(continents), dictionary("Country").keys());
}

void ReferenceListsTest::everyCountryOnce()
{
    const QStringList countries = allCountries();
    QCOMPARE(countries.size(), countriesOfTheWorld);
    QCOMPARE(QSet<QString>(countries.cbegin(), countries.cend()).size(), countriesOfTheWorld);
    const QVariantMap continents = dictionary("Country");
    for (const QVariant &listed : continents) {
        const QStringList ofContinent = chosenFrom(listed.toStringList());
        QVERIFY(std::is_sorted(ofContinent.cbegin(), ofContinent.cend()));
    }
}

void ReferenceListsTest::namesAreFitForClauses()
{
    BundleUtil lists;
    const QStringList names =
        allCountries() + lists.getBusinessContinents() + lists.getIndustries();
    for (const QString &name : names)
        QVERIFY2(matches("[A-Za-z]+([ -][A-Za-z]+)*", name), qPrintable(name));
}

void ReferenceListsTest::callingCodesAndCurrencies()
{
    const QStringList countries = sorted(allCountries());
    QCOMPARE(dictionary("CallingCode").keys(), countries);
    QCOMPARE(dictionary("Currency").keys(), countries);
    BundleUtil lists;
    for (const QString &country : countries) {
        QVERIFY2(matches("[1-9][0-9]{0,2}", lists.getCallingCode(country)), qPrintable(country));
        QVERIFY2(matches("[A-Z]{3}", lists.getCurrency(country)), qPrintable(country));
    }
}

void ReferenceListsTest::flags()
{
    QStringList pictures = QDir(QStringLiteral(":/flags")).entryList({QStringLiteral("*.png")});
    pictures.replaceInStrings(QRegularExpression(QStringLiteral("\\.png$")), QString());
    QCOMPARE(sorted(pictures), sorted(allCountries()));

    qint64 bytes = 0;
    for (const QString &country : std::as_const(pictures)) {
        const QString path = QStringLiteral(":/flags/%1.png").arg(country);
        const QImage flag(path);
        QVERIFY2(flag.width() >= 48 && flag.width() <= 128, qPrintable(country));
        QVERIFY2(flag.height() >= 32 && flag.height() <= 96, qPrintable(country));
        // Within the pennants of Nepal too.
        const QColor lowerLeft = flag.pixelColor(flag.width() / 8, flag.height() * 3 / 4);
        QVERIFY2(lowerLeft.alpha() > 200, qPrintable(country));
        bytes += QFile(path).size();
    }
    // They are part of the program.
    QVERIFY(bytes < qint64{256} * 1024);
}

void ReferenceListsTest::lookUpCountry_data()
{
    QTest::addColumn<QString>("continent");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("callingCode");
    QTest::addColumn<QString>("currency");

    const auto row = [](const char *continent, const char *country, const char *callingCode,
                        const char *currency) {
        QTest::newRow(country) << QString::fromLatin1(continent) << QString::fromLatin1(country)
                               << QString::fromLatin1(callingCode) << QString::fromLatin1(currency);
    };
    row("Africa", "Ivory Coast", "225", "XOF");
    row("Africa", "Sao Tome and Principe", "239", "STN");
    row("Asia Pacific", "South Korea", "82", "KRW");
    row("Asia Pacific", "Hong Kong", "852", "HKD");
    row("Asia Pacific", "New Zealand", "64", "NZD");
    row("Central America and Caribbean", "Dominican Republic", "1", "DOP");
    row("Central America and Caribbean", "Curacao", "599", "XCG");
    row("Europe", "Aland Islands", "358", "EUR");
    row("Europe", "Switzerland", "41", "CHF");
    row("Europe", "United Kingdom", "44", "GBP");
    row("Middle East", "United Arab Emirates", "971", "AED");
    row("North America", "United States", "1", "USD");
    row("South America", "Brazil", "55", "BRL");
}

void ReferenceListsTest::lookUpCountry()
{
    QFETCH(QString, continent);
    QFETCH(QString, country);
    BundleUtil lists;
    const qsizetype continentIndex = lists.indexOfBusinessContinent(continent);
    const qsizetype index = lists.indexOfCountry(continentIndex, country);
    QVERIFY(index >= 1);
    QCOMPARE(lists.getCountry(continentIndex, index), country);
    QTEST(lists.getCallingCode(country), "callingCode");
    QTEST(lists.getCurrency(country), "currency");
}

// What the first sign-in of root writes; the root company can change its profile and its questions
// only if the pop-ups know it.
void ReferenceListsTest::rootCompany()
{
    BundleUtil lists;
    QVERIFY(lists.indexOfTitle(QStringLiteral("Mr.")) >= 1);
    QVERIFY(lists.indexOfIndustry(QStringLiteral("Technology")) >= 1);
    const qsizetype continent = lists.indexOfBusinessContinent(QStringLiteral("Asia Pacific"));
    QVERIFY(continent >= 1);
    QVERIFY(lists.indexOfCountry(continent, QStringLiteral("China")) >= 1);
    QCOMPARE(lists.getCurrency(QStringLiteral("China")), QStringLiteral("CNY"));
    // The rule that asks for a WeChat name hangs on this code, and on no other country having it.
    const QVariantMap codes = dictionary("CallingCode");
    QCOMPARE(codes.keys(QStringLiteral("86")), QStringList{QStringLiteral("China")});

    const auto index = [&lists](const char *group, const char *question) {
        return lists.indexOfSecurityQuestion(QString::fromLatin1(group),
                                             QString::fromLatin1(question));
    };
    QVERIFY(index("Group1", "What is the first name of your best friend in high school?") >= 1);
    QVERIFY(index("Group2", "What was the model of your first car?") >= 1);
    QVERIFY(index("Group3", "What was the first name of your first boss?") >= 1);
}

void ReferenceListsTest::questions()
{
    BundleUtil lists;
    QStringList questions = chosenFrom(lists.getFirstGroupSecurityQuestions())
                            + chosenFrom(lists.getSecondGroupSecurityQuestions())
                            + chosenFrom(lists.getThirdGroupSecurityQuestions());
    QCOMPARE(questions.removeDuplicates(), 0);
    for (const QString &question : std::as_const(questions))
        QVERIFY2(matches("[A-Z][A-Za-z ]+\\?", question), qPrintable(question));
}

void ReferenceListsTest::terms()
{
    BundleUtil lists;
    const QString text = lists.getTermsAndConditions();
    QVERIFY(text.startsWith(QStringLiteral("Sample Terms and Conditions\n\n")));
    QVERIFY(text.split(QStringLiteral("\n\n")).size() > 10);
}

void ReferenceListsTest::statusesPaymentMethodsCategories()
{
    BundleUtil lists;
    QCOMPARE(lists.indexOfStatus(QStringLiteral("Active")), 0);
    QVERIFY(lists.getPaymentMethods().contains(QStringLiteral("Bank Transfer")));
    const QVariantMap categories = lists.getCategoryDict();
    QVERIFY(!categories.isEmpty());
    for (const QVariant &listed : categories)
        QVERIFY(!listed.toStringList().isEmpty());
}

MAPLORN_TEST_MAIN(ReferenceListsTest)
#include "ReferenceListsTest.moc"
