#include "TestMain.h"

#include "SourceFile.h"
#include "TrackContent.h"
#include "TreeTools.h"

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <functional>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace TreeTools;

namespace {

// An extent for a piece of a file as it is now.
Extent pieceOf(const QByteArray &path, qint64 start, qint64 offset, qint64 length)
{
    struct stat status = {};
    if (::stat(path.constData(), &status) != 0)
        qFatal("%s is not there", path.constData());
    return {start, length, {}, path, offset, status.st_size, changeTime(status)};
}

constexpr qint64 block = TrackContent::blockSize;

using Spoil = std::function<void(const QByteArray &path)>;

}

class ContentTest : public QObject
{
    Q_OBJECT

    [[nodiscard]] QByteArray path(const char *name) const
    {
        return QFile::encodeName(m_folder->filePath(QString::fromLatin1(name)));
    }
    [[nodiscard]] QByteArray output() const { return path("output"); }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void pieces_data();
    void pieces();
    void imageFile_data();
    void imageFile();
    void notAnImageFile_data();
    void notAnImageFile();
    void holesStayHoles();
    void spoiledSource_data();
    void spoiledSource();
    void sourceChangesWhileRead_data();
    void sourceChangesWhileRead();
    void difference_data();
    void difference();
    void cancel_data();
    void cancel();
    void fullDisk();
    void notWritable();
};

void ContentTest::pieces_data()
{
    // Lengths and positions around the limits of the pieces in which a pass goes on.
    constexpr qint64 chunk = 262'144;
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("length");
    QTest::newRow("empty") << qint64(2048) << qint64(0) << qint64(0);
    QTest::newRow("one byte") << qint64(2048) << qint64(0) << qint64(1);
    QTest::newRow("small, odd offset") << qint64(4096) << qint64(777) << qint64(5000);
    QTest::newRow("largest small") << qint64(2048) << qint64(0) << qint64(65'536);
    QTest::newRow("smallest large") << qint64(2048) << qint64(0) << qint64(65'537);
    QTest::newRow("a chunk") << chunk << qint64(0) << chunk;
    QTest::newRow("a chunk less a byte") << chunk << qint64(0) << chunk - 1;
    QTest::newRow("pages match") << qint64(8192) << qint64(4096) << 3 * chunk + 5;
    QTest::newRow("pages do not match") << qint64(8192) << qint64(4095) << 3 * chunk + 5;
    QTest::newRow("behind a long gap") << 5 * chunk + 2048 << qint64(0) << chunk + 1;
}

void ContentTest::pieces()
{
    QFETCH(qint64, start);
    QFETCH(qint64, offset);
    QFETCH(qint64, length);
    const QByteArray source = noise(2'000'000);
    makeFile(path("source"), source);
    makeFile(path("small"), "small");
    const QByteArray head = noise(1500);
    const qint64 second = start + length + 100;
    const qint64 blocks = (second + 600'000) / 2048 + 1;
    // Bytes, the piece, a small file and bytes again, none of them at a block's limit.
    const TrackContent content(
        {{0, head.size(), head, {}, 0, 0, 0},
         pieceOf(path("source"), start, offset, length),
         pieceOf(path("small"), second, 0, 5),
         {second + 5, source.size() / 4, source.first(source.size() / 4), {}, 0, 0, 0}},
        blocks);
    QByteArray expected(blocks * 2048, '\0');
    expected.replace(0, head.size(), head);
    expected.replace(start, length, source.mid(offset, length));
    expected.replace(second, 5, "small");
    expected.replace(second + 5, source.size() / 4, source.first(source.size() / 4));
    QCOMPARE(content.byteCount(), expected.size());
    QCOMPARE(write(content, output()), QString());
    QVERIFY(readFile(path("output")) == expected);
    QCOMPARE(compare(content, output()), QString());
}

void ContentTest::imageFile_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<qint64>("blocks");
    QTest::newRow("one byte") << qint64(1) << qint64(1);
    QTest::newRow("whole blocks") << qint64(4096) << qint64(2);
    QTest::newRow("last block not full") << qint64(1'000'001) << qint64(489);
}

void ContentTest::imageFile()
{
    QFETCH(qint64, length);
    QFETCH(qint64, blocks);
    const QByteArray bytes = noise(length);
    makeFile(path("disc.iso"), bytes);
    makeLink("disc.iso", path("link"));
    for (const char *name : {"disc.iso", "link"}) {
        const Result<TrackContent> content =
            TrackContent::fromImageFile(QFile::decodeName(path(name)));
        QVERIFY2(content, qPrintable(content.error()));
        QCOMPARE(content.value().blockCount(), blocks);
        QCOMPARE(write(content.value(), output()), QString());
        QVERIFY(readFile(path("output")) == bytes + QByteArray(blocks * 2048 - length, '\0'));
        QCOMPARE(compare(content.value(), output()), QString());
    }
}

void ContentTest::notAnImageFile_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"missing", "empty", "folder", "pipe", "unreadable"})
        QTest::newRow(name) << QByteArray(name);
}

void ContentTest::notAnImageFile()
{
    QFETCH(QByteArray, name);
    makeFile(path("empty"), {});
    makeFile(path("folder/file"), "x");
    makeFile(path("unreadable"), "x");
    setMode(path("unreadable"), 0);
    makePipe(path("pipe"));
    if (name == "unreadable" && ::geteuid() == 0)
        QSKIP("the superuser reads everything");
    const Result<TrackContent> content =
        TrackContent::fromImageFile(QFile::decodeName(path(name.constData())));
    QVERIFY(!content);
    QVERIFY2(content.error().contains(QString::fromLatin1(name)), qPrintable(content.error()));
}

void ContentTest::holesStayHoles()
{
    constexpr qint64 size = 300'001'234;
    makeFile(path("sparse"), "at the front");
    QFile file(QFile::decodeName(path("sparse")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(size));
    QVERIFY(file.seek(size / 2));
    QCOMPARE(file.write("inside"), qint64(6));
    file.close();
    struct stat source = {};
    QCOMPARE(::stat(path("sparse").constData(), &source), 0);
    if (source.st_blocks * 512 > size / 2)
        QSKIP("the file system has no holes");

    const Result<TrackContent> content =
        TrackContent::fromImageFile(QFile::decodeName(path("sparse")));
    QVERIFY2(content, qPrintable(content.error()));
    QCOMPARE(write(content.value(), output()), QString());
    QCOMPARE(compare(content.value(), output()), QString());
    struct stat written = {};
    QCOMPARE(::stat(path("output").constData(), &written), 0);
    QVERIFY(written.st_blocks * 512 < 10'000'000);
    QFile result(QFile::decodeName(output()));
    QVERIFY(result.open(QIODevice::ReadOnly));
    QVERIFY(result.seek(size / 2));
    QCOMPARE(result.read(7), QByteArray("inside\0", 7));
}

void ContentTest::spoiledSource_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<Spoil>("spoil");
    const std::pair<const char *, Spoil> ways[] = {
        {"shrinks", [](const QByteArray &path) { QCOMPARE(::truncate(path.constData(), 100), 0); }},
        {"grows",
         [](const QByteArray &path) { QCOMPARE(::truncate(path.constData(), 9'000'000), 0); }},
        {"vanishes", [](const QByteArray &path) { QCOMPARE(::unlink(path.constData()), 0); }},
        {"becomes a pipe",
         [](const QByteArray &path) {
             QCOMPARE(::unlink(path.constData()), 0);
             makePipe(path);
         }},
        {"becomes a folder",
         [](const QByteArray &path) {
             QCOMPARE(::unlink(path.constData()), 0);
             makeFolder(path);
         }},
        {"becomes a link to its like",
         [](const QByteArray &path) {
             makeHardLink(path, path + "2");
             QCOMPARE(::unlink(path.constData()), 0);
             makeLink(path + "2", path);
         }},
        {"is written to, same size",
         [](const QByteArray &path) {
             const timespec times[2] = {{1'000'000, 0}, {1'000'000, 0}};
             QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
         }},
    };
    for (const auto &[name, spoil] : ways) {
        QTest::addRow("%s, small", name) << qint64(5000) << spoil;
        QTest::addRow("%s, large", name) << qint64(1'000'000) << spoil;
    }
}

void ContentTest::spoiledSource()
{
    QFETCH(qint64, length);
    QFETCH(Spoil, spoil);
    makeFile(path("before"), "x");
    makeFile(path("holiday.jpg"), noise(length));
    const TrackContent content(
        {pieceOf(path("before"), 0, 0, 1), pieceOf(path("holiday.jpg"), 2048, 0, length)}, 1000);
    QCOMPARE(write(content, output()), QString());
    spoil(path("holiday.jpg"));
    for (const QString &reason : {write(content, output()), compare(content, output())})
        QVERIFY2(reason.contains(u"holiday.jpg"_s), qPrintable(reason));
}

void ContentTest::sourceChangesWhileRead_data()
{
    QTest::addColumn<bool>("comparing");
    QTest::newRow("writing") << false;
    QTest::newRow("comparing") << true;
}

void ContentTest::sourceChangesWhileRead()
{
    QFETCH(bool, comparing);
    makeFile(path("log.txt"), noise(1'000'000));
    const TrackContent content({pieceOf(path("log.txt"), 0, 0, 1'000'000)}, 489);
    QCOMPARE(write(content, output()), QString());
    QFile file(QFile::decodeName(output()));
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray source = path("log.txt");
    const Advance touch = [&source](qint64) -> Result<> {
        // The same second, as a program does that goes on writing, and another nanosecond.
        struct stat status = {};
        ::stat(source.constData(), &status);
        const timespec times[2] = {status.st_atim, {status.st_mtim.tv_sec, 123}};
        ::utimensat(AT_FDCWD, source.constData(), times, 0);
        return Done{};
    };
    const Result<> done = comparing ? content.compareWith(file.handle(), touch)
                                    : content.writeTo(file.handle(), touch);
    QVERIFY2(done.error().contains(u"log.txt"_s), qPrintable(done.error()));
}

void ContentTest::difference_data()
{
    QTest::addColumn<qint64>("position");
    QTest::newRow("first byte of the track") << qint64(0);
    QTest::newRow("in a small file") << 2 * block + 10;
    QTest::newRow("in the short gap behind it") << 4 * block - 1;
    QTest::newRow("in a large file") << 10 * block + 300'000;
    QTest::newRow("in a long gap") << 600 * block;
    QTest::newRow("last byte of the track") << 1000 * block - 1;
    QTest::newRow("the disc is cut off") << qint64(-1);
}

void ContentTest::difference()
{
    QFETCH(qint64, position);
    makeFile(path("small"), noise(3000));
    makeFile(path("large"), noise(500'000));
    const TrackContent content({{0, 5, "bytes", {}, 0, 0, 0},
                                pieceOf(path("small"), 2 * block, 0, 3000),
                                pieceOf(path("large"), 10 * block, 0, 500'000)},
                               1000);
    QCOMPARE(write(content, output()), QString());
    QCOMPARE(compare(content, output()), QString());
    QFile file(QFile::decodeName(output()));
    QVERIFY(file.open(QIODevice::ReadWrite));
    if (position < 0) {
        position = 700 * block + 5;
        QVERIFY(file.resize(position));
    } else {
        QVERIFY(file.seek(position));
        const QByteArray flipped(1, static_cast<char>(file.peek(1).front() ^ 0x10));
        QCOMPARE(file.write(flipped), qint64(1));
    }
    file.close();
    const QString reason = compare(content, output());
    QVERIFY2(reason.contains(u"Block %1 "_s.arg(position / block)), qPrintable(reason));
}

void ContentTest::cancel_data()
{
    QTest::addColumn<int>("calls");
    QTest::newRow("at the first advance") << 1;
    QTest::newRow("in the large file") << 3;
    QTest::newRow("in the gap") << 6;
}

void ContentTest::cancel()
{
    QFETCH(int, calls);
    makeFile(path("large"), noise(1'048'576));
    const TrackContent content({pieceOf(path("large"), 0, 0, 1'048'576)}, 1024);
    QCOMPARE(write(content, output()), QString());
    QFile file(QFile::decodeName(output()));
    QVERIFY(file.open(QIODevice::ReadWrite));
    for (const auto function : {&TrackContent::compareWith, &TrackContent::writeTo}) {
        int called = 0;
        const Result<> done = (content.*function)(file.handle(), [&](qint64) -> Result<> {
            if (++called == calls)
                return Failure{u"enough"_s};
            return Done{};
        });
        QCOMPARE(done.error(), u"enough"_s);
        QCOMPARE(called, calls);
    }
}

void ContentTest::fullDisk()
{
    const QByteArray disk = path("disk");
    makeFolder(disk);
    if (::mount("none", disk.constData(), "tmpfs", 0, "size=1m") != 0)
        QSKIP("only the superuser makes a small file system");
    makeFile(path("large"), noise(3'000'000));
    makeFile(path("small"), noise(50'000));
    const QByteArray file = disk + "/output";
    QList<Extent> many;
    for (qint64 i = 0; i < 60; ++i)
        many.append(pieceOf(path("small"), i * 51'200, 0, 50'000));
    QStringList reasons;
    reasons << write(TrackContent({pieceOf(path("large"), 0, 0, 3'000'000)}, 2000), file);
    reasons << write(TrackContent(many, 2000), file);
    QCOMPARE(::umount2(disk.constData(), MNT_DETACH), 0);
    for (const QString &reason : std::as_const(reasons))
        QCOMPARE(reason, u"No space left on device"_s);
}

void ContentTest::notWritable()
{
    makeFile(path("output"), "x");
    QFile file(QFile::decodeName(output()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const TrackContent content({{0, 5, "bytes", {}, 0, 0, 0}}, 1);
    QVERIFY(!content.writeTo(file.handle(), {}).error().isEmpty());
}

MAPLORN_TEST_MAIN(ContentTest)

#include "contenttest.moc"
