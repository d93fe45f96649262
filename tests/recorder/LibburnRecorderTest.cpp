// Burning and erasing with libburn in the emulated drive: what lies on the disc then, and every way
// in which a job ends.
#include "AudioDisc.h"
#include "DRCDTextKeys.h"
#include "DRKeys.h"
#include "RealDrive.h"
#include "TestMain.h"

#include <QRegularExpression>

namespace {

constexpr qint64 blockSize = 2048;

}

class LibburnRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<RealDrive>(); }
    void cleanup() { m_drive.reset(); }

    void burnsData_data();
    void burnsData();
    void burnsAudio_data();
    void burnsAudio();
    void alignsWhatStartsWithATone();
    void shortTracksAreFilledUp();
    void erases_data();
    void erases();
    void formatsWhatWasNeverFormatted_data();
    void formatsWhatWasNeverFormatted();
    void faults_data();
    void faults();
    void cancelled_data();
    void cancelled();
    void cancelledErase_data();
    void cancelledErase();
    void takenOutWhileErasing_data();
    void takenOutWhileErasing();
    void unpluggedWhileErasing();

private:
    std::unique_ptr<RealDrive> m_drive;
};

void LibburnRecorderTest::burnsData_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("appendable");
    QTest::addColumn<qint64>("blocks");
    QTest::newRow("CD-R at once") << QString(DRDeviceMediaTypeCDR) << false << qint64(700);
    QTest::newRow("CD-RW appendable") << QString(DRDeviceMediaTypeCDRW) << true << qint64(701);
    QTest::newRow("DVD+RW") << QString(DRDeviceMediaTypeDVDPlusRW) << false << qint64(1000);
    QTest::newRow("BD-RE") << QString(DRDeviceMediaTypeBDRE) << false << qint64(333);
    QTest::newRow("BD-RE appendable") << QString(DRDeviceMediaTypeBDRE) << true << qint64(64);
}

void LibburnRecorderTest::burnsData()
{
    QFETCH(const QString, type);
    QFETCH(const bool, appendable);
    QFETCH(const qint64, blocks);
    m_drive->insert(type, 20000);
    BurnRequest request = m_drive->imageOf(blocks * blockSize);
    request.verify = true;
    request.appendable = appendable;
    request.speed = 1408;
    m_drive->emulated().noteCommands();
    BurnRun run;
    const Result<> burned = m_drive->burn(run, request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QCOMPARE(run.states(),
             (QStringList{DRStatusStateSessionOpen, DRStatusStateTrackOpen, DRStatusStateTrackWrite,
                          DRStatusStateTrackClose, DRStatusStateSessionClose,
                          DRStatusStateVerifying, DRStatusStateFinishing}));
    QVERIFY(std::ranges::is_sorted(run.fractions()));
    QVERIFY(m_drive->burnedData(blocks * blockSize)
            == fileContent(m_drive->sourcePath(QStringLiteral("image.iso"))));
    QVERIFY(!m_drive->device().mediaIsBlank());
    QCOMPARE(m_drive->device().mediaIsAppendable(), appendable && type == DRDeviceMediaTypeCDRW);
    if (type != DRDeviceMediaTypeCDRW)
        return;
    const QRegularExpression setSpeed(QStringLiteral("^bb 00 .. .. 05 80"));
    QVERIFY(!m_drive->emulated().commands().filter(setSpeed).isEmpty());
}

void LibburnRecorderTest::burnsAudio_data()
{
    QTest::addColumn<bool>("appendable");
    QTest::newRow("closed") << false;
    QTest::newRow("appendable") << true;
}

void LibburnRecorderTest::burnsAudio()
{
    QFETCH(const bool, appendable);
    m_drive->insert(DRDeviceMediaTypeCDR);
    const AudioDisc disc(*m_drive);
    BurnRequest request = disc.request();
    request.verify = true;
    request.appendable = appendable;
    DRCDTextBlock text = DRCDTextBlock::cdTextBlockWithLanguage(QStringLiteral("en"),
                                                                DRCDTextBlock::Encoding::Ascii);
    text.setTrackDictionaries({{{DRCDTextTitleKey, QStringLiteral("Disc")}},
                               {{DRCDTextTitleKey, QStringLiteral("One")}}});
    request.cdText = {text};
    const Result<> burned = m_drive->burn(request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(m_drive->burnedAudio() == disc.content());
    QVERIFY(m_drive->emulated().packs().contains("Disc"));
    QCOMPARE(m_drive->medium().value(DRDeviceMediaTrackCountKey).toInt(), 3);
    QCOMPARE(m_drive->device().mediaIsAppendable(), appendable);
}

// The drive reads from an address that is off by six samples. The tone repeats itself every four.
void LibburnRecorderTest::alignsWhatStartsWithATone()
{
    const QByteArray wave = QByteArray::fromHex("01000100020002000300030002000200");
    const QByteArray sound = wave.repeated(20 * 588 / 4) + WavTracks::noise(300 * 588, 1);
    BurnRequest request;
    request.tracks = {DRTrack::trackForAudioFile(
        m_drive->storeSource(QStringLiteral("tone.wav"), WavTracks::wav(sound)))};
    request.verify = true;
    const Result<> burned = m_drive->burn(request);
    QVERIFY2(burned, qPrintable(burned.error()));
}

// A track on CD lasts four seconds, 300 sectors, at least.
void LibburnRecorderTest::shortTracksAreFilledUp()
{
    BurnRequest request;
    QByteArray content;
    for (const int sectors : {100, 310, 1}) {
        const QByteArray sound = WavTracks::noise(sectors * 588, static_cast<uint>(sectors));
        const QString name = QStringLiteral("%1.wav").arg(sectors);
        request.tracks.append(
            DRTrack::trackForAudioFile(m_drive->storeSource(name, WavTracks::wav(sound))));
        content += sound + QByteArray(std::max(300 - sectors, 0) * 2352, '\0');
    }
    request.verify = true;
    const Result<> burned = m_drive->burn(request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(m_drive->burnedAudio() == content);
}

void LibburnRecorderTest::erases_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("complete");
    for (const QLatin1StringView type :
         {DRDeviceMediaTypeCDRW, DRDeviceMediaTypeDVDPlusRW, DRDeviceMediaTypeBDRE})
        for (const bool complete : {false, true})
            QTest::addRow("%s %d", type.data(), complete) << QString(type) << complete;
}

void LibburnRecorderTest::erases()
{
    QFETCH(const QString, type);
    QFETCH(const bool, complete);
    constexpr qint64 size = 2000 * blockSize;
    m_drive->insert(type, 20000);
    QVERIFY(m_drive->burn(m_drive->imageOf(size)));
    QVERIFY(!m_drive->device().mediaIsBlank());
    BurnRun run;
    const Result<> erased = m_drive->erase(run, complete ? EraseType::Complete : EraseType::Quick);
    QVERIFY2(erased, qPrintable(erased.error()));
    QVERIFY(std::ranges::is_sorted(run.fractions()));
    QVERIFY(m_drive->device().mediaIsBlank());
    const bool allZero = m_drive->burnedData(size) == QByteArray(size, '\0');
    QCOMPARE(allZero, complete || type == DRDeviceMediaTypeCDRW);
    QVERIFY(m_drive->burn(m_drive->imageOf(size)));
}

void LibburnRecorderTest::formatsWhatWasNeverFormatted_data()
{
    QTest::addColumn<QString>("medium");
    QTest::newRow("DVD+RW") << "dvd+rw 20000 unformatted";
    QTest::newRow("BD-RE") << "bd-re 20000 unformatted";
}

void LibburnRecorderTest::formatsWhatWasNeverFormatted()
{
    QFETCH(const QString, medium);
    for (const bool erasedFirst : {true, false}) {
        m_drive->emulated().insert(medium);
        QTRY_COMPARE_WITH_TIMEOUT(m_drive->device().mediaSpaceFree(), DRMSF(20000), 10000);
        BurnRun run;
        if (erasedFirst)
            QVERIFY(m_drive->erase(run, EraseType::Quick));
        const Result<> burned = m_drive->burn(m_drive->imageOf(500 * blockSize));
        QVERIFY2(burned, qPrintable(burned.error()));
    }
}

void LibburnRecorderTest::faults_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("reason");
    const QString cd = DRDeviceMediaTypeCDR;
    const QString dvd = DRDeviceMediaTypeDVDPlusRW;
    const QString audio; // on CD-R
    QTest::newRow("CD write error") << cd << "write-error 300"
                                    << "SCSI error on write";
    QTest::newRow("DVD write error") << dvd << "write-error 300"
                                     << "SCSI error on write";
    QTest::newRow("read error") << cd << "read-error 300"
                                << "Block 300 of the disc cannot be read";
    QTest::newRow("wrong bit") << cd << "flip 300"
                               << "difference in block 300";
    QTest::newRow("unplugged") << cd << "gone 300"
                               << "The recorder was disconnected";
    QTest::newRow("unplugged while verifying") << dvd << "gone-reading 700"
                                               << "disconnected";
    QTest::newRow("taken out") << dvd << "pull-out 700"
                               << "The medium was taken out";
    QTest::newRow("audio write error") << audio << "write-error 300"
                                       << "SCSI error on write";
    QTest::newRow("audio read error") << audio << "read-error 300"
                                      << "(00:04:00) cannot be read";
    QTest::newRow("wrong sample") << audio << "flip 300"
                                  << "difference in sector 300";
    QTest::newRow("refused") << cd << "refuse 0x5d"
                             << "cue sheet";
}

void LibburnRecorderTest::faults()
{
    QFETCH(const QString, type);
    QFETCH(const QString, fault);
    QFETCH(const QString, reason);
    m_drive->insert(type.isEmpty() ? QString(DRDeviceMediaTypeCDR) : type, 20000);
    m_drive->emulated().setFaults(fault);
    BurnRequest request =
        type.isEmpty() ? AudioDisc(*m_drive).request() : m_drive->imageOf(1000 * blockSize);
    request.verify = true;
    const Result<> burned = m_drive->burn(request);
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(reason, Qt::CaseInsensitive), qPrintable(burned.error()));
    QVERIFY(!m_drive->device().status().value(DRDeviceIsBusyKey).toBool());
}

void LibburnRecorderTest::cancelled_data()
{
    QTest::addColumn<QString>("state");
    for (const QLatin1StringView state :
         {DRStatusStateSessionOpen, DRStatusStateTrackWrite, DRStatusStateVerifying})
        QTest::newRow(state.data()) << QString(state);
}

void LibburnRecorderTest::cancelled()
{
    QFETCH(const QString, state);
    m_drive->emulated().setFaults(QStringLiteral("pace 8000"));
    BurnRequest request = m_drive->imageOf(4000 * blockSize);
    request.verify = true;
    BurnRun run;
    run.at(state, [&run] { run.stop(); });
    const Result<> burned = m_drive->burn(run, request);
    QCOMPARE(burned.error(), QStringLiteral("The job was cancelled."));
    QCOMPARE(run.states().last(), state);
    QCOMPARE(m_drive->device().mediaIsBlank(), state == DRStatusStateSessionOpen);
}

void LibburnRecorderTest::cancelledErase_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("command"); // the last that must not, or must, have been sent
    QTest::addColumn<bool>("sent");
    QTest::newRow("before it begins")
        << QString(DRDeviceMediaTypeCDRW) << QString() << "^a1" << false;
    QTest::newRow("in the middle")
        << QString(DRDeviceMediaTypeBDRE) << QString(DRStatusStateErasing) << "^35" << true;
}

void LibburnRecorderTest::cancelledErase()
{
    QFETCH(const QString, type);
    QFETCH(const QString, state);
    QFETCH(const QString, command);
    QFETCH(const bool, sent);
    m_drive->insert(type, 20000);
    QVERIFY(m_drive->burn(m_drive->imageOf(500 * blockSize)));
    m_drive->emulated().noteCommands();
    BurnRun run;
    if (state.isEmpty())
        run.stop();
    run.at(state, [&run] { run.stop(); });
    QCOMPARE(m_drive->erase(run, EraseType::Complete).error(),
             QStringLiteral("The job was cancelled."));
    const QRegularExpression wanted(command);
    QCOMPARE(!m_drive->emulated().commands().filter(wanted).isEmpty(), sent);
    QVERIFY(!m_drive->device().mediaIsBlank());
}

void LibburnRecorderTest::takenOutWhileErasing_data()
{
    QTest::addColumn<bool>("switchedOff");
    QTest::newRow("another medium") << false;
    QTest::newRow("switched off and on") << true;
}

// libburn waits for it without end: the drive is of use again when that has found a medium, or lost
// the drive.
void LibburnRecorderTest::takenOutWhileErasing()
{
    QFETCH(const bool, switchedOff);
    BurnRun run;
    m_drive->emulated().setFaults(QStringLiteral("pull-out-after 0xa1"));
    const Result<> erased = m_drive->erase(run, EraseType::Complete);
    QVERIFY2(erased.error().contains(QStringLiteral("taken out")), qPrintable(erased.error()));
    const Result<> burned = m_drive->burn(m_drive->imageOf(500 * blockSize));
    QVERIFY2(burned.error().contains(QStringLiteral("does not answer")),
             qPrintable(burned.error()));
    m_drive->emulated().setFaults({});
    if (switchedOff) {
        m_drive->detach();
        m_drive->attach();
    }
    m_drive->insert(DRDeviceMediaTypeCDRW);
    const Result<> burnedThen = m_drive->burn(m_drive->imageOf(500 * blockSize));
    QVERIFY2(burnedThen, qPrintable(burnedThen.error()));
}

void LibburnRecorderTest::unpluggedWhileErasing()
{
    BurnRun run;
    m_drive->emulated().setFaults(QStringLiteral("gone-after 0xa1"));
    const Result<> erased = m_drive->erase(run, EraseType::Complete);
    QVERIFY2(erased.error().contains(QStringLiteral("disconnected")), qPrintable(erased.error()));
    QTRY_VERIFY(!m_drive->device().isValid());
    m_drive->attach();
    QVERIFY(m_drive->burn(m_drive->imageOf(500 * blockSize)));
}

MAPLORN_TEST_MAIN(LibburnRecorderTest)
#include "LibburnRecorderTest.moc"
