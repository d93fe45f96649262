#include "FormatTools.h"
#include "Machine.h"
#include "Passwords.h"
#include "TestMain.h"

#include <QImage>
#include <QRegularExpression>

class HelpersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void strength_data();
    void strength();
    void randomCodes();
    void bookmarkFindsWhatWasRenamed();
    void imagesAreWholeOrNotThere();
    void texts();
};

void HelpersTest::strength_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<uint>("strength");

    QTest::newRow("empty") << "" << 0U;
    QTest::newRow("abc") << "abc" << 4U;
    QTest::newRow("all classes") << "Abcdef1!" << 10U;
    QTest::newRow("long, one class") << "abcdefghijkl" << 7U;
    QTest::newRow("outside all classes") << QStringLiteral("中文;|") << 4U;
    QTest::newRow("every symbol counts once") << ")(*&^%$#@!~[]{}-_=+<>?" << 7U;
}

void HelpersTest::strength()
{
    QFETCH(const QString, password);
    QTEST(MiscTool::passwordStrength(password), "strength");
}

void HelpersTest::randomCodes()
{
    bool isBlankSeen = false;
    for (int i = 0; i < 300; ++i) {
        const QString code = MiscTool::getSimplePassword();
        QCOMPARE(code.size(), 6);
        QCOMPARE(QSet<QChar>(code.begin(), code.end()).size(), 6);
        const QString password = MiscTool::getAdvancedRandomPassword();
        QCOMPARE(password.contains(u'n'), password.contains(QStringLiteral(" n")));
        QCOMPARE(password.size(), password.contains(u'n') ? 9 : 8);
        isBlankSeen |= password.contains(u' ');
    }
    QVERIFY(isBlankSeen);
}

void HelpersTest::bookmarkFindsWhatWasRenamed()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    const QString renamed = folder.filePath(QStringLiteral("b"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray bookmark = MiscTool::bookmarkForURL(QUrl::fromLocalFile(path));
    QCOMPARE(MiscTool::urlForBookmark(bookmark).toLocalFile(), path);
    QVERIFY(QFile::rename(path, renamed));
    QCOMPARE(MiscTool::urlForBookmark(bookmark).toLocalFile(), renamed);
    QVERIFY(QFile::remove(renamed));
    QVERIFY(MiscTool::urlForBookmark(bookmark).isEmpty());
    QVERIFY(MiscTool::urlForBookmark("garbage").isEmpty());
    QVERIFY(MiscTool::bookmarkForURL(QUrl::fromLocalFile(path)).isNull());
}

void HelpersTest::imagesAreWholeOrNotThere()
{
    const QTemporaryDir folder;
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = folder.filePath(QStringLiteral("a.PNG"));
    QVERIFY(MiscTool::saveImage(path, image));
    QCOMPARE(QImage(path).pixelColor(3, 3), QColor(Qt::red));
    QVERIFY(!MiscTool::saveImage(path, QImage()));
    QVERIFY2(!QImage(path).isNull(), "a failure leaves what was there");
    QVERIFY(!MiscTool::saveImage(folder.filePath(QStringLiteral("no/a.png")), image));
    QVERIFY(MiscTool::isImage(path) && !MiscTool::isImage(QStringLiteral("a.tiff")));
}

void HelpersTest::texts()
{
    QTest::ignoreMessage(QtInfoMsg, "[Page]->(load):no rows");
    MiscTool::printMsg(QStringLiteral("Page"), QStringLiteral("load"), QStringLiteral("no rows"));
    const QString identifier = MiscTool::getIdentifier(QStringLiteral("a"));
    QVERIFY(QRegularExpression(QStringLiteral("\\Aa\\d{14}\\z")).match(identifier).hasMatch());
    QVERIFY(
        MiscTool::getFormattedAmount(12.5, QStringLiteral("kr")).contains(QStringLiteral("kr")));
    QCOMPARE(MiscTool::convertBytes(2'500'000'000), QStringLiteral("2.50 GB"));
    QVERIFY(MiscTool::getDiskTotalSize() >= MiscTool::getDiskAvailableSize());
}

MAPLORN_TEST_MAIN(HelpersTest)
#include "HelpersTest.moc"
