#include "BurnRun.h"
#include "DRKeys.h"
#include "MediaTypes.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr qint64 blockSize = 2048;

}

class VirtualBurnTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void states_data();
    void states();
    void imageFileAsItIs_data();
    void imageFileAsItIs();
    void folderIsReadByOthers();
    void refusedWithMediumUntouched_data();
    void refusedWithMediumUntouched();
    void layoutOfWholeMediumFits();
    void flippedByteFailsVerifying_data();
    void flippedByteFailsVerifying();
    void cancelled_data();
    void cancelled();
    void mediumPulledOut_data();
    void mediumPulledOut();
    void exchangedMediumIsNotTouched();
    void fullDisk();

private:
    [[nodiscard]] VirtualRecorder &recorder() const { return m_drive->recorder(); }
    [[nodiscard]] DRDevice device() const { return m_drive->device(); }
    [[nodiscard]] BurnRequest imageOf(qint64 bytes) const;
    [[nodiscard]] QString partPath() const
    {
        return m_drive->mediumFile(QStringLiteral("disc.iso.part"));
    }
    void verifyUnusable() const;

    std::unique_ptr<VirtualDrive> m_drive;
};

void VirtualBurnTest::init()
{
    m_drive = std::make_unique<VirtualDrive>();
    m_drive->insert(DRDeviceMediaTypeCDR);
}

void VirtualBurnTest::cleanup()
{
    m_drive.reset();
}

BurnRequest VirtualBurnTest::imageOf(qint64 bytes) const
{
    BurnRequest request;
    request.tracks = {
        DRTrack::trackForImageFile(m_drive->makeSource(QStringLiteral("image.iso"), bytes))};
    return request;
}

// As an aborted disc is: something is on it, and nothing can be read.
void VirtualBurnTest::verifyUnusable() const
{
    QVERIFY(device().mediaIsPresent());
    QVERIFY(!device().mediaIsBlank());
    QVERIFY(!device().mediaIsAppendable());
    QCOMPARE(m_drive->mediumFiles(), QStringList{QStringLiteral("medium.plist")});
}

void VirtualBurnTest::states_data()
{
    QTest::addColumn<bool>("verify");
    QTest::addColumn<QStringList>("between");
    QTest::newRow("unverified") << false << QStringList();
    QTest::newRow("verified") << true << QStringList{QString(DRStatusStateVerifying)};
}

void VirtualBurnTest::states()
{
    QFETCH(const bool, verify);
    QFETCH(const QStringList, between);
    BurnRequest request = imageOf(300 * blockSize);
    request.verify = verify;
    BurnRun run;
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
    const QStringList writing{DRStatusStateSessionOpen, DRStatusStateTrackOpen,
                              DRStatusStateTrackWrite, DRStatusStateTrackClose,
                              DRStatusStateSessionClose};
    QCOMPARE(run.states(), writing + between + QStringList{QString(DRStatusStateFinishing)});
    QVERIFY(std::ranges::is_sorted(run.fractions()));
    QCOMPARE(run.fractions().last(), 1.0);

    QVERIFY(!device().mediaIsBlank());
    QVERIFY(!device().mediaIsAppendable());
    QCOMPARE(device().mediaSpaceUsed().value_or(DRMSF()), DRMSF(300));
    QVERIFY(!device().status().value(DRDeviceIsBusyKey).toBool());
}

void VirtualBurnTest::imageFileAsItIs_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("blocks");
    QTest::newRow("one byte") << qint64(1) << qint64(1);
    QTest::newRow("whole blocks") << 150 * blockSize << qint64(150);
    QTest::newRow("part of a block more") << 150 * blockSize + 7 << qint64(151);
    QTest::newRow("many pieces") << qint64(9000001) << qint64(4395);
}

void VirtualBurnTest::imageFileAsItIs()
{
    QFETCH(const qint64, size);
    QFETCH(const qint64, blocks);
    BurnRequest request = imageOf(size);
    request.verify = true;
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QByteArray expected = fileContent(m_drive->sourcePath(QStringLiteral("image.iso")));
    expected.append(blocks * blockSize - size, '\0');
    QVERIFY(fileContent(m_drive->mediumFile(QStringLiteral("disc.iso"))) == expected);
}

void VirtualBurnTest::folderIsReadByOthers()
{
    const QString reader = QStandardPaths::findExecutable(QStringLiteral("xorriso"));
    if (reader.isEmpty())
        QSKIP("xorriso is not installed");
    const QStringList names{
        QStringLiteral("Some Folder/Inner/a file with a long name, Ünïcode.txt"),
        QStringLiteral("Some Folder/empty"), QStringLiteral("top.bin")};
    for (const QString &name : names)
        m_drive->makeSource(QStringLiteral("Holiday/") + name,
                            name.endsWith(QLatin1String("empty")) ? 0 : 5000);
    BurnRequest request;
    request.tracks = {DRTrack::trackForRootFolder(
        DRFolder::folderWithPath(m_drive->sourcePath(QStringLiteral("Holiday"))))};
    request.verify = true;
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));

    QProcess process;
    process.start(reader, {QStringLiteral("-indev"),
                           m_drive->mediumFile(QStringLiteral("disc.iso")), QStringLiteral("-find"),
                           QStringLiteral("/"), QStringLiteral("-type"), QStringLiteral("f")});
    QVERIFY(process.waitForFinished());
    QStringList listed = QString::fromUtf8(process.readAllStandardOutput())
                             .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    listed.sort();
    QStringList expected;
    for (const QString &name : names)
        expected.append(QStringLiteral("'/%1'").arg(name));
    QCOMPARE(listed, expected);
    QVERIFY(process.readAllStandardError().toUpper().contains("'HOLIDAY'")); // the volume
}

void VirtualBurnTest::refusedWithMediumUntouched_data()
{
    QTest::addColumn<QString>("fault");
    for (const char *fault : {"larger than the medium", "source missing", "empty image",
                              "folder missing", "no track", "two tracks", "medium in the source"})
        QTest::newRow(fault) << QString::fromLatin1(fault);
}

void VirtualBurnTest::refusedWithMediumUntouched()
{
    QFETCH(const QString, fault);
    const QString missing = m_drive->sourcePath(QStringLiteral("missing"));
    BurnRequest request = imageOf(fault == QLatin1String("empty image") ? 0 : 11 * blockSize);
    if (fault == QLatin1String("larger than the medium"))
        m_drive->setCapacity(10);
    if (fault == QLatin1String("source missing"))
        request.tracks = {DRTrack::trackForImageFile(missing)};
    if (fault == QLatin1String("folder missing"))
        request.tracks = {DRTrack::trackForRootFolder(DRFolder::folderWithPath(missing))};
    if (fault == QLatin1String("medium in the source"))
        request.tracks = {
            DRTrack::trackForRootFolder(DRFolder::folderWithPath(recorder().folder()))};
    if (fault == QLatin1String("no track"))
        request.tracks.clear();
    if (fault == QLatin1String("two tracks"))
        request.tracks.append(request.tracks.first());

    BurnRun run;
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY(!burned);
    QVERIFY(!burned.error().isEmpty());
    QCOMPARE(burned.error().contains(missing), fault.endsWith(QLatin1String("missing")));
    QCOMPARE(run.states(), QStringList());
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), QStringList{QStringLiteral("medium.plist")});
}

void VirtualBurnTest::layoutOfWholeMediumFits()
{
    m_drive->setCapacity(11);
    const Result<> burned = BurnRun().burn(recorder(), imageOf(11 * blockSize));
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(!BurnRun().burn(recorder(), imageOf(blockSize))); // not blank any more
    QCOMPARE(fileContent(m_drive->mediumFile(QStringLiteral("disc.iso"))).size(), 11 * blockSize);
}

void VirtualBurnTest::flippedByteFailsVerifying_data()
{
    QTest::addColumn<qint64>("position");
    QTest::addColumn<bool>("verify");
    QTest::newRow("first byte") << qint64(0) << true;
    QTest::newRow("last byte") << 1500 * blockSize - 1 << true;
    QTest::newRow("not looked at") << qint64(0) << false;
}

void VirtualBurnTest::flippedByteFailsVerifying()
{
    QFETCH(const qint64, position);
    QFETCH(const bool, verify);
    BurnRequest request = imageOf(1500 * blockSize);
    request.verify = verify;
    BurnRun run;
    run.at(DRStatusStateTrackClose, [this, position] {
        QFile medium(partPath());
        char byte = 0;
        if (medium.open(QIODevice::ReadWrite) && medium.seek(position) && medium.getChar(&byte)
            && medium.seek(position))
            medium.putChar(static_cast<char>(byte ^ 1));
    });
    QCOMPARE(static_cast<bool>(run.burn(recorder(), request)), !verify);
    if (verify)
        verifyUnusable();
}

void VirtualBurnTest::cancelled_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("verify");
    for (const QLatin1StringView state :
         {DRStatusStateSessionOpen, DRStatusStateTrackOpen, DRStatusStateTrackWrite,
          DRStatusStateTrackClose, DRStatusStateSessionClose, DRStatusStateVerifying,
          DRStatusStateFinishing})
        QTest::newRow(state.data()) << QString(state) << true;
    QTest::newRow("while the data are brought to the disk, nothing to verify")
        << QString(DRStatusStateTrackClose) << false;
}

void VirtualBurnTest::cancelled()
{
    QFETCH(const QString, state);
    QFETCH(const bool, verify);
    BurnRequest request = imageOf(1500 * blockSize);
    request.verify = verify;
    BurnRun run;
    run.at(state, [&run] { run.stop(); });
    QVERIFY(!run.burn(recorder(), request));
    QVERIFY(run.states().last() == state
            || !run.states().contains(QString(DRStatusStateFinishing)));
    verifyUnusable();
    QVERIFY(!device().status().value(DRDeviceIsBusyKey).toBool());
    QVERIFY(recorder().eject());
}

void VirtualBurnTest::mediumPulledOut_data()
{
    QTest::addColumn<QString>("state");
    for (const QLatin1StringView state :
         {DRStatusStateTrackWrite, DRStatusStateVerifying, DRStatusStateFinishing})
        QTest::newRow(state.data()) << QString(state);
}

void VirtualBurnTest::mediumPulledOut()
{
    QFETCH(const QString, state);
    const QString aside = recorder().folder() + QStringLiteral("/aside");
    BurnRequest request = imageOf(1500 * blockSize);
    request.verify = true;
    BurnRun run;
    run.at(state, [&] { QVERIFY(QDir().rename(recorder().mediumFolder(), aside)); });
    QVERIFY(!run.burn(recorder(), request));
    QVERIFY(!device().mediaIsPresent());

    QVERIFY(QDir().rename(aside, recorder().mediumFolder())); // put in again
    QVERIFY(device().mediaIsPresent());
    QVERIFY(!device().mediaIsBlank());
    QVERIFY(!m_drive->mediumFiles().contains(QStringLiteral("disc.iso")));
}

void VirtualBurnTest::exchangedMediumIsNotTouched()
{
    VirtualMedium other = VirtualMedium::blank(*MediaTypes::find(DRDeviceMediaTypeBDR));
    other.state = VirtualMedium::State::Complete;
    const QString content = m_drive->mediumFile(QStringLiteral("disc.iso"));
    BurnRun run;
    run.at(DRStatusStateTrackWrite, [&] {
        QVERIFY(
            QDir().rename(recorder().mediumFolder(), recorder().folder() + QStringLiteral("/x")));
        QVERIFY(QDir().mkpath(recorder().mediumFolder()));
        QVERIFY(other.store(recorder().mediumFolder()));
        QVERIFY(QFile::copy(m_drive->makeSource(QStringLiteral("other"), 10), content));
    });
    QVERIFY(!run.burn(recorder(), imageOf(1500 * blockSize)));
    QCOMPARE(recorder().medium()->identifier, other.identifier);
    QCOMPARE(recorder().medium()->state, VirtualMedium::State::Complete);
    QCOMPARE(fileContent(content).size(), 10);
}

void VirtualBurnTest::fullDisk()
{
    const QByteArray folder = QFile::encodeName(recorder().mediumFolder());
    const VirtualMedium medium = *recorder().medium();
    if (::mount("none", folder.constData(), "tmpfs", 0, "size=2m") != 0)
        QSKIP("needs the right to mount a file system");
    const auto unmount = qScopeGuard([&folder] { ::umount2(folder.constData(), MNT_DETACH); });
    QVERIFY(medium.store(recorder().mediumFolder()));
    QVERIFY(device().mediaIsBlank());

    const Result<> burned = BurnRun().burn(recorder(), imageOf(2000 * blockSize));
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(QStringLiteral("No space left")), qPrintable(burned.error()));
    verifyUnusable();
}

MAPLORN_TEST_MAIN(VirtualBurnTest)
#include "VirtualBurnTest.moc"
