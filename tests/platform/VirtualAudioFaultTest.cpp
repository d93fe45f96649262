#include "AudioDisc.h"
#include "BurnRun.h"
#include "DRCDTextKeys.h"
#include "MediaTypes.h"
#include "PackTools.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <QDir>

#include <sys/mount.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList nothing{u"medium.plist"_s};

DRCDTextBlock titles(const QString &language, int lengthOfEach)
{
    const QString text(lengthOfEach, u'x');
    return PackTools::block(
        language, PackTools::titles({u"1"_s + text, u"2"_s + text, u"3"_s + text, u"4"_s + text}));
}

}

class VirtualAudioFaultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_drive.reset(); }

    void refusedWithMediumUntouched_data();
    void refusedWithMediumUntouched();
    void cancelledBeforeWriting();
    void mostThatFits();
    void sourceChangesMeanwhile_data();
    void sourceChangesMeanwhile();
    void discChangedBeforeVerifying_data();
    void discChangedBeforeVerifying();
    void cancelled_data();
    void cancelled();
    void mediumPulledOut_data();
    void mediumPulledOut();
    void exchangedMediumIsNotTouched_data();
    void exchangedMediumIsNotTouched();
    void fullDisk_data();
    void fullDisk();
    void speedIsKeptTo();

private:
    [[nodiscard]] VirtualRecorder &recorder() const { return m_drive->recorder(); }
    [[nodiscard]] DRDevice device() const { return m_drive->device(); }
    [[nodiscard]] BurnRequest request() const;
    void spoil(const QString &fault, BurnRequest &request) const;
    void verifyUnusable() const;

    std::unique_ptr<VirtualDrive> m_drive;
    std::unique_ptr<AudioDisc> m_disc;
};

void VirtualAudioFaultTest::init()
{
    m_drive = std::make_unique<VirtualDrive>();
    m_disc = std::make_unique<AudioDisc>(*m_drive);
}

BurnRequest VirtualAudioFaultTest::request() const
{
    BurnRequest request = m_disc->request();
    request.cdText = {titles(u"en"_s, 10)};
    request.verify = true;
    return request;
}

// As an aborted disc is: something is on it, and nothing can be read.
void VirtualAudioFaultTest::verifyUnusable() const
{
    QVERIFY(device().mediaIsPresent());
    QVERIFY(!device().mediaIsBlank());
    QVERIFY(!device().mediaIsAppendable());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualAudioFaultTest::refusedWithMediumUntouched_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("data before audio") << u"either data or audio"_s;
    QTest::newRow("data after audio") << u"either data or audio"_s;
    QTest::newRow("100 tracks") << u"99 tracks"_s;
    QTest::newRow("DVD") << u"CD only"_s;
    QTest::newRow("a sector too small") << u"916 blocks"_s;
    for (const char *fault :
         {"third missing", "third a folder", "third truncated", "third no audio", "third empty"})
        QTest::newRow(fault) << u"third.wav"_s;
    QTest::newRow("all missing") << u"first.wav"_s;
    QTest::newRow("too much text in a language") << u"German"_s;
    QTest::newRow("nine languages") << u"8 languages"_s;
}

void VirtualAudioFaultTest::spoil(const QString &fault, BurnRequest &request) const
{
    const DRTrack data = DRTrack::trackForImageFile(m_drive->makeSource(u"image.iso"_s, 5000));
    if (fault == "data before audio"_L1)
        request.tracks.prepend(data);
    if (fault == "data after audio"_L1)
        request.tracks.append(data);
    if (fault == "100 tracks"_L1)
        request.tracks = QList<DRTrack>(100, request.tracks.first());
    if (fault == "DVD"_L1)
        m_drive->insert(DRDeviceMediaTypeDVDPlusRW);
    if (fault == "a sector too small"_L1)
        m_drive->setCapacity(AudioDisc::blockCount - 1);
    if (fault == "third truncated"_L1)
        QVERIFY(QFile::resize(m_disc->path(2), 100000));
    if (fault == "third no audio"_L1)
        m_drive->makeSource(u"third.wav"_s, 100000);
    if (fault == "third empty"_L1)
        m_drive->makeSource(u"third.wav"_s, 0);
    if (fault == "third missing"_L1 || fault == "third a folder"_L1)
        QVERIFY(QFile::remove(m_disc->path(2)));
    if (fault == "third a folder"_L1)
        QVERIFY(QDir().mkpath(m_disc->path(2)));
    if (fault == "all missing"_L1)
        QVERIFY(QDir(m_drive->sourcePath(QString())).removeRecursively());
    if (fault == "too much text in a language"_L1)
        request.cdText = {titles(u"en"_s, 10), titles(u"de"_s, 800)};
    if (fault == "nine languages"_L1)
        request.cdText = QList<DRCDTextBlock>(9, request.cdText.first());
}

void VirtualAudioFaultTest::refusedWithMediumUntouched()
{
    QFETCH(const QString, reason);
    BurnRequest request = this->request();
    spoil(QString::fromLatin1(QTest::currentDataTag()), request);
    BurnRun run;
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(reason), qPrintable(burned.error()));
    QCOMPARE(run.states(), QStringList());
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualAudioFaultTest::cancelledBeforeWriting()
{
    BurnRun run;
    run.stop();
    const Result<> burned = run.burn(recorder(), request());
    QCOMPARE(burned.error(), u"The job was cancelled."_s);
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualAudioFaultTest::mostThatFits()
{
    m_drive->setCapacity(99);
    BurnRequest request;
    const QByteArray samples = WavTracks::noise(AudioSource::sectorFrames, 1);
    request.tracks = QList<DRTrack>(99, DRTrack::trackForAudioFile(m_drive->storeSource(
                                            u"short.wav"_s, WavTracks::wav(samples))));
    request.verify = true;
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(fileContent(m_drive->mediumFile(u"disc.bin"_s)) == samples.repeated(99));
    QCOMPARE(recorder().medium()->tracks, QList<qint64>(99, 1));
}

void VirtualAudioFaultTest::sourceChangesMeanwhile_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"longer", "removed", "another sound as long"})
        QTest::newRow(change) << QString::fromLatin1(change);
}

void VirtualAudioFaultTest::sourceChangesMeanwhile()
{
    QFETCH(const QString, change);
    const QString source = m_disc->path(2);
    const QByteArray before = fileContent(source);
    BurnRun run;
    run.at(DRStatusStateSessionOpen, [&] {
        if (change == "removed"_L1)
            QVERIFY(QFile::remove(source));
        else if (change == "longer"_L1)
            m_drive->storeSource(u"third.wav"_s, before + before);
        else
            m_drive->storeSource(u"third.wav"_s,
                                 WavTracks::wav(WavTracks::noise((before.size() - 44) / 4, 9)));
    });
    const Result<> burned = run.burn(recorder(), request());
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(source), qPrintable(burned.error()));
    QCOMPARE(run.states().last(), QString(DRStatusStateTrackWrite));
    verifyUnusable();
}

void VirtualAudioFaultTest::discChangedBeforeVerifying_data()
{
    QTest::addColumn<qint64>("position");
    QTest::addColumn<bool>("verify");
    QTest::addColumn<QString>("reason");
    QTest::newRow("first byte") << qint64(0) << true << u"sector 0 of the disc (00:00:00)"_s;
    QTest::newRow("first of another track")
        << 301LL * 2352 << true << u"sector 301 of the disc (00:04:01)"_s;
    QTest::newRow("silence at the end") << 916LL * 2352 - 1 << true << u"sector 915 of the disc"_s;
    QTest::newRow("disc too short") << qint64(-1) << true << u"ends at sector 914"_s;
    QTest::newRow("not looked at") << qint64(0) << false << QString();
}

void VirtualAudioFaultTest::discChangedBeforeVerifying()
{
    QFETCH(const qint64, position);
    QFETCH(const bool, verify);
    QFETCH(const QString, reason);
    BurnRequest request = this->request();
    request.verify = verify;
    BurnRun run;
    run.at(DRStatusStateSessionClose, [this, position] {
        QFile medium(m_drive->mediumFile(u"disc.bin.part"_s));
        if (position < 0) {
            QVERIFY(medium.resize(914 * 2352 + 2351));
            return;
        }
        char byte = 0;
        if (medium.open(QIODevice::ReadWrite) && medium.seek(position) && medium.getChar(&byte)
            && medium.seek(position))
            medium.putChar(static_cast<char>(byte ^ 1));
    });
    const Result<> burned = run.burn(recorder(), request);
    QCOMPARE(static_cast<bool>(burned), !verify);
    if (!verify)
        return;
    QVERIFY2(burned.error().contains(reason), qPrintable(burned.error()));
    verifyUnusable();
}

void VirtualAudioFaultTest::cancelled_data()
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

void VirtualAudioFaultTest::cancelled()
{
    QFETCH(const QString, state);
    QFETCH(const bool, verify);
    BurnRequest request = this->request();
    request.verify = verify;
    BurnRun run;
    run.at(state, [&run] { run.stop(); });
    const Result<> burned = run.burn(recorder(), request);
    QCOMPARE(burned.error(), u"The job was cancelled."_s);
    QVERIFY(run.states().last() == state
            || !run.states().contains(QString(DRStatusStateFinishing)));
    verifyUnusable();
    QVERIFY(!device().status().value(DRDeviceIsBusyKey).toBool());
    QVERIFY(recorder().eject());
}

void VirtualAudioFaultTest::mediumPulledOut_data()
{
    QTest::addColumn<QString>("state");
    for (const QLatin1StringView state :
         {DRStatusStateTrackWrite, DRStatusStateVerifying, DRStatusStateFinishing})
        QTest::newRow(state.data()) << QString(state);
}

void VirtualAudioFaultTest::mediumPulledOut()
{
    QFETCH(const QString, state);
    const QString aside = recorder().folder() + u"/aside"_s;
    BurnRun run;
    run.at(state, [&] { QVERIFY(QDir().rename(recorder().mediumFolder(), aside)); });
    const Result<> burned = run.burn(recorder(), request());
    QCOMPARE(burned.error(), u"The medium was taken out of the recorder."_s);
    QVERIFY(!device().mediaIsPresent());

    QVERIFY(QDir().rename(aside, recorder().mediumFolder())); // put in again
    QVERIFY(!device().mediaIsBlank());
    QVERIFY(!m_drive->mediumFiles().contains(u"disc.bin"_s));
    QVERIFY(!m_drive->mediumFiles().contains(u"disc.cue"_s));
    QVERIFY(BurnRun().erase(recorder(), EraseType::Complete));
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualAudioFaultTest::exchangedMediumIsNotTouched_data()
{
    mediumPulledOut_data();
}

void VirtualAudioFaultTest::exchangedMediumIsNotTouched()
{
    QFETCH(const QString, state);
    VirtualMedium other = VirtualMedium::blank(*MediaTypes::find(DRDeviceMediaTypeCDR));
    other.state = VirtualMedium::State::Complete;
    other.audio = true;
    const QStringList files{u"disc.bin"_s, u"disc.cue"_s, u"medium.plist"_s};
    BurnRun run;
    run.at(state, [&] {
        QVERIFY(QDir().rename(recorder().mediumFolder(), recorder().folder() + u"/x"_s));
        QVERIFY(QDir().mkpath(recorder().mediumFolder()));
        QVERIFY(other.store(recorder().mediumFolder()));
        for (const char *name : {"disc.bin", "disc.cue"})
            QVERIFY(QFile::copy(m_drive->makeSource(u"other"_s, 10),
                                m_drive->mediumFile(QString::fromLatin1(name))));
    });
    QVERIFY(!run.burn(recorder(), request()));
    QCOMPARE(recorder().medium()->identifier, other.identifier);
    QCOMPARE(recorder().medium()->state, VirtualMedium::State::Complete);
    QCOMPARE(m_drive->mediumFiles(), files);
    QCOMPARE(fileContent(m_drive->mediumFile(u"disc.bin"_s)).size(), 10);
    QCOMPARE(fileContent(m_drive->mediumFile(u"disc.cue"_s)).size(), 10);
}

void VirtualAudioFaultTest::fullDisk_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<QString>("filledAt");
    QTest::newRow("no room for the sound") << "size=1m"_ba << QString();
    QTest::newRow("no room for the sheets") << "size=4m"_ba << QString(DRStatusStateFinishing);
    QTest::newRow("no room for the mark that it begins")
        << "size=4m"_ba << QString(DRStatusStateSessionOpen);
}

void VirtualAudioFaultTest::fullDisk()
{
    QFETCH(const QByteArray, size);
    QFETCH(const QString, filledAt);
    const QByteArray folder = QFile::encodeName(recorder().mediumFolder());
    const VirtualMedium medium = *recorder().medium();
    if (::mount("none", folder.constData(), "tmpfs", 0, size.constData()) != 0)
        QSKIP("needs the right to mount a file system");
    const auto unmount = qScopeGuard([&folder] { ::umount2(folder.constData(), MNT_DETACH); });
    QVERIFY(medium.store(recorder().mediumFolder()));
    QVERIFY(device().mediaIsBlank());

    QFile rest(m_drive->mediumFile(u"rest"_s));
    BurnRun run;
    run.at(filledAt, [&rest] {
        QVERIFY(rest.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (rest.write(QByteArray(1024, 'x')) > 0) {
        }
    });
    const Result<> burned = run.burn(recorder(), request());
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(u"No space left"_s), qPrintable(burned.error()));
    QCOMPARE(rest.remove(), !filledAt.isEmpty());
    if (filledAt != DRStatusStateSessionOpen)
        return verifyUnusable();
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualAudioFaultTest::speedIsKeptTo()
{
    BurnRequest request = m_disc->request();
    request.speed = 8000; // KB per second
    QElapsedTimer timer;
    timer.start();
    QVERIFY(BurnRun().burn(recorder(), request));
    QVERIFY(timer.elapsed() >= m_disc->content().size() / 8000);
}

MAPLORN_TEST_MAIN(VirtualAudioFaultTest)
#include "VirtualAudioFaultTest.moc"
