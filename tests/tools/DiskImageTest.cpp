#include "DiskImageRun.h"
#include "HfsVolume.h"
#include "OddTrees.h"
#include "TestMain.h"

#include <QFile>

#include <array>
#include <sys/stat.h>

using namespace TreeTools;

class DiskImageTest : public QObject
{
    Q_OBJECT

    [[nodiscard]] QByteArray path(const QByteArray &name) const { return m_run->path(name); }

    std::unique_ptr<DiskImageRun> m_run;

private Q_SLOTS:
    void init() { m_run = std::make_unique<DiskImageRun>(); }
    void cleanup() { m_run.reset(); }

    void argumentOrders_data();
    void argumentOrders();
    void wrongUsage_data();
    void wrongUsage();
    void refused_data();
    void refused();
    void helpAndVersion();
    void tellsWhatItMade();
    void imagesAreReadable_data();
    void imagesAreReadable();
    void volumeNames_data();
    void volumeNames();
    void namesOfPaths_data();
    void namesOfPaths();
    void outputThroughALink();
    void modeFollowsTheMask();
    void fileOfMoreThan4GiB();
};

void DiskImageTest::argumentOrders_data()
{
    QTest::addColumn<QByteArrayList>("words");
    QTest::addColumn<bool>("hfs");
    const auto row = [](const char *name, const QByteArrayList &words, bool hfs) {
        QTest::newRow(name) << words << hfs;
    };
    row("as the page for DMG files gives them",
        {"makehybrid", "-hfs", "-o", "%out", "-default-volume-name", "N", "-ov", "-quiet",
         "%source"},
        true);
    row("as the page for ISO files gives them",
        {"makehybrid", "-o", "%out", "-default-volume-name", "N", "-ov", "-quiet", "%source"},
        false);
    row("the folder first",
        {"makehybrid", "%source", "-quiet", "-ov", "-default-volume-name", "N", "-o", "%out"},
        false);
    row("the command last",
        {"-quiet", "-o", "%out", "%source", "-hfs", "-default-volume-name", "N", "makehybrid"},
        true);
    row("a flag twice", {"makehybrid", "-hfs", "-hfs", "-quiet", "-o", "%out", "%source"}, true);
    row("values that look like options",
        {"makehybrid", "-default-volume-name", "--help", "-quiet", "-o", "%out", "%source"}, false);
    row("an end of the options", {"makehybrid", "-quiet", "-o", "%out", "--", "-src"}, false);
    row("a folder that is named like the command",
        {"makehybrid", "-quiet", "-o", "%out", "makehybrid"}, false);
    row("a slash at the end", {"makehybrid", "-quiet", "-o", "%out", "%source/"}, false);
    row("a dot", {"makehybrid", "-quiet", "-o", "%out", "source/."}, false);
    row("a link to the folder", {"makehybrid", "-quiet", "-o", "%out", "link"}, false);
    row("a relative output", {"makehybrid", "-quiet", "-o", "out", "source"}, false);
    row("an output with dots", {"makehybrid", "-quiet", "-o", "source/../out", "source"}, false);
}

void DiskImageTest::argumentOrders()
{
    QFETCH(QByteArrayList, words);
    QFETCH(bool, hfs);
    for (const char *folder : {"source", "makehybrid", "-src"})
        makeFile(path(folder) + "/file", "content");
    makeLink("source", path("link"));
    const DiskImageRun::Outcome outcome = m_run->run(words);
    QCOMPARE(outcome.text(), QByteArray("status 0, output , errors "));
    QCOMPARE(readFile(path("out")).mid(16 * 2048, 6), QByteArray("\1CD001"));
    QCOMPARE(!cutHfsVolume(path("out")).isEmpty(), hfs);
}

void DiskImageTest::wrongUsage_data()
{
    QTest::addColumn<QByteArrayList>("words");
    QTest::addColumn<QByteArray>("named");
    const auto row = [](const char *name, const QByteArrayList &words, const char *named) {
        QTest::newRow(name) << words << QByteArray(named);
    };
    row("nothing", {}, "command is missing");
    row("another command", {"convert", "-o", "%out", "%source"}, "makehybrid");
    row("no folder", {"makehybrid", "-o", "%out"}, "folder is missing");
    row("no output", {"makehybrid", "%source"}, "-o");
    row("an empty output", {"makehybrid", "-o", "", "%source"}, "-o");
    row("no value", {"makehybrid", "%source", "-o"}, "-o needs");
    row("no name", {"makehybrid", "%source", "-o", "%out", "-default-volume-name"}, "-default");
    row("two outputs", {"makehybrid", "-o", "%out", "-o", "%out2", "%source"}, "-o is given twice");
    row("two folders", {"makehybrid", "-o", "%out", "%source", "second"}, "\"second\"");
    row("unknown option", {"makehybrid", "-o", "%out", "-udf", "%source"}, "-udf");
    row("quiet is no help", {"makehybrid", "-quiet", "-udf"}, "-udf");
}

void DiskImageTest::wrongUsage()
{
    QFETCH(QByteArrayList, words);
    QFETCH(QByteArray, named);
    const DiskImageRun::Outcome outcome = m_run->run(words);
    QVERIFY2(outcome.failedWith(named), outcome.text().constData());
    QCOMPARE(m_run->names({}), QByteArrayList{"source"});
}

void DiskImageTest::refused_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<bool>("overwrite");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char *name, const char *source, const char *output, bool overwrite,
                        const char *reason) {
        QTest::newRow(name) << QByteArray(source) << QByteArray(output) << overwrite
                            << QByteArray(reason);
    };
    row("an image is there", "source", "old.iso", false, "old.iso: File exists");
    row("a link to an image is there", "source", "to old", false, "old.iso: File exists");
    row("a link to nothing is there", "source", "dangling", false, "dangling: File exists");
    row("output in the source", "source", "source/new", true, "source/new");
    row("output below the source", "source", "source/sub/new", true, "source/sub/new");
    row("output in the source by dots", "source", "source/../source/new", true, "new");
    row("output in the source by a link", "source", "to sub/new", true, "to sub/new");
    row("output a link to a file in the source", "source", "to file", true, "to file");
    row("source a link to the output's folder", "to sub", "source/sub/new", true, "new");
    row("everything", "/", "new", true, "new: the image cannot be in the folder");
    row("no source", "missing", "new", true, "missing: No such file");
    row("source a file", "old.iso", "new", true, "old.iso: Not a directory");
    row("source a file with a slash", "old.iso/", "new", true, "old.iso/: Not a directory");
    row("source empty", "", "new", true, "No such file");
    row("output a folder", "source", "folder", true, "folder: Is a directory");
    row("output with a slash", "source", "new/", true, "new/: Is a directory");
    row("output's folder missing", "source", "missing/new", true, "missing/new: No such file");
    row("output's folder a file", "source", "old.iso/new", true, "old.iso/new: Not a directory");
    row("output a device", "source", "/dev/null", true, "/dev/null: Invalid argument");
    row("output a pipe", "source", "pipe", true, "pipe: Invalid argument");
}

void DiskImageTest::refused()
{
    QFETCH(QByteArray, source);
    QFETCH(QByteArray, output);
    QFETCH(bool, overwrite);
    QFETCH(QByteArray, reason);
    makeFile(path("source/file"), "content");
    makeFile(path("source/sub/file"), "content");
    makeFile(path("old.iso"), "old");
    makeFolder(path("folder"));
    makePipe(path("pipe"));
    makeLink("old.iso", path("to old"));
    makeLink("nothing", path("dangling"));
    makeLink("source/sub", path("to sub"));
    makeLink("source/file", path("to file"));
    const QByteArrayList before = listing(path({}));
    QByteArrayList words{"makehybrid", "-quiet", "-o", output, source};
    if (overwrite)
        words.append("-ov");
    const DiskImageRun::Outcome outcome = m_run->run(words);
    QVERIFY2(outcome.failedWith(reason), outcome.text().constData());
    QCOMPARE(listing(path({})), before);
}

void DiskImageTest::helpAndVersion()
{
    const DiskImageRun::Outcome help = m_run->run({"--help"});
    QCOMPARE(help.exitCode, 0);
    QCOMPARE(help.errors, QByteArray());
    for (const char *word :
         {"makehybrid", "-hfs", "-o FILE", "-default-volume-name", "-ov", "-quiet"})
        QVERIFY2(help.output.contains(word), word);
    const DiskImageRun::Outcome version = m_run->run({"--version"});
    QCOMPARE(version.exitCode, 0);
    QCOMPARE(version.output, QByteArray("maplorn-diskimage " MAPLORN_VERSION "\n"));
}

void DiskImageTest::tellsWhatItMade()
{
    QCOMPARE(m_run->run({"makehybrid", "-o", "new.iso", "source"}).text(),
             QByteArray("status 0, output created: new.iso\n, errors "));
}

void DiskImageTest::imagesAreReadable_data()
{
    QTest::addColumn<bool>("hfs");
    QTest::newRow("ISO") << false;
    QTest::newRow("HFS+") << true;
}

void DiskImageTest::imagesAreReadable()
{
    QFETCH(bool, hfs);
    for (const OddTree &tree : oddTrees()) {
        makeFolder(path("source/") + tree.name);
        tree.make(path("source/") + tree.name);
    }
    makeFile(path("source/film.mkv"), noise(9'000'001)); // several parts, not whole blocks
    QByteArrayList words{"makehybrid", "-quiet", "-o", "new.iso", "source"};
    if (hfs)
        words.append("-hfs");
    const DiskImageRun::Outcome outcome = m_run->run(words);
    QCOMPARE(outcome.text(), QByteArray("status 0, output , errors "));
    const QByteArray said = run({"xorriso", "-abort_on", "WARNING", "-osirrox", "on", "-indev",
                                 path("new.iso"), "-extract", "/", path("extracted")});
    QVERIFY2(!said.startsWith("failed"), said.constData());
    QCOMPARE(listing(path("extracted")), listing(path("source")));
    // 7-Zip reads the Joliet tree.
    const QByteArray joliet =
        run({"7zz", "x", "-bd", "-tiso", "-o" + path("joliet"), path("new.iso")});
    QVERIFY2(!joliet.startsWith("failed"), joliet.constData());
    QCOMPARE(readFile(path("joliet/film.mkv")), readFile(path("source/film.mkv")));
    QCOMPARE(cutHfsVolume(path("new.iso")).isEmpty(), !hfs);
    if (hfs) {
        // With a complaint about the links that lead out of the folder.
        std::ignore = run({"7zz", "x", "-bd", "-o" + path("hfs"), path("new.iso.hfs")});
        QCOMPARE(readFile(path("hfs/source/film.mkv")), readFile(path("source/film.mkv")));
    }
}

void DiskImageTest::volumeNames_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("hfs");
    QTest::addColumn<QByteArray>("primary");
    QTest::newRow("given") << u"Größe"_qs << u"Gro\u0308\u00dfe"_qs << QByteArray("GR__E");
    QTest::newRow("empty: the folder's") << QString() << u"source"_qs << QByteArray("SOURCE");
    QTest::newRow("long") << QString(300, u'n') << QString(255, u'n') << QByteArray(32, 'N');
    QTest::newRow("strange") << u"a/b:c\n"_qs << u"a/b/c\n"_qs << QByteArray("A_B_C_");
}

void DiskImageTest::volumeNames()
{
    QFETCH(QString, given);
    QFETCH(QString, hfs);
    QFETCH(QByteArray, primary);
    const DiskImageRun::Outcome outcome =
        m_run->run({"makehybrid", "-hfs", "-quiet", "-o", "new.dmg", "-default-volume-name",
                    given.toUtf8(), "source"});
    QCOMPARE(outcome.text(), QByteArray("status 0, output , errors "));
    QCOMPARE(readFile(path("new.dmg")).mid(16 * 2048 + 40, 32).trimmed(), primary);
    QCOMPARE(HfsVolume(readFile(cutHfsVolume(path("new.dmg")))).volumeName(), hfs);
}

void DiskImageTest::namesOfPaths_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("locale");
    for (const char *locale : {"C", "C.UTF-8", "de_DE.ISO-8859-1"}) {
        const QString text = QString::fromLatin1(locale);
        QTest::addRow("Chinese, %s", locale) << QByteArray("\xe4\xb8\xad") << text;
        QTest::addRow("not UTF-8, %s", locale) << QByteArray("\xff\xe9") << text;
        QTest::addRow("as long as can be, %s", locale) << QByteArray(255, 'n') << text;
        QTest::addRow("a line's end, %s", locale) << QByteArray("a\nb") << text;
    }
}

void DiskImageTest::namesOfPaths()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, locale);
    makeFile(path("source/") + name + "/file", "content");
    makeFolder(path("out"));
    m_run->setEnvironment(QStringLiteral("LC_ALL"), locale);
    // Through the shell, since a QProcess passes only what is text.
    QByteArray octal;
    for (const char byte : name)
        octal += "\\" + QByteArray::number(static_cast<quint8>(byte), 8).rightJustified(3, '0');
    QProcess process;
    m_run->prepare(process,
                   {"-c", "n=$(printf '" + octal
                              + "'); exec " DISKIMAGE_PROGRAM
                                " makehybrid -quiet -o \"out/$n\" -default-volume-name \"$n\""
                                " \"source/$n\""});
    process.setProgram(QStringLiteral("/bin/sh"));
    process.start();
    QCOMPARE(DiskImageRun::finish(process).text(), QByteArray("status 0, output , errors "));
    QCOMPARE(m_run->names("out"), QByteArrayList{name});
    process.start(); // now it is there, and the failure has one line still
    const DiskImageRun::Outcome again = DiskImageRun::finish(process);
    QVERIFY2(again.failedWith(": File exists"), again.text().constData());
}

void DiskImageTest::outputThroughALink()
{
    makeFile(path("images/old.iso"), "old");
    makeLink("images/old.iso", path("link"));
    QCOMPARE(m_run->run({"makehybrid", "-ov", "-o", "link", "source"}).exitCode, 0);
    QVERIFY(readFile(path("images/old.iso")).size() > 2048);
    struct stat status = {};
    QCOMPARE(::lstat(path("link").constData(), &status), 0);
    QVERIFY(S_ISLNK(status.st_mode));
}

void DiskImageTest::modeFollowsTheMask()
{
    const mode_t before = ::umask(027);
    const int exitCode = m_run->run({"makehybrid", "-o", "new.iso", "source"}).exitCode;
    ::umask(before);
    QCOMPARE(exitCode, 0);
    struct stat status = {};
    QCOMPARE(::stat(path("new.iso").constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, 0640U);
}

void DiskImageTest::fileOfMoreThan4GiB()
{
    constexpr qint64 size = 4'294'967'296 + 10'000;
    constexpr std::array<qint64, 3> marks = {0, 4'294'967'296 - 3, size - 6};
    makeFile(path("source/film.mkv"), {});
    QFile file(QFile::decodeName(path("source/film.mkv")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    for (const qint64 mark : marks) {
        QVERIFY(file.seek(mark));
        QCOMPARE(file.write("marked"), qint64(6));
    }
    file.close();
    struct stat status = {};
    QCOMPARE(::stat(path("source/film.mkv").constData(), &status), 0);
    if (status.st_blocks * 512 > size / 2)
        QSKIP("the file system has no holes");
    QCOMPARE(m_run->run({"makehybrid", "-hfs", "-o", "new.dmg", "source"}).exitCode, 0);
    QCOMPARE(::stat(path("new.dmg").constData(), &status), 0);
    QVERIFY(status.st_blocks * 512 < size / 2);

    QFile volume(QFile::decodeName(cutHfsVolume(path("new.dmg"))));
    QVERIFY(volume.open(QIODevice::ReadOnly));
    const HfsVolume::Entry entry = HfsVolume(volume.read(1'000'000)).entries().value(1);
    QCOMPARE(entry.size, size);
    for (const qint64 mark : marks) {
        QVERIFY(volume.seek(entry.start + mark));
        QCOMPARE(volume.read(6), QByteArray("marked"));
    }
    const QByteArray listed = run({"7zz", "l", QFile::encodeName(volume.fileName())});
    QVERIFY2(listed.contains(QByteArray::number(size)), listed.constData());
}

MAPLORN_TEST_MAIN(DiskImageTest)

#include "DiskImageTest.moc"
