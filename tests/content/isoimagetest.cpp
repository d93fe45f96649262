#include "TestMain.h"

#include "ImageFixture.h"
#include "IsoImage.h"
#include "OddTrees.h"
#include "TreeTools.h"

#include <QFile>
#include <QtEndian>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace TreeTools;

namespace {

constexpr qint64 block = TrackContent::blockSize;

}

class IsoImageTest : public ImageFixture
{
    Q_OBJECT

    [[nodiscard]] Result<TrackContent> fromSource(std::stop_token stop = {}) const
    {
        return IsoImage::fromFolder(QFile::decodeName(source()), u"TEST"_s, std::move(stop));
    }
    void makeAllTrees() const
    {
        for (const OddTree &tree : oddTrees()) {
            const QByteArray folder = source() + "/" + tree.name;
            makeFolder(folder);
            tree.make(folder);
        }
    }

    // Makes the image of the source folder; the reason of a failure.
    [[nodiscard]] QString makeImage(const QString &volumeName = u"TEST"_s)
    {
        const Result<TrackContent> content =
            IsoImage::fromFolder(QFile::decodeName(source()), volumeName);
        return content ? write(content.value(), image()) : content.error();
    }
    [[nodiscard]] QByteArrayList extract() const
    {
        const QByteArray said = run({"xorriso", "-abort_on", "WARNING", "-osirrox", "on", "-indev",
                                     image(), "-extract", "/", extracted()});
        return said.startsWith("failed") ? QByteArrayList{said} : listing(extracted());
    }

private Q_SLOTS:
    void everythingIsThere_data() { addOddTrees(); }
    void everythingIsThere();
    void rockRidgeReadersSeeAllFiles();
    void jolietReadersSeeAllFiles();
    void everyoneMayRead();
    void folderPath_data();
    void folderPath();
    void notAFolder_data();
    void notAFolder();
    void unreadable_data();
    void unreadable();
    void volumeNames_data();
    void volumeNames();
    void fileOfTwoExtents();
    void linkedFilesShareTheirContent();
    void changedAfterTheScan();
    void stoppedWhileScanning();
    void severalThreads();
};

void IsoImageTest::everythingIsThere()
{
    QFETCH(MakeTree, make);
    make(source());
    QVERIFY(!QTest::currentTestFailed());
    const Result<TrackContent> content = fromSource();
    QVERIFY2(content, qPrintable(content.error()));
    QCOMPARE(write(content.value(), image()), QString());
    QCOMPARE(compare(content.value(), image()), QString());
    QCOMPARE(extract(), listing(source()));
}

// xorriso rests on the library that makes the image. CMake's archive reader, libarchive, shares
// nothing with it, and reads Rock Ridge names with their continuations.
void IsoImageTest::rockRidgeReadersSeeAllFiles()
{
    makeAllTrees();
    QCOMPARE(makeImage(), QString());
    makeFolder(extracted());
    const QByteArray said =
        run({"cmake", "-E", "chdir", extracted(), "cmake", "-E", "tar", "xf", image()});
    QVERIFY2(!said.startsWith("failed"), said.constData());
    // libarchive loses a slash where a link's target goes on in another record.
    const auto readable = [](QByteArrayList lines) {
        lines.removeIf([](const QByteArray &line) { return line.contains("/long target "); });
        return lines;
    };
    QCOMPARE(readable(listing(extracted())), readable(listing(source())));
}

// 7-Zip reads the Joliet tree, in which names are cut and replaced.
void IsoImageTest::jolietReadersSeeAllFiles()
{
    makeAllTrees();
    QCOMPARE(makeImage(), QString());
    const QByteArray said = run({"7zz", "x", "-bd", "-o" + extracted(), image()});
    QVERIFY2(!said.startsWith("failed"), said.constData());
    // The names differ, the contents may not.
    const QByteArrayList wanted = contents(listing(source()), true);
    QVERIFY(wanted.size() > 1500);
    QCOMPARE(contents(listing(extracted()), true), wanted);
}

// The owner's number means nobody on the machine that reads the disc.
void IsoImageTest::everyoneMayRead()
{
    makeFile(source() + "/folder/text", "1");
    makeFile(source() + "/folder/script", "2");
    setMode(source() + "/folder/text", 0600);
    setMode(source() + "/folder/script", 0700);
    setMode(source() + "/folder", 0700);
    QCOMPARE(makeImage(), QString());
    const QByteArray said =
        run({"xorriso", "-indev", image(), "-find", "/", "-exec", "lsdl", "--"});
    for (const char *line : {"drwxr-xr-x", "-rw-r--r--", "-rwxr-xr-x"})
        QVERIFY2(said.contains(line), said.constData());
    QVERIFY2(!said.contains("------"), said.constData());
}

void IsoImageTest::folderPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a slash at the end") << u"source/"_s;
    QTest::newRow("with dots") << u"./source/../source/."_s;
    QTest::newRow("through a link") << u"link"_s;
    QTest::newRow("through a link, with a slash") << u"link/"_s;
}

void IsoImageTest::folderPath()
{
    QFETCH(QString, path);
    makeFile(source() + "/file", "1");
    makeLink("source", QFile::encodeName(m_folder->filePath(u"link"_s)));
    const Result<TrackContent> content =
        IsoImage::fromFolder(m_folder->path() + u'/' + path, u"TEST"_s);
    QVERIFY2(content, qPrintable(content.error()));
    QCOMPARE(write(content.value(), image()), QString());
    QCOMPARE(extract(), listing(source()));
}

void IsoImageTest::notAFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << u"source/missing"_s;
    QTest::newRow("a file") << u"source/file"_s;
    QTest::newRow("a dangling link") << u"source/dangling"_s;
}

void IsoImageTest::notAFolder()
{
    QFETCH(QString, name);
    makeFile(source() + "/file", "1");
    makeLink("nowhere", source() + "/dangling");
    const Result<TrackContent> content = IsoImage::fromFolder(m_folder->filePath(name), u"TEST"_s);
    QVERIFY(!content);
    QVERIFY2(content.error().contains(name), qPrintable(content.error()));
}

void IsoImageTest::unreadable_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("a file") << "/folder/file"_ba;
    QTest::newRow("a folder") << "/folder"_ba;
    QTest::newRow("the folder itself") << ""_ba;
}

void IsoImageTest::unreadable()
{
    if (::geteuid() == 0)
        QSKIP("the superuser reads everything");
    QFETCH(QByteArray, name);
    makeFile(source() + "/folder/file", "1");
    makeFile(source() + "/other", "2");
    const QByteArray path = source() + name;
    setMode(path, 0);
    const QString reason = makeImage();
    setMode(path, 0700);
    QVERIFY2(reason.startsWith(QFile::decodeName(path)), qPrintable(reason));
}

void IsoImageTest::volumeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("primary");
    QTest::addColumn<QString>("joliet");
    QTest::newRow("short") << u"Photos"_s << "PHOTOS"_ba << u"Photos"_s;
    QTest::newRow("longer than both fields")
        << u"My holiday photos of the year 2024, second part"_s
        << "MY_HOLIDAY_PHOTOS_OF_THE_YEAR_20"_ba << u"My holiday photo"_s;
    QTest::newRow("accents") << u"Größe übel"_s << "GR__E__BEL"_ba << u"Größe übel"_s;
    QTest::newRow("an accent apart, where the field ends")
        << u"123456789012345e\u0301x"_s << "123456789012345_X"_ba << u"123456789012345\u00e9"_s;
    QTest::newRow("Chinese, longer than the field")
        << QString(20, u'\u4e2d') << QByteArray(20, '_') << QString(16, u'\u4e2d');
    QTest::newRow("a character of two units, where the field ends")
        << u"123456789012345\U0001f600x"_s << "123456789012345_X"_ba << u"123456789012345_"_s;
    QTest::newRow("none") << QString() << QByteArray() << QString();
}

void IsoImageTest::volumeNames()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, primary);
    QFETCH(QString, joliet);
    QCOMPARE(makeImage(name), QString());
    const QByteArray bytes = readFile(image());
    // The volume name is at byte 40 of a descriptor, and 32 bytes long.
    QCOMPARE(bytes.mid(16 * block, 6), "\1CD001"_ba);
    QCOMPARE(bytes.mid(16 * block + 40, 32).trimmed(), primary);
    QCOMPARE(bytes.mid(17 * block, 6), "\2CD001"_ba);
    QString found;
    for (int i = 0; i < 32; i += 2)
        found += QChar(qFromBigEndian<quint16>(bytes.constData() + 17 * block + 40 + i));
    QCOMPARE(found.trimmed(), joliet);
}

void IsoImageTest::fileOfTwoExtents()
{
    constexpr qint64 size = 4'294'967'296 + 10'000;
    constexpr std::array<qint64, 4> marks = {0, 4'294'965'248 - 3, 4'294'967'296 - 3, size - 6};
    const QByteArray path = source() + "/film.mkv";
    makeFile(path, {});
    makeFile(source() + "/after", "behind the film");
    QFile file(QFile::decodeName(path));
    QVERIFY(file.open(QIODevice::ReadWrite));
    for (const qint64 mark : marks) {
        QVERIFY(file.seek(mark));
        QCOMPARE(file.write("marked"), qint64(6));
    }
    file.close();
    struct stat status = {};
    QCOMPARE(::stat(path.constData(), &status), 0);
    if (status.st_blocks * 512 > size / 2)
        QSKIP("the file system has no holes");
    QCOMPARE(makeImage(), QString());

    // Every section: number, block, blocks, size of the file, path.
    const QByteArray said =
        run({"xorriso", "-indev", image(), "-find", "/film.mkv", "-exec", "report_lba", "--"});
    QList<std::pair<qint64, qint64>> sections;
    for (const QByteArray &line : said.split('\n')) {
        const QByteArrayList fields = line.mid(line.indexOf(':') + 1).split(',');
        if (line.startsWith("File data lba:"))
            sections.append(
                {fields.at(1).trimmed().toLongLong(), fields.at(2).trimmed().toLongLong()});
        if (line.startsWith("File data lba:"))
            QCOMPARE(fields.at(3).trimmed().toLongLong(), size);
    }
    QCOMPARE(sections.size(), 2);
    QFile result(QFile::decodeName(image()));
    QVERIFY(result.open(QIODevice::ReadOnly));
    for (qint64 mark : marks) {
        for (const auto &[first, blocks] : std::as_const(sections)) {
            if (mark < 0 || mark >= blocks * block) {
                mark -= blocks * block;
                continue;
            }
            QVERIFY(result.seek(first * block + mark));
            QCOMPARE(result.read(3), "mar"_ba);
            break;
        }
    }
}

void IsoImageTest::linkedFilesShareTheirContent()
{
    makeFile(source() + "/file", noise(1'000'000));
    for (int i = 0; i < 9; ++i)
        makeHardLink(source() + "/file", source() + "/" + QByteArray::number(i));
    const Result<TrackContent> content = fromSource();
    QVERIFY2(content, qPrintable(content.error()));
    QVERIFY(content.value().byteCount() < 2'000'000);
}

void IsoImageTest::changedAfterTheScan()
{
    makeFile(source() + "/folder/file", "1");
    const Result<TrackContent> content = fromSource();
    QVERIFY2(content, qPrintable(content.error()));
    makeFile(source() + "/folder/file", "longer");
    const QString reason = write(content.value(), image());
    QVERIFY2(reason.startsWith(QFile::decodeName(source() + "/folder/file")), qPrintable(reason));
}

// Scanned again and again until the stop comes, which then is sure to come during one of them.
void IsoImageTest::stoppedWhileScanning()
{
    for (int i = 0; i < 500; ++i)
        makeFile(source() + "/" + QByteArray::number(i), "1");
    std::stop_source stop;
    std::jthread stopper([&stop] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        stop.request_stop();
    });
    for (;;) {
        const Result<TrackContent> content = fromSource(stop.get_token());
        if (!content) {
            QVERIFY(stop.stop_requested());
            break;
        }
    }
    QCOMPARE(makeImage(), QString());
}

void IsoImageTest::severalThreads()
{
    for (int i = 0; i < 50; ++i)
        makeFile(source() + "/" + QByteArray::number(i), noise(1000));
    const QString folder = QFile::decodeName(source());
    std::array<QString, 4> reasons;
    {
        std::vector<std::jthread> threads;
        threads.reserve(reasons.size());
        for (QString &reason : reasons)
            threads.emplace_back([&reason, &folder] {
                for (int i = 0; i < 20 && reason.isEmpty(); ++i)
                    reason = IsoImage::fromFolder(folder, u"TEST"_s).error();
            });
    }
    for (const QString &reason : reasons)
        QCOMPARE(reason, QString());
    QCOMPARE(makeImage(), QString());
    QCOMPARE(extract(), listing(source()));
}

MAPLORN_TEST_MAIN(IsoImageTest)

#include "isoimagetest.moc"
