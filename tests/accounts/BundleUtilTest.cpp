// Looking up the choice lists: what is at which place, what counts as not there, and a list that is
// missing or damaged.
#include "BundleUtil.h"
#include "PropertyList.h"
#include "TestMain.h"

#include <QFile>

class BundleUtilTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void countries_data();
    void countries();
    void questions();
    void keptForLife();
    void missingListsAreEmpty();

private:
    QTemporaryDir m_folder;
};

void BundleUtilTest::initTestCase()
{
    const auto store = [this](const char *name, const QVariant &content) {
        QVERIFY(PropertyList::write(m_folder.filePath(QLatin1StringView(name)), content));
    };
    store("BusinessContinent.plist", QStringList{QStringLiteral("Choose"), QStringLiteral("Asia")});
    store("Country.plist",
          QVariantMap{{QStringLiteral("Asia"), QStringList{QStringLiteral("Choose"),
                                                           QStringLiteral("Japan")}}});
    store("CallingCode.plist", QVariantMap{{QStringLiteral("Japan"), QStringLiteral("81")}});
    store("SecurityQuestion.plist",
          QVariantMap{{QStringLiteral("Group1"), QStringList{QStringLiteral("Pet?")}},
                      {QStringLiteral("Group2"), QStringList{QStringLiteral("School?")}}});
    store("Title.plist", QStringList{QStringLiteral("Ms")});
    QFile damaged(m_folder.filePath(QStringLiteral("Industry.plist")));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("<plist><array><string>cut of");
}

void BundleUtilTest::countries_data()
{
    QTest::addColumn<int>("continent");
    QTest::addColumn<int>("country");
    QTest::addColumn<QString>("name");

    QTest::newRow("a country") << 1 << 1 << QStringLiteral("Japan");
    QTest::newRow("no country chosen") << 1 << 0 << QString();
    QTest::newRow("no continent chosen") << 0 << 1 << QString();
    QTest::newRow("beyond the list") << 1 << 2 << QString();
    QTest::newRow("beyond the continents") << 9 << 1 << QString();
    QTest::newRow("nothing selected") << -1 << -1 << QString();
}

void BundleUtilTest::countries()
{
    QFETCH(int, continent);
    QFETCH(int, country);
    QFETCH(QString, name);
    BundleUtil lists(m_folder.path());
    QCOMPARE(lists.getCountry(continent, country), name);
    QCOMPARE(lists.getCountries(0), QStringList());
    QCOMPARE(lists.getCountries(1).first(), QStringLiteral("Choose"));
    QCOMPARE(lists.indexOfCountry(1, QStringLiteral("japan")), BundleUtil::notFound);
    QCOMPARE(lists.getCallingCode(QStringLiteral("Japan")), QStringLiteral("81"));
    QVERIFY(lists.getCallingCode(QStringLiteral("Choose")).isNull());
}

void BundleUtilTest::questions()
{
    BundleUtil lists(m_folder.path());
    const QString question = lists.getQuestionOfSecondGroup(0);
    QCOMPARE(lists.indexOfSecurityQuestion(QStringLiteral("Group2"), question), 0);
    QCOMPARE(lists.indexOfSecurityQuestion(QStringLiteral("Group1"), question),
             BundleUtil::notFound);
    QCOMPARE(lists.getThirdGroupSecurityQuestions(), QStringList());
}

void BundleUtilTest::keptForLife()
{
    BundleUtil lists(m_folder.path());
    QCOMPARE(lists.getTitle(0), QStringLiteral("Ms"));
    QVERIFY(QFile::remove(m_folder.filePath(QStringLiteral("Title.plist"))));
    QCOMPARE(lists.indexOfTitle(QStringLiteral("Ms")), 0);
}

void BundleUtilTest::missingListsAreEmpty()
{
    BundleUtil lists(m_folder.path());
    QCOMPARE(lists.getIndustries(), QStringList());
    QCOMPARE(lists.indexOfStatus(QStringLiteral("Active")), BundleUtil::notFound);
    QVERIFY(lists.getTermsAndConditions().isNull());
    QVERIFY(lists.getCurrency(QStringLiteral("Japan")).isNull());
}

MAPLORN_TEST_MAIN(BundleUtilTest)
#include "BundleUtilTest.moc"
