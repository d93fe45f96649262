#include "DRKeys.h"
#include "JobLog.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <QProcess>

namespace {

struct Outcome
{
    int exitCode = -1;
    QString output;
    QString errors;
};

}

class RecorderProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<VirtualDrive>(); }
    void cleanup() { m_drive.reset(); }

    void wrongUsage_data();
    void wrongUsage();
    void helpAndVersion();
    void listAndStatus();
    void statusOfMedia_data();
    void statusOfMedia();
    void insertAndEject();
    void writtenDiscIsKept();
    void changeIsSeenAtOnce();
    void refusedWhileBurning();

private:
    // Runs maplorn-recorder to its end while the events of this program are served.
    [[nodiscard]] Outcome run(const QString &arguments) const;

    // What `status` prints after that name.
    [[nodiscard]] QString value(const QString &name) const;
    void store(VirtualMedium medium, VirtualMedium::State state) const;

    std::unique_ptr<VirtualDrive> m_drive;
};

Outcome RecorderProgramTest::run(const QString &arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), m_drive->dataHome());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(RECORDER_PROGRAM),
                  arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 30000)
        || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString RecorderProgramTest::value(const QString &name) const
{
    for (const QString &line :
         run(QStringLiteral("status")).output.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        if (line.startsWith(name + QLatin1Char(':')))
            return line.section(QLatin1Char(':'), 1).trimmed();
    return {};
}

void RecorderProgramTest::store(VirtualMedium medium, VirtualMedium::State state) const
{
    medium.state = state;
    medium.tracks = {100};
    QVERIFY(medium.store(m_drive->recorder().mediumFolder()));
}

void RecorderProgramTest::wrongUsage_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("named");
    QTest::newRow("no command") << ""
                                << "command";
    QTest::newRow("unknown command") << "burn"
                                     << "\"burn\"";
    QTest::newRow("unknown option") << "list --colour"
                                    << "colour";
    QTest::newRow("too much") << "eject now"
                              << "\"now\"";
    QTest::newRow("too much for insert") << "insert cd-r dvd-r"
                                         << "\"dvd-r\"";
    QTest::newRow("no type") << "insert"
                             << "cd-rw dvd+r dvd+r-dl";
    QTest::newRow("unknown type") << "insert cassette"
                                  << "\"cassette\"";
    QTest::newRow("unknown type lists the known") << "insert cassette"
                                                  << "cd-rw dvd+r dvd+r-dl";
    QTest::newRow("a type that cannot be written") << "insert dvd-rom"
                                                   << "\"dvd-rom\"";
}

void RecorderProgramTest::wrongUsage()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, named);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QString());
    QVERIFY2(outcome.errors.contains(named), qPrintable(outcome.errors));
    QVERIFY(m_drive->device().mediaIsBlank());
    QCOMPARE(m_drive->device().mediaType(), QString(DRDeviceMediaTypeCDRW));
}

void RecorderProgramTest::helpAndVersion()
{
    const Outcome help = run(QStringLiteral("--help"));
    QCOMPARE(help.exitCode, 0);
    for (const char *word : {"list", "status", "insert", "eject", "hd-dvd-ram"})
        QVERIFY2(help.output.contains(QLatin1String(word)), word);
    const Outcome version = run(QStringLiteral("--version"));
    QCOMPARE(version.exitCode, 0);
    QVERIFY(version.output.contains(QStringLiteral(MAPLORN_VERSION)));
}

void RecorderProgramTest::listAndStatus()
{
    QCOMPARE(run(QStringLiteral("list")).output,
             QStringLiteral("Virtual Recorder\t%1\n").arg(m_drive->recorder().folder()));
    const Outcome outcome = run(QStringLiteral("status"));
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QStringLiteral("Recorder: Virtual Recorder\n"
                                            "Folder:   %1\n"
                                            "Busy:     no\n"
                                            "Medium:   CD-RW\n"
                                            "State:    blank\n"
                                            "Capacity: 359849 blocks, 736970752 bytes\n"
                                            "Free:     359849 blocks, 736970752 bytes\n"
                                            "Used:     0 blocks, 0 bytes\n"
                                            "Files:    %1/medium\n")
                                 .arg(m_drive->recorder().folder()));
}

void RecorderProgramTest::statusOfMedia_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("free");
    QTest::newRow("unfinished") << "incomplete"
                                << "unfinished"
                                << "0 blocks, 0 bytes";
    QTest::newRow("written") << "complete"
                             << "written"
                             << "0 blocks, 0 bytes";
    QTest::newRow("left open") << "open"
                               << "written, appendable"
                               << "359749 blocks, 736765952 bytes";
}

void RecorderProgramTest::statusOfMedia()
{
    QFETCH(const QString, state);
    VirtualMedium medium = *m_drive->recorder().medium();
    medium.appendable = state == QLatin1String("open");
    store(medium, state == QLatin1String("incomplete") ? VirtualMedium::State::Incomplete
                                                       : VirtualMedium::State::Complete);
    QTEST(value(QStringLiteral("State")), "shown");
    QTEST(value(QStringLiteral("Free")), "free");

    QFile list(m_drive->mediumFile(QStringLiteral("medium.plist")));
    QVERIFY(list.open(QIODevice::WriteOnly | QIODevice::Truncate));
    list.close();
    QCOMPARE(value(QStringLiteral("State")), QStringLiteral("unreadable"));
    QCOMPARE(value(QStringLiteral("Medium")), QStringLiteral("unknown"));
}

void RecorderProgramTest::insertAndEject()
{
    QCOMPARE(run(QStringLiteral("eject")).exitCode, 0);
    QCOMPARE(value(QStringLiteral("Medium")), QStringLiteral("none"));
    const Outcome again = run(QStringLiteral("eject"));
    QCOMPARE(again.exitCode, 1);
    QVERIFY(again.errors.contains(QStringLiteral("no medium")));

    QCOMPARE(run(QStringLiteral("insert DVD+R-DL")).exitCode, 0);
    QCOMPARE(value(QStringLiteral("Medium")), QStringLiteral("DVD+R DL"));
    QCOMPARE(m_drive->device().mediaType(), QString(DRDeviceMediaTypeDVDPlusRDoubleLayer));
}

void RecorderProgramTest::writtenDiscIsKept()
{
    for (const char *command : {"eject", "insert cd-r"}) {
        m_drive->insert(DRDeviceMediaTypeCDR);
        const VirtualMedium medium = *m_drive->recorder().medium();
        store(medium, VirtualMedium::State::Complete);
        const QString output = run(QString::fromLatin1(command)).output;
        const QString place =
            output.section(QStringLiteral(" is kept in "), 1).section(QLatin1Char('\n'), 0, 0);
        QVERIFY2(!place.isEmpty(), qPrintable(output));
        const std::optional<VirtualMedium> kept = VirtualMedium::load(place);
        QVERIFY2(kept, qPrintable(place));
        QCOMPARE(kept->identifier, medium.identifier);
    }
    QVERIFY(!run(QStringLiteral("eject")).output.contains(QStringLiteral("kept"))); // a blank one
}

void RecorderProgramTest::changeIsSeenAtOnce()
{
    int changes = 0;
    DRNotificationCenter::currentRunLoop().addObserver(
        this, [&changes](const DRNotification &) { ++changes; }, DRDeviceStatusChangedNotification,
        QVariant::fromValue(m_drive->device()));
    QCOMPARE(run(QStringLiteral("insert bd-re")).exitCode, 0);
    QTRY_VERIFY(changes > 0);
    QCOMPARE(m_drive->device().mediaType(), QString(DRDeviceMediaTypeBDRE));
}

void RecorderProgramTest::refusedWhileBurning()
{
    DRBurn burn = DRBurn::initWithDevice(m_drive->device());
    burn.setRequestedBurnSpeed(100); // KB per second: half a minute
    const JobLog log(burn);
    burn.writeLayout(
        DRBurn::layoutForImageFile(m_drive->makeSource(QStringLiteral("image.iso"), 3000000)));
    QVERIFY(log.waitForState(DRStatusStateTrackWrite));
    for (const char *command : {"eject", "insert cd-r"}) {
        const Outcome outcome = run(QString::fromLatin1(command));
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.errors.contains(QStringLiteral("in use")), qPrintable(outcome.errors));
    }
    QCOMPARE(value(QStringLiteral("Busy")), QStringLiteral("yes"));
    QCOMPARE(value(QStringLiteral("State")), QStringLiteral("unfinished"));
    QVERIFY(!log.states().contains(QString(DRStatusStateFailed)));
    burn.abort();
    QVERIFY(log.waitForEnd());
    QCOMPARE(run(QStringLiteral("eject")).exitCode, 0);
}

MAPLORN_TEST_MAIN(RecorderProgramTest)
#include "RecorderProgramTest.moc"
