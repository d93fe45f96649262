#include "DRMSF.h"
#include "TestMain.h"

#include <QVariant>

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
    QCOMPARE(QVariant::fromValue(DRMSF()).toString(), QStringLiteral("00:00:00"));
}

void DRMSFTest::text_data()
{
    QTest::addColumn<qint64>("blocks");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << qint64(0) << "00:00:00";
    QTest::newRow("last frame of a second") << qint64(74) << "00:00:74";
    QTest::newRow("a second") << qint64(75) << "00:01:00";
    QTest::newRow("a minute") << qint64(4500) << "01:00:00";
    QTest::newRow("a whole disc") << qint64(359849) << "79:57:74";
    QTest::newRow("more than 99 minutes") << qint64(12219392) << "2715:25:17";
    QTest::newRow("more than 32 bits") << qint64(4500) * 1000000 << "1000000:00:00";
    QTest::newRow("before the start") << qint64(-151) << "-00:02:01";
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
