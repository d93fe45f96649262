#include "PropertyList.h"
#include "TestMain.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

// Made with another program's writer.
const QByteArray binaryList = QByteArray::fromBase64(
    "YnBsaXN0MDDUAQIDBAUGDg9TYmlnVGxpc3RUbmFtZVR3aGVuEwAAAQAAAAAApQcICQoLEAET//////////sjQAQAAAAA"
    "AAAJ0QwNUWFCAP9nAFAAcgD8AGYAdQBuAGczQbyK2L8AAAAIERUaHyQtMzU+R0hLTVBfAAAAAAAAAQEAAAAAAAAAEAAA"
    "AAAAAAAAAAAAAAAAAGg=");

const QByteArray xmlList = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- a comment --><plist version="1.0"><dict>
  <key>big</key><integer>1099511627776</integer>
  <key>list</key><array><integer>1</integer><integer>-5</integer><real>2.5</real><true/>
    <dict><key>a</key><data>AP8=</data></dict></array>
  <key>name</key><string>Pr&#xFC;fung</string>
  <key>when</key><date>2016-03-05T09:05:03Z</date>
</dict></plist>)";

QVariantMap sample()
{
    const QDateTime when(QDate(2016, 3, 5), QTime(9, 5, 3), Qt::UTC);
    return {{u"big"_s, Q_INT64_C(1099511627776)},
            {u"list"_s,
             QVariantList{1LL, -5LL, 2.5, true, QVariantMap{{u"a"_s, QByteArray("\x00\xff", 2)}}}},
            {u"name"_s, u"Prüfung"_s},
            {u"when"_s, when}};
}

}

class PropertyListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsOthersFiles_data();
    void readsOthersFiles();
    void writtenAndReadBack_data();
    void writtenAndReadBack();
    void damaged_data();
    void damaged();
    void cutOffAnywhere();
    void mapOfAnotherKind();
    void failedWriteNamesTheFile();
    void localTimeIsKeptAsMoment();

private:
    void store(const QByteArray &bytes) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void PropertyListTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath(u"list.plist"_s);
}

void PropertyListTest::store(const QByteArray &bytes) const
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void PropertyListTest::readsOthersFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("binary") << binaryList;
    QTest::newRow("XML") << xmlList;
    QTest::newRow("XML with a byte order mark") << QByteArray("\xEF\xBB\xBF") + xmlList;
}

void PropertyListTest::readsOthersFiles()
{
    QFETCH(const QByteArray, bytes);
    store(bytes);
    QCOMPARE(PropertyList::readMap(m_path), sample());
}

void PropertyListTest::writtenAndReadBack_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("nested, of all types") << QVariant(sample());
    QTest::newRow("empty dictionary") << QVariant(QVariantMap());
    QTest::newRow("empty array") << QVariant(QVariantList());
    QTest::newRow("marks of XML") << QVariant(
        QVariantMap{{u"<&>\"'"_s, u"]]> &amp; <a>\n\tü€😀"_s}});
    QTest::newRow("empty texts") << QVariant(
        QVariantMap{{u"text"_s, QString(""_L1)}, {u"data"_s, ""_ba}});
    QTest::newRow("numbers at their limits")
        << QVariant(QVariantList{std::numeric_limits<qint64>::max(),
                                 std::numeric_limits<qint64>::min(), -1LL, 0LL, 0.1, -1e300});
    QTest::newRow("dates before 2001 and after 2038")
        << QVariant(QVariantList{QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59), Qt::UTC),
                                 QDateTime(QDate(2050, 1, 1), QTime(0, 0), Qt::UTC)});
}

void PropertyListTest::writtenAndReadBack()
{
    QFETCH(const QVariant, value);
    QVERIFY(PropertyList::write(m_path, QVariantList())); // what is there already is replaced
    const Result<> written = PropertyList::write(m_path, value);
    QVERIFY2(written, qPrintable(written.error()));
    const Result<QVariant> read = PropertyList::read(m_path);
    QVERIFY2(read, qPrintable(read.error()));
    QCOMPARE(read.value(), value);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
}

void PropertyListTest::damaged_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no file") << QByteArray();
    QTest::newRow("empty file") << ""_ba;
    QTest::newRow("no list at all") << "Host = localhost\n"_ba;
    QTest::newRow("unclosed") << "<plist><dict><key>a</key><string>b</string>"_ba;
    QTest::newRow("unknown element") << "<plist><dict><key>a</key><b/></dict></plist>"_ba;
    QTest::newRow("only the mark of the binary form") << "bplist00"_ba;
}

void PropertyListTest::damaged()
{
    QFETCH(const QByteArray, bytes);
    if (!bytes.isNull())
        store(bytes);
    const Result<QVariant> read = PropertyList::read(m_path);
    QVERIFY(!read);
    QVERIFY(read.error().contains(m_path));
    QVERIFY(PropertyList::readMap(m_path).isEmpty());
}

void PropertyListTest::cutOffAnywhere()
{
    for (const QByteArray &whole : {binaryList, xmlList.left(xmlList.indexOf("</dict></plist>"))}) {
        for (qsizetype length = 0; length < whole.size(); ++length) {
            store(whole.left(length));
            QVERIFY2(!PropertyList::read(m_path), qPrintable(QString::number(length)));
        }
    }
}

void PropertyListTest::mapOfAnotherKind()
{
    QVERIFY(PropertyList::write(m_path, QVariantList{1, 2}));
    QVERIFY(PropertyList::readMap(m_path).isEmpty());
}

void PropertyListTest::failedWriteNamesTheFile()
{
    const QString path = m_folder->filePath(u"none/list.plist"_s);
    const Result<> written = PropertyList::write(path, sample());
    QVERIFY(!written);
    QVERIFY(written.error().contains(path));
}

void PropertyListTest::localTimeIsKeptAsMoment()
{
    const QDateTime time(QDate(2016, 3, 5), QTime(9, 5, 3), Qt::OffsetFromUTC, 3600);
    QVERIFY(PropertyList::write(m_path, QVariantList{time}));
    const QVariantList read = PropertyList::read(m_path).value().toList();
    QCOMPARE(read.first().toDateTime(), QDateTime(QDate(2016, 3, 5), QTime(8, 5, 3), Qt::UTC));
}

MAPLORN_TEST_MAIN(PropertyListTest)
#include "PropertyListTest.moc"
