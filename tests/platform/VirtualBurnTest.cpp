#include "BurnRun.h"
#include "DRKeys.h"
#include "TestMain.h"
#include "VirtualBurnFaults.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 blockSize = 2048;

}

class VirtualBurnTest : public VirtualBurnFaults
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_drive = std::make_unique<VirtualDrive>();
        m_drive->insert(DRDeviceMediaTypeCDR);
    }
    void fullDisk() { burnOnFullDisk("size=2m", {}, imageOf(2000 * blockSize)); }

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

private:
    [[nodiscard]] BurnRequest request() const override
    {
        BurnRequest request = imageOf(1500 * blockSize);
        request.verify = true;
        return request;
    }
    [[nodiscard]] QStringList contentFiles() const override { return {u"disc.iso"_s}; }
    [[nodiscard]] BurnRequest imageOf(qint64 bytes) const;
};

BurnRequest VirtualBurnTest::imageOf(qint64 bytes) const
{
    BurnRequest request;
    request.tracks = {DRTrack::trackForImageFile(m_drive->makeSource(u"image.iso"_s, bytes))};
    return request;
}

void VirtualBurnTest::states_data()
{
    QTest::addColumn<bool>("verify");
    QTest::newRow("unverified") << false;
    QTest::newRow("verified") << true;
}

void VirtualBurnTest::states()
{
    QFETCH(const bool, verify);
    BurnRequest request = imageOf(300 * blockSize);
    request.verify = verify;
    BurnRun run;
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QCOMPARE(run.states(), BurnRun::wholeBurn(verify));
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
    QByteArray expected = fileContent(m_drive->sourcePath(u"image.iso"_s));
    expected.append(blocks * blockSize - size, '\0');
    QVERIFY(fileContent(m_drive->mediumFile(u"disc.iso"_s)) == expected);
}

void VirtualBurnTest::folderIsReadByOthers()
{
    const QString reader = QStandardPaths::findExecutable(u"xorriso"_s);
    if (reader.isEmpty())
        QSKIP("xorriso is not installed");
    const QStringList names{u"Some Folder/Inner/a file with a long name, Ünïcode.txt"_s,
                            u"Some Folder/empty"_s, u"top.bin"_s};
    for (const QString &name : names)
        m_drive->makeSource(u"Holiday/"_s + name, name.endsWith("empty"_L1) ? 0 : 5000);
    BurnRequest request;
    request.tracks = {
        DRTrack::trackForRootFolder(DRFolder::folderWithPath(m_drive->sourcePath(u"Holiday"_s)))};
    request.verify = true;
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));

    QProcess process;
    process.start(reader, {u"-indev"_s, m_drive->mediumFile(u"disc.iso"_s), u"-find"_s, u"/"_s,
                           u"-type"_s, u"f"_s});
    QVERIFY(process.waitForFinished());
    QStringList listed = QString::fromUtf8(process.readAllStandardOutput())
                             .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    listed.sort();
    QStringList expected;
    for (const QString &name : names)
        expected.append(u"'/%1'"_s.arg(name));
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
    const QString missing = m_drive->sourcePath(u"missing"_s);
    BurnRequest request = imageOf(fault == "empty image"_L1 ? 0 : 11 * blockSize);
    if (fault == "larger than the medium"_L1)
        m_drive->setCapacity(10);
    if (fault == "source missing"_L1)
        request.tracks = {DRTrack::trackForImageFile(missing)};
    if (fault == "folder missing"_L1)
        request.tracks = {DRTrack::trackForRootFolder(DRFolder::folderWithPath(missing))};
    if (fault == "medium in the source"_L1)
        request.tracks = {
            DRTrack::trackForRootFolder(DRFolder::folderWithPath(recorder().folder()))};
    if (fault == "no track"_L1)
        request.tracks.clear();
    if (fault == "two tracks"_L1)
        request.tracks.append(request.tracks.first());

    verifyRefused(request, fault.endsWith("missing"_L1) ? missing : QString());
}

void VirtualBurnTest::layoutOfWholeMediumFits()
{
    m_drive->setCapacity(11);
    const Result<> burned = BurnRun().burn(recorder(), imageOf(11 * blockSize));
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(!BurnRun().burn(recorder(), imageOf(blockSize))); // not blank any more
    QCOMPARE(fileContent(m_drive->mediumFile(u"disc.iso"_s)).size(), 11 * blockSize);
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
    BurnRequest request = this->request();
    request.verify = verify;
    BurnRun run;
    run.at(DRStatusStateTrackClose, [this, position] { changeByte(u"disc.iso.part"_s, position); });
    QCOMPARE(static_cast<bool>(run.burn(recorder(), request)), !verify);
    if (verify)
        verifyUnusable();
}

MAPLORN_TEST_MAIN(VirtualBurnTest)
#include "VirtualBurnTest.moc"
