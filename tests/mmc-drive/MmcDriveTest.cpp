// The emulated drive as other programs see it: that xorriso and cdrdao burn, read and erase with it
// as with a real one.
#include "EmulatedDrive.h"
#include "TestMain.h"

#include <QDir>
#include <QRandomGenerator>

class MmcDriveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_drive.reset(); }

    void dataByXorriso_data();
    void dataByXorriso();
    void sessionsAreAppended();
    void erasing_data();
    void erasing();
    void audioByCdrdao();
    void faults_data();
    void faults();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] EmulatedDrive::Run xorriso(const QStringList &commands) const
    {
        return m_drive->run(QStringLiteral("xorriso"), commands);
    }
    [[nodiscard]] EmulatedDrive::Run burnFolder(const QStringList &more = {}) const;
    [[nodiscard]] bool isSameAsFolder() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<EmulatedDrive> m_drive;
};

namespace {

QByteArray randomBytes(qsizetype size, quint32 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(seed);
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

void MmcDriveTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_drive = std::make_unique<EmulatedDrive>();
    writeFile(path(QStringLiteral("source/some file")), randomBytes(700001, 1));
    writeFile(path(QStringLiteral("source/empty")), {});
}

EmulatedDrive::Run MmcDriveTest::burnFolder(const QStringList &more) const
{
    return xorriso(QStringList{QStringLiteral("-outdev"), QStringLiteral("/dev/sr0")} + more
                   + QStringList{QStringLiteral("-map"), path(QStringLiteral("source")),
                                 QStringLiteral("/"), QStringLiteral("-commit")});
}

bool MmcDriveTest::isSameAsFolder() const
{
    const QString copy = path(QStringLiteral("copy"));
    QDir(copy).removeRecursively();
    const EmulatedDrive::Run read = xorriso(
        {QStringLiteral("-osirrox"), QStringLiteral("on"), QStringLiteral("-indev"),
         QStringLiteral("/dev/sr0"), QStringLiteral("-extract"), QStringLiteral("/"), copy});
    return read.exitStatus == 0
           && readFile(copy + QStringLiteral("/some file"))
                  == readFile(path(QStringLiteral("source/some file")));
}

void MmcDriveTest::dataByXorriso_data()
{
    QTest::addColumn<QString>("medium");
    QTest::addColumn<QString>("closing");
    QTest::addColumn<QString>("state");
    const QString closed = QStringLiteral("is written , is closed");
    const QString appendable = QStringLiteral("is written , is appendable");
    QTest::newRow("CD-R at once") << "cd-r"
                                  << "on" << closed;
    QTest::newRow("CD-RW appendable") << "cd-rw 20000"
                                      << "off" << appendable;
    for (const char *medium : {"dvd+rw", "bd-re 20000", "bd-re 20000 unformatted"})
        QTest::newRow(medium) << medium << "off" << appendable;
}

void MmcDriveTest::dataByXorriso()
{
    QFETCH(const QString, medium);
    QFETCH(const QString, closing);
    QFETCH(const QString, state);
    m_drive->insert(medium);
    const EmulatedDrive::Run burned = burnFolder({QStringLiteral("-close"), closing});
    QVERIFY2(burned.exitStatus == 0, qPrintable(burned.output));
    QVERIFY2(burned.output.contains(state), qPrintable(burned.output));
    QVERIFY(isSameAsFolder());
}

void MmcDriveTest::sessionsAreAppended()
{
    m_drive->insert(QStringLiteral("cd-r"));
    QCOMPARE(burnFolder().exitStatus, 0);
    const QString other = path(QStringLiteral("other"));
    writeFile(other, randomBytes(5000, 2));
    const EmulatedDrive::Run second =
        xorriso({QStringLiteral("-dev"), QStringLiteral("/dev/sr0"), QStringLiteral("-map"), other,
                 QStringLiteral("/other"), QStringLiteral("-commit"), QStringLiteral("-toc")});
    QVERIFY2(second.output.contains(QStringLiteral("2 sessions")), qPrintable(second.output));
    QVERIFY(isSameAsFolder());
}

void MmcDriveTest::erasing_data()
{
    QTest::addColumn<QString>("medium");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("erased");
    QTest::newRow("quick") << "cd-rw"
                           << "fast" << true;
    QTest::newRow("complete") << "cd-rw"
                              << "all" << true;
    QTest::newRow("written once for all") << "cd-r"
                                          << "force:fast" << false;
}

void MmcDriveTest::erasing()
{
    QFETCH(const QString, medium);
    QFETCH(const QString, mode);
    QFETCH(const bool, erased);
    m_drive->insert(medium);
    QCOMPARE(burnFolder().exitStatus, 0);
    QCOMPARE(xorriso({QStringLiteral("-outdev"), QStringLiteral("/dev/sr0"),
                      QStringLiteral("-blank"), mode})
                     .exitStatus
                 == 0,
             erased);
    QCOMPARE(burnFolder().output.contains(QStringLiteral("is blank")), erased);
}

void MmcDriveTest::audioByCdrdao()
{
    constexpr qint64 first = 400;
    constexpr qint64 second = 333;
    const QByteArray sound = randomBytes((first + second) * 2352, 3);
    writeFile(path(QStringLiteral("sound.bin")), sound);
    writeFile(path(QStringLiteral("disc.toc")),
              "CD_DA\nCD_TEXT { LANGUAGE_MAP { 0 : EN }\n"
              "LANGUAGE 0 { TITLE \"Disc\" PERFORMER \"Someone\" } }\n"
              "TRACK AUDIO CD_TEXT { LANGUAGE 0 { TITLE \"First\" PERFORMER \"A\" } }\n"
              "FILE \"sound.bin\" SWAP 0 00:05:25\n"
              "TRACK AUDIO CD_TEXT { LANGUAGE 0 { TITLE \"Second\" PERFORMER \"B\" } }\n"
              "FILE \"sound.bin\" SWAP 00:05:25 00:04:33\n");
    const QStringList drive{QStringLiteral("--device"), QStringLiteral("/dev/sr0"),
                            QStringLiteral("--driver"), QStringLiteral("generic-mmc:0x10")};
    m_drive->insert(QStringLiteral("cd-r"));
    const EmulatedDrive::Run burned =
        m_drive->run(QStringLiteral("cdrdao"),
                     QStringList{QStringLiteral("write")} + drive
                         + QStringList{QStringLiteral("-n"), QStringLiteral("disc.toc")},
                     m_folder->path());
    QVERIFY2(burned.exitStatus == 0, qPrintable(burned.output));
    QCOMPARE(m_drive->sectors(0, first + second), sound);

    const EmulatedDrive::Run read = m_drive->run(QStringLiteral("cdrdao"),
                                                 QStringList{QStringLiteral("read-toc")} + drive
                                                     + QStringList{QStringLiteral("read.toc")},
                                                 m_folder->path());
    QVERIFY2(read.exitStatus == 0, qPrintable(read.output));
    const QByteArray toc = readFile(path(QStringLiteral("read.toc")));
    for (const char *text :
         {"\"Disc\"", "\"Someone\"", "\"Second\"", "\"B\"", "00:05:25", "00:04:33"})
        QVERIFY2(toc.contains(text), toc.constData());
}

void MmcDriveTest::faults_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("message");
    QTest::newRow("write error") << "write-error 200"
                                 << "SCSI error on write";
    QTest::newRow("drive gone") << "gone 200"
                                << "Lost connection to drive";
    QTest::newRow("refused command") << "refuse 0x5d"
                                     << "5Dh";
    QTest::newRow("medium gone") << "pull-out 200"
                                 << "MEDIUM NOT PRESENT";
    QTest::newRow("no permission") << "denied"
                                   << "Permission denied";
}

void MmcDriveTest::faults()
{
    QFETCH(const QString, fault);
    QFETCH(const QString, message);
    m_drive->insert(QStringLiteral("cd-r"));
    m_drive->setFaults(fault);
    const EmulatedDrive::Run burned = burnFolder({QStringLiteral("-close"), QStringLiteral("on")});
    QVERIFY(burned.exitStatus != 0);
    QVERIFY2(burned.output.contains(message, Qt::CaseInsensitive), qPrintable(burned.output));
}

MAPLORN_TEST_MAIN(MmcDriveTest)
#include "MmcDriveTest.moc"
