// What maplorn-diskimage leaves behind when it is stopped, or when a source or the disk fails it:
// the image that was there before, and nothing else.

#include "DiskImageRun.h"
#include "TestMain.h"

#include <QScopeGuard>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace TreeTools;

namespace {

// Whether the process has a file in that folder open, named or not, that has some content.
bool writesIn(qint64 process, const QByteArray &folder)
{
    const QByteArray descriptors = "/proc/" + QByteArray::number(process) + "/fd/";
    for (int i = 3; i < 64; ++i) {
        const QByteArray name = descriptors + QByteArray::number(i);
        std::array<char, 4096> target = {};
        struct stat status = {};
        if (::readlink(name.constData(), target.data(), target.size() - 1) > 0
            && QByteArray(target.data()).startsWith(folder)
            && ::stat(name.constData(), &status) == 0 && S_ISREG(status.st_mode)
            && status.st_blocks > 0)
            return true;
    }
    return false;
}

}

class DiskImageFailureTest : public QObject
{
    Q_OBJECT

    [[nodiscard]] QByteArray path(const QByteArray &name) const { return m_run->path(name); }
    void without(const char *features);
    [[nodiscard]] bool onlyOldImage() const;
    pid_t startWriting(QProcess &process, const QByteArrayList &words) const;

    std::unique_ptr<DiskImageRun> m_run;
    const QByteArrayList m_words{"makehybrid", "-ov", "-quiet", "-o", "out/old.iso", "source"};

private Q_SLOTS:
    void init();
    void cleanup() { m_run.reset(); }

    void signalled_data();
    void signalled();
    void ignoredSignalStaysIgnored();
    void twoAtATime();
    void poorFileSystems_data();
    void poorFileSystems();
    void shrinkingSource_data();
    void shrinkingSource();
    void unreadableSource();
    void fullDisk_data();
    void fullDisk();
    void limits_data();
    void limits();
    void noticeThatNobodyReads_data();
    void noticeThatNobodyReads();
    void folderThatCannotBeWrittenTo();
};

void DiskImageFailureTest::init()
{
    m_run = std::make_unique<DiskImageRun>();
    makeFile(path("out/old.iso"), "the image that was there");
}

// LeakSanitizer and the order of libraries that AddressSanitizer wants are not the point here.
void DiskImageFailureTest::without(const char *features)
{
    m_run->setEnvironment(QStringLiteral("POOR_FILE_SYSTEM"), QString::fromLatin1(features));
    m_run->setEnvironment(QStringLiteral("LD_PRELOAD"), QStringLiteral(POOR_FILE_SYSTEM));
    m_run->setEnvironment(QStringLiteral("ASAN_OPTIONS"),
                          QStringLiteral("verify_asan_link_order=0:detect_leaks=0"));
}

bool DiskImageFailureTest::onlyOldImage() const
{
    return m_run->names("out") == QByteArrayList{"old.iso"}
           && readFile(path("out/old.iso")) == "the image that was there";
}

// Returns when a part of the image, of 300 MB, is written. The program yields to us, so that it is
// not done before we have had our turn again.
pid_t DiskImageFailureTest::startWriting(QProcess &process, const QByteArrayList &words) const
{
    const QByteArray content = noise(30'000'000);
    for (int i = 0; i < 10; ++i)
        makeFile(path("source/") + QByteArray::number(i), content);
    m_run->prepare(process, words);
    process.start();
    process.waitForStarted();
    const auto id = static_cast<pid_t>(process.processId());
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(id), 19);
    while (!writesIn(id, path("out"))) {
        if (process.waitForFinished(1))
            qFatal("it has ended: %s", DiskImageRun::finish(process).text().constData());
    }
    return id;
}

void DiskImageFailureTest::signalled_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("nameless");
    QTest::newRow("SIGTERM") << SIGTERM << true;
    QTest::newRow("SIGINT") << SIGINT << true;
    QTest::newRow("SIGHUP") << SIGHUP << true;
    QTest::newRow("SIGQUIT") << SIGQUIT << true;
    QTest::newRow("SIGKILL") << SIGKILL << true;
    QTest::newRow("SIGTERM, temporary name") << SIGTERM << false;
    QTest::newRow("SIGKILL, temporary name") << SIGKILL << false;
}

void DiskImageFailureTest::signalled()
{
    QFETCH(int, signal);
    QFETCH(bool, nameless);
    if (!nameless)
        without("tmpfile");
    QProcess process;
    const pid_t id = startWriting(process, m_words);
    ::kill(id, SIGUSR1); // neither ends it nor keeps the next one from doing so
    ::kill(id, signal);
    const DiskImageRun::Outcome outcome = DiskImageRun::finish(process);
    if (signal != SIGKILL)
        QVERIFY2(outcome.failedWith("out/old.iso: interrupted"), outcome.text().constData());
    if (signal != SIGKILL || nameless) {
        QVERIFY(onlyOldImage());
        return;
    }
    // The one case in which something stays: it tells whose it is, and the next run removes it.
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(readFile(path("out/old.iso")), QByteArray("the image that was there"));
    const QByteArrayList names = m_run->names("out");
    QCOMPARE(names.size(), 2);
    QVERIFY(names.first().startsWith(".maplorn-diskimage-") && names.first().endsWith(".part"));
    makeFolder(path("empty"));
    QCOMPARE(m_run->run({"makehybrid", "-o", "out/new.iso", "empty"}).exitCode, 0);
    QCOMPARE(m_run->names("out"), (QByteArrayList{"new.iso", "old.iso"}));
}

// As nohup has it: who started the program said that it should go on.
void DiskImageFailureTest::ignoredSignalStaysIgnored()
{
    QProcess process;
    process.setChildProcessModifier([] { std::signal(SIGHUP, SIG_IGN); });
    ::kill(startWriting(process, m_words), SIGHUP);
    QCOMPARE(DiskImageRun::finish(process).text(), QByteArray("status 0, output , errors "));
    QVERIFY(readFile(path("out/old.iso")).size() > 300'000'000);
}

// The file of the first looks like one that was left behind.
void DiskImageFailureTest::twoAtATime()
{
    without("tmpfile");
    makeFolder(path("empty"));
    QProcess process;
    const pid_t id = startWriting(process, m_words);
    ::kill(id, SIGSTOP);
    QCOMPARE(m_run->run({"makehybrid", "-o", "out/new.iso", "empty"}).exitCode, 0);
    ::kill(id, SIGCONT);
    QCOMPARE(DiskImageRun::finish(process).text(), QByteArray("status 0, output , errors "));
    QCOMPARE(m_run->names("out"), (QByteArrayList{"new.iso", "old.iso"}));
}

void DiskImageFailureTest::poorFileSystems_data()
{
    QTest::addColumn<QByteArray>("missing");
    for (const char *missing : {"tmpfile", "tmpfile renameat2", "tmpfile renameat2 link", "proc"})
        QTest::newRow(missing) << QByteArray(missing);
}

void DiskImageFailureTest::poorFileSystems()
{
    QFETCH(QByteArray, missing);
    without(missing.constData());
    makeFile(path("source/file"), "content");
    const QByteArrayList refusing{"makehybrid", "-quiet", "-o", "out/old.iso", "source"};
    QVERIFY(m_run->run(refusing).failedWith("old.iso: File exists"));
    QVERIFY(onlyOldImage());
    QCOMPARE(m_run->run(m_words).text(), QByteArray("status 0, output , errors "));
    QCOMPARE(m_run->run({"makehybrid", "-quiet", "-o", "out/new.iso", "source"}).text(),
             QByteArray("status 0, output , errors "));
    QCOMPARE(m_run->names("out"), (QByteArrayList{"new.iso", "old.iso"}));
    QCOMPARE(readFile(path("out/old.iso")).size(), readFile(path("out/new.iso")).size());
}

void DiskImageFailureTest::shrinkingSource_data()
{
    QTest::addColumn<bool>("hfs");
    QTest::newRow("ISO") << false;
    QTest::newRow("HFS+") << true;
}

// Between the scan and its turn, for the large files come before it.
void DiskImageFailureTest::shrinkingSource()
{
    QFETCH(bool, hfs);
    makeFile(path("source/holiday.mkv"), noise(2'000'000));
    QProcess process;
    const pid_t id = startWriting(process, hfs ? m_words + QByteArrayList{"-hfs"} : m_words);
    ::kill(id, SIGSTOP);
    QCOMPARE(::truncate(path("source/holiday.mkv").constData(), 1'900'000), 0);
    ::kill(id, SIGCONT);
    const DiskImageRun::Outcome outcome = DiskImageRun::finish(process);
    QVERIFY2(outcome.failedWith("source/holiday.mkv: the file has changed"),
             outcome.text().constData());
    QVERIFY(onlyOldImage());
}

void DiskImageFailureTest::unreadableSource()
{
    if (::geteuid() == 0)
        QSKIP("the superuser reads everything");
    makeFile(path("source/secret"), "1");
    setMode(path("source/secret"), 0);
    const DiskImageRun::Outcome outcome = m_run->run(m_words);
    QVERIFY2(outcome.failedWith("source/secret: Permission denied"), outcome.text().constData());
    QVERIFY(onlyOldImage());
}

void DiskImageFailureTest::fullDisk_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::newRow("large file") << 9'000'000 << 1;
    QTest::newRow("small files") << 50'000 << 100;
}

void DiskImageFailureTest::fullDisk()
{
    QFETCH(int, size);
    QFETCH(int, count);
    for (int i = 0; i < count; ++i)
        makeFile(path("source/") + QByteArray::number(i), noise(size));
    const QByteArray folder = path("out");
    if (::mount("none", folder.constData(), "tmpfs", 0, "size=2m") != 0)
        QSKIP("only the superuser makes a small file system");
    const auto unmount = qScopeGuard([&folder] { ::umount2(folder.constData(), MNT_DETACH); });
    makeFile(path("out/old.iso"), "the image that was there");
    const DiskImageRun::Outcome outcome = m_run->run(m_words);
    QVERIFY2(outcome.failedWith("out/old.iso: No space left on device"),
             outcome.text().constData());
    QVERIFY(onlyOldImage());
    makeFile(path("out/other"), noise(1'500'000)); // the room is there again
    QCOMPARE(readFile(path("out/other")).size(), qsizetype(1'500'000));
}

void DiskImageFailureTest::limits_data()
{
    QTest::addColumn<int>("limited");
    QTest::addColumn<quint64>("limit");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("file") << int(RLIMIT_FSIZE) << quint64(1'000'000)
                          << QByteArray("File too large");
    // A thread's stack is as large as the limit, and no address space holds it.
    QTest::newRow("thread") << int(RLIMIT_STACK) << (quint64(1) << 47)
                            << QByteArray("Resource temporarily unavailable");
}

void DiskImageFailureTest::limits()
{
    QFETCH(int, limited);
    QFETCH(quint64, limit);
    QFETCH(QByteArray, reason);
    makeFile(path("source/file"), noise(3'000'000));
    QProcess process;
    m_run->prepare(process, m_words);
    process.setChildProcessModifier([limited, limit] {
        const rlimit both = {limit, limit};
        ::setrlimit(static_cast<__rlimit_resource>(limited), &both);
    });
    process.start();
    const DiskImageRun::Outcome outcome = DiskImageRun::finish(process);
    QVERIFY2(outcome.failedWith("out/old.iso: " + reason), outcome.text().constData());
    QVERIFY(onlyOldImage());
}

void DiskImageFailureTest::noticeThatNobodyReads_data()
{
    QTest::addColumn<bool>("pipe");
    QTest::newRow("full disk") << false;
    QTest::newRow("closed pipe") << true;
}

// No failure, after which the old image would have to be there.
void DiskImageFailureTest::noticeThatNobodyReads()
{
    QFETCH(bool, pipe);
    QProcess process;
    m_run->prepare(process, {"makehybrid", "-ov", "-o", "out/old.iso", "source"});
    process.setChildProcessModifier([pipe] {
        std::array<int, 2> ends = {-1, pipe ? -1 : ::open("/dev/full", O_WRONLY)};
        if (pipe && ::pipe(ends.data()) == 0)
            ::close(ends[0]);
        ::dup2(ends[1], STDOUT_FILENO);
    });
    process.start();
    QCOMPARE(DiskImageRun::finish(process).text(), QByteArray("status 0, output , errors "));
    QVERIFY(readFile(path("out/old.iso")).size() > 2048);
}

void DiskImageFailureTest::folderThatCannotBeWrittenTo()
{
    if (::geteuid() == 0)
        QSKIP("the superuser writes everywhere");
    makeFile(path("source/file"), "1");
    setMode(path("out"), 0500);
    const DiskImageRun::Outcome outcome = m_run->run(m_words);
    setMode(path("out"), 0700);
    QVERIFY2(outcome.failedWith("out/old.iso: Permission denied"), outcome.text().constData());
    QVERIFY(onlyOldImage());
}

MAPLORN_TEST_MAIN(DiskImageFailureTest)

#include "DiskImageFailureTest.moc"
