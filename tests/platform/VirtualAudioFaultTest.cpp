#include "AudioDisc.h"
#include "BurnRun.h"
#include "DRCDTextKeys.h"
#include "PackTools.h"
#include "TestMain.h"
#include "VirtualBurnFaults.h"

#include <QDateTime>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

DRCDTextBlock titles(const QString &language, int lengthOfEach)
{
    const QString text(lengthOfEach, u'x');
    return PackTools::block(
        language, PackTools::titles({u"1"_s + text, u"2"_s + text, u"3"_s + text, u"4"_s + text}));
}

}

class VirtualAudioFaultTest : public VirtualBurnFaults
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_drive = std::make_unique<VirtualDrive>();
        m_disc = std::make_unique<AudioDisc>(*m_drive);
    }

    void refusedWithMediumUntouched_data();
    void refusedWithMediumUntouched();
    void mostThatFits();
    void sourceChangesMeanwhile_data();
    void sourceChangesMeanwhile();
    void discChangedBeforeVerifying_data();
    void discChangedBeforeVerifying();
    void fullDisk_data();
    void fullDisk();
    void speedIsKeptTo();

private:
    [[nodiscard]] BurnRequest request() const override;
    [[nodiscard]] QStringList contentFiles() const override
    {
        return {u"disc.bin"_s, u"disc.cue"_s};
    }
    void spoil(const QString &fault, BurnRequest &request) const;

    std::unique_ptr<AudioDisc> m_disc;
};

BurnRequest VirtualAudioFaultTest::request() const
{
    BurnRequest request = m_disc->request();
    request.cdText = {titles(u"en"_s, 10)};
    request.verify = true;
    return request;
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
    verifyRefused(request, reason);
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
        QFile changed(source); // later by more than a tick of a coarse clock
        if (changed.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
            changed.setFileTime(QDateTime::currentDateTime().addSecs(1),
                                QFileDevice::FileModificationTime);
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
        if (position < 0)
            QVERIFY(QFile::resize(m_drive->mediumFile(u"disc.bin.part"_s), 914 * 2352 + 2351));
        else
            changeByte(u"disc.bin.part"_s, position);
    });
    const Result<> burned = run.burn(recorder(), request);
    QCOMPARE(static_cast<bool>(burned), !verify);
    if (!verify)
        return;
    QVERIFY2(burned.error().contains(reason), qPrintable(burned.error()));
    verifyUnusable();
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
    burnOnFullDisk(size.constData(), filledAt, request());
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
