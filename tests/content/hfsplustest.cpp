#include "TestMain.h"

#include "HfsVolume.h"
#include "ImageFixture.h"
#include "IsoImage.h"
#include "LibraryStream.h"
#include "OddTrees.h"
#include "TreeTools.h"

#include <QFile>

#include <ctime>
#include <filesystem>

using namespace Qt::StringLiterals;
using namespace TreeTools;

// Stands before the C library's for all that is linked here: two images of the same files, made one
// after the other, bear the same time.
extern "C" time_t time(time_t *result) noexcept
{
    constexpr time_t now = 1'700'000'000;
    if (result)
        *result = now;
    return now;
}

namespace {

// libisofs numbers folders and links in the order of their addresses in memory (RRIP, 4.1.1).
void clearFileNumbers(QByteArray &bytes)
{
    const QByteArray entry = QByteArrayLiteral("PX\x2c\x01");
    for (qsizetype at = 0; (at = bytes.indexOf(entry, at)) >= 0; ++at)
        bytes.replace(at + 36, 8, QByteArray(8, '\0'));
}

}

class HfsPlusTest : public ImageFixture
{
    Q_OBJECT

    [[nodiscard]] QString makeImage(const QString &volumeName = u"TEST"_s) const;
    void verifyCatalogIsInOrder() const;
    [[nodiscard]] HfsVolume volume() const { return HfsVolume(readFile(cutHfsVolume(image()))); }

private Q_SLOTS:
    void contentsAreThere_data() { addOddTrees(); }
    void contentsAreThere();
    void plainNamesAreThere();
    void names_data();
    void names();
    void volumeNames_data();
    void volumeNames();
    void bookkeeping_data();
    void bookkeeping();
    void isWhatTheLibraryStreams_data() { addOddTrees(); }
    void isWhatTheLibraryStreams();
};

QString HfsPlusTest::makeImage(const QString &volumeName) const
{
    const Result<TrackContent> content = IsoImage::fromPath(source(), volumeName, IsoKind::Hybrid);
    return content ? write(content.value(), image()) : content.error();
}

void HfsPlusTest::contentsAreThere()
{
    QFETCH(MakeTree, make);
    make(source());
    QVERIFY(!QTest::currentTestFailed());
    QCOMPARE(makeImage(), QString());
    // 7-Zip leaves out links that lead out of the folder, and says so.
    std::ignore = run({"7zz", "x", "-bd", "-snld", "-o" + extracted(), cutHfsVolume(image())});
    QCOMPARE(contents(listing(extracted()), false), contents(listing(source()), false));
    verifyCatalogIsInOrder();
}

// Links, empty files and folders, times of 255-byte names: whatever keeps its name.
void HfsPlusTest::plainNamesAreThere()
{
    makeFile(source() + "/deep/er/and/deep/er/file", noise(5000));
    makeFile(source() + "/deep/empty", {});
    makeFolder(source() + "/nothing/here");
    makeFile(source() + "/" + QByteArray(255, 'n'), "1");
    makeLink("deep/empty", source() + "/to a file");
    makeLink("deep", source() + "/to a folder");
    QCOMPARE(makeImage(), QString());
    const QByteArray said =
        run({"7zz", "x", "-bd", "-snld", "-o" + extracted(), cutHfsVolume(image())});
    QVERIFY2(!said.startsWith("failed"), said.constData());
    QCOMPARE(listing(extracted() + "/TEST"), listing(source()));
}

// A system looks its files up in the catalog's tree, so that a name out of order is lost to it,
// while 7-Zip reads one after the other.
void HfsPlusTest::verifyCatalogIsInOrder() const
{
    const HfsVolume hfs = volume();
    const QList<HfsVolume::Entry> entries = hfs.entries();
    QCOMPARE(qint64(entries.size()), qint64(hfs.fileCount()) + hfs.folderCount() + 1);
    for (qsizetype i = 1; i < entries.size(); ++i) {
        const HfsVolume::Entry &before = entries.at(i - 1);
        const HfsVolume::Entry &here = entries.at(i);
        const bool inOrder = before.parent < here.parent
                             || (before.parent == here.parent
                                 && before.name.toLower().compare(here.name.toLower()) < 0);
        QVERIFY2(inOrder, qPrintable(before.name + u" before "_s + here.name));
    }
}

void HfsPlusTest::names_data()
{
    QTest::addColumn<QByteArrayList>("names");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("composed") << QByteArrayList{"caf\xc3\xa9"} << QStringList{u"cafe\u0301"_s};
    QTest::newRow("not composed") << QByteArrayList{"cafe\xcc\x81"} << QStringList{u"cafe\u0301"_s};
    QTest::newRow("both") << QByteArrayList{"caf\xc3\xa9", "cafe\xcc\x81"}
                          << QStringList{u"cafe\u0301"_s, u"cafe\u0301_"_s};
    QTest::newRow("case") << QByteArrayList{"FOO", "Foo", "foo"}
                          << QStringList{u"FOO"_s, u"Foo_"_s, u"foo_0"_s};
    QTest::newRow("Korean") << QByteArrayList{"\xea\xb0\x81"}
                            << QStringList{u"\u1100\u1161\u11a8"_s};
    QTest::newRow("beyond the first plane")
        << QByteArrayList{"\xf0\x9f\x98\x80"} << QStringList{u"\U0001f600"_s};
    QTest::newRow("colon") << QByteArrayList{"a:b"} << QStringList{u"a/b"_s};
    QTest::newRow("what others forbid")
        << QByteArrayList{"*", "?", "\"", "\\", "<", ">", "|"}
        << QStringList{u"\""_s, u"*"_s, u"<"_s, u">"_s, u"?"_s, u"\\"_s, u"|"_s};
    const QString composed(127, u'\u01d5'); // three units each, decomposed
    const QString decomposed = u"U\u0308\u0304"_s;
    QTest::newRow("too long when decomposed")
        << QByteArrayList{composed.toUtf8()} << QStringList{decomposed.repeated(85)};
    QTest::newRow("too long, and alike")
        << QByteArrayList{composed.toUtf8(), composed.toLower().toUtf8()}
        << QStringList{decomposed.repeated(85), decomposed.toLower().repeated(84) + u'_'};
    QTest::newRow("255 units, case")
        << QByteArrayList{QByteArray(255, 'N'), QByteArray(255, 'n'), QByteArray(254, 'n') + 'N'}
        << QStringList{QString(255, u'N'), QString(253, u'n') + u"_0"_s, QString(254, u'n') + u'_'};
    QTest::newRow("255 bytes") << QByteArrayList{QByteArray(255, 'n')}
                               << QStringList{QString(255, u'n')};
}

void HfsPlusTest::names()
{
    QFETCH(QByteArrayList, names);
    QFETCH(QStringList, expected);
    for (const QByteArray &name : std::as_const(names))
        makeFile(source() + "/" + name, name);
    QCOMPARE(makeImage(), QString());
    QStringList found;
    for (const HfsVolume::Entry &entry : volume().entries().sliced(1))
        found.append(entry.name);
    found.sort();
    QCOMPARE(found, expected);
}

void HfsPlusTest::volumeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const QString accent = u"e\u0301"_s;
    QTest::newRow("short") << u"Photos"_s << u"Photos"_s;
    QTest::newRow("longer than the other fields") << QString(200, u'n') << QString(200, u'n');
    QTest::newRow("composed") << u"caf\u00e9"_s << u"cafe\u0301"_s;
    QTest::newRow("colon") << u"12:30"_s << u"12/30"_s;
    QTest::newRow("full") << QString(255, u'n') << QString(255, u'n');
    QTest::newRow("too long") << QString(256, u'n') << QString(255, u'n');
    QTest::newRow("far too long") << QString(100'000, u'n') << QString(255, u'n');
    QTest::newRow("too long when decomposed") << QString(200, u'\u00e9') << accent.repeated(127);
    QTest::newRow("a character of two units, where the field ends")
        << QString(QString(254, u'n') + u"\U0001f600"_s) << QString(254, u'n');
}

void HfsPlusTest::volumeNames()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(makeImage(name), QString());
    QCOMPARE(volume().volumeName(), expected);
}

void HfsPlusTest::bookkeeping_data()
{
    QTest::addColumn<int>("size");
    for (int i = 0; i < 8; ++i)
        QTest::addRow("%d blocks more than a whole byte of the bitmap", i) << i * 2048 + 1;
    // 16,384 blocks have a bit each in a block of the bitmap.
    for (int i = -16; i < 16; ++i)
        QTest::addRow("around a block of the bitmap, %d", i) << (16'384 + i) * 2048;
}

// libisofs itself leaves the bits of the last blocks out where their count is a multiple of 8.
void HfsPlusTest::bookkeeping()
{
    QFETCH(int, size);
    makeFile(source() + "/file", {});
    std::filesystem::resize_file(QByteArray(source() + "/file").toStdString(),
                                 static_cast<std::uintmax_t>(size));
    QCOMPARE(makeImage(), QString());
    const HfsVolume hfs = volume();
    QCOMPARE(hfs.header().first(2), "H+"_ba);
    QCOMPARE(hfs.secondHeader(), hfs.header());
    const QByteArray bitmap = hfs.bitmap();
    for (qint64 i = 0; i < bitmap.size() * 8; ++i) {
        const bool used = (static_cast<quint8>(bitmap.at(i / 8)) & (0x80 >> (i % 8))) != 0;
        QVERIFY2(used == (i < hfs.blockCount()), QByteArray::number(i).constData());
    }
    const HfsVolume::Entry file = hfs.entries().at(1);
    QVERIFY(file.start + file.size <= hfs.bitmapStart());
    QCOMPARE(file.size, qint64(size));
}

void HfsPlusTest::isWhatTheLibraryStreams()
{
    QFETCH(MakeTree, make);
    make(source());
    // Once more where the first reading has set the times of the folders' last access.
    for (int attempt = 0;; ++attempt) {
        const Result<TrackContent> content =
            IsoImage::fromPath(source(), u"TEST"_s, IsoKind::Hybrid);
        QVERIFY2(content, qPrintable(content.error()));
        QByteArray wanted = LibraryStream::hybrid(source());
        QCOMPARE(write(content.value(), image()), QString());
        QByteArray found = readFile(image());
        QCOMPARE(found.size(), wanted.size());
        const HfsVolume hfs = volume();
        const qint64 start = found.indexOf(hfs.header()) - 1024;
        for (QByteArray *bytes : {&found, &wanted}) {
            // The library's bitmap lacks bits, and its files have no contents here.
            const auto clear = [bytes, start](qint64 from, qint64 length) {
                bytes->replace(start + from, length, QByteArray(length, '\0'));
            };
            clear(hfs.bitmapStart(), hfs.bitmap().size());
            for (const HfsVolume::Entry &entry : hfs.entries())
                clear(entry.start, entry.size);
            clearFileNumbers(*bytes);
        }
        if (found == wanted)
            return;
        const qint64 at =
            std::mismatch(found.cbegin(), found.cend(), wanted.cbegin()).first - found.cbegin();
        QVERIFY2(attempt < 3, QByteArray::number(at).constData());
    }
}

MAPLORN_TEST_MAIN(HfsPlusTest)

#include "hfsplustest.moc"
