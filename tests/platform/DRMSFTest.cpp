#include "DRMSF.h"
#include "TestMain.h"

#include <QVariant>

using namespace Qt::StringLiterals;

class DRMSFTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void convertsBeforeAnyWasMadeOfBlocks();
    void text_data();
    void text();
};

void DRMSFTest::convertsBeforeAnyWasMadeOfBlocks()
{
    QCOMPARE(QVariant::fromValue(DRMSF()).toString(), u"00:00:00"_s);
}

void DRMSFTest::text_data()
{
    QTest::addColumn<qint64>("blocks");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << qint64(0) << u"00:00:00"_s;
    QTest::newRow("last frame of a second") << qint64(74) << u"00:00:74"_s;
    QTest::newRow("a second") << qint64(75) << u"00:01:00"_s;
    QTest::newRow("a minute") << qint64(4500) << u"01:00:00"_s;
    QTest::newRow("a whole disc") << qint64(359849) << u"79:57:74"_s;
    QTest::newRow("more than 99 minutes") << qint64(12219392) << u"2715:25:17"_s;
    QTest::newRow("more than 32 bits") << qint64(4500) * 1000000 << u"1000000:00:00"_s;
    QTest::newRow("before the start") << qint64(-151) << u"-00:02:01"_s;
}

void DRMSFTest::text()
{
    QFETCH(const qint64, blocks);
    const DRMSF length(blocks);
    QTEST(length.description(), "text");
    const QVariant value = QVariant::fromValue(length);
    QTEST(value.toString(), "text");
    QCOMPARE(value.toLongLong(), blocks);
}

MAPLORN_TEST_MAIN(DRMSFTest)
#include "DRMSFTest.moc"
