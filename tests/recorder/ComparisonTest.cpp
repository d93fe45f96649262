// The same disc burned by this system and by other programs in the same drive: the same blocks, the
// same sectors, the same CD-Text.
#include "AudioDisc.h"
#include "DRCDTextKeys.h"
#include "DRKeys.h"
#include "RealDrive.h"
#include "TestMain.h"
#include "TrackSheets.h"

using namespace Qt::StringLiterals;

class ComparisonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<RealDrive>(); }
    void cleanup() { m_drive.reset(); }

    void dataAsByXorriso_data();
    void dataAsByXorriso();
    void audioAsByCdrdao_data();
    void audioAsByCdrdao();

private:
    void runOther(const QString &program, const QStringList &arguments) const
    {
        const EmulatedDrive::Run run =
            m_drive->emulated().run(program, arguments, m_drive->sourcePath({}));
        QVERIFY2(run.exitStatus == 0, qPrintable(run.output));
    }

    std::unique_ptr<RealDrive> m_drive;
};

void ComparisonTest::dataAsByXorriso_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("appendable");
    QTest::newRow("CD at once") << QString(DRDeviceMediaTypeCDR) << false;
    QTest::newRow("CD appendable") << QString(DRDeviceMediaTypeCDR) << true;
    QTest::newRow("DVD+RW") << QString(DRDeviceMediaTypeDVDPlusRW) << false;
    QTest::newRow("BD-RE") << QString(DRDeviceMediaTypeBDRE) << false;
}

void ComparisonTest::dataAsByXorriso()
{
    QFETCH(const QString, type);
    QFETCH(const bool, appendable);
    constexpr qint64 blocks = 800;
    const QString image = m_drive->makeSource(u"image.iso"_s, blocks * 2048 - 100);
    const bool cd = type == DRDeviceMediaTypeCDR;
    // With what lies before and behind, as far as it could have been written.
    const auto onDisc = [&] { return m_drive->emulated().data(cd ? -150 : 0, blocks + 300, cd); };

    m_drive->insert(type, 5000);
    QStringList arguments{u"-as"_s, u"cdrecord"_s, u"dev=/dev/sr0"_s, u"-nopad"_s};
    if (appendable)
        arguments.append(u"-multi"_s);
    runOther(u"xorriso"_s, arguments + QStringList{image});
    const QByteArray theirs = onDisc();

    m_drive->insert(type, 5000);
    BurnRequest request;
    request.tracks = {DRTrack::trackForImageFile(image)};
    request.appendable = appendable;
    const Result<> burned = m_drive->burn(request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(theirs.contains(fileContent(image)));
    QVERIFY(onDisc() == theirs);
}

void ComparisonTest::audioAsByCdrdao_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::newRow("no CD-Text") << QStringList();
    QTest::newRow("one language") << QStringList{u"en"_s};
    QTest::newRow("three languages") << QStringList{u"en"_s, u"de"_s, u"fr"_s};
}

void ComparisonTest::audioAsByCdrdao()
{
    QFETCH(const QStringList, languages);
    m_drive->insert(DRDeviceMediaTypeCDR);
    const AudioDisc disc(*m_drive);
    QList<DRCDTextBlock> text;
    for (const QString &language : languages) {
        QList<QVariantMap> dictionaries;
        for (int track = 0; track <= 3; ++track)
            dictionaries.append(
                {{DRCDTextTitleKey, QString(u"Título %1 (%2)"_s.arg(track).arg(language))},
                 {DRCDTextPerformerKey, QString(u"Künstler %1"_s.arg(track))},
                 {DRCDTextComposerKey, QString(u"Composer number %1"_s.arg(track))}});
        dictionaries.first().insert(DRCDTextGenreCodeKey, 14);
        text.append(
            DRCDTextBlock::cdTextBlockWithLanguage(language, DRCDTextBlock::Encoding::IsoLatin1));
        text.last().setTrackDictionaries(dictionaries);
    }
    m_drive->storeSource(u"disc.bin"_s, disc.content());
    m_drive->storeSource(
        u"disc.toc"_s,
        TrackSheets::tocFile({AudioDisc::lengths.begin(), AudioDisc::lengths.end()}, text));
    runOther(u"cdrdao"_s, {u"write"_s, u"--device"_s, u"/dev/sr0"_s, u"--driver"_s,
                           u"generic-mmc:0x10"_s, u"-n"_s, u"disc.toc"_s});
    // From the pause before the first track up to where the lead-out begins, and a little on.
    const auto onDisc = [&] {
        return m_drive->emulated().sectors(-150, AudioDisc::blockCount + 300);
    };
    const QByteArray theirs = onDisc();
    const QByteArray theirPacks = m_drive->emulated().packs();

    m_drive->insert(DRDeviceMediaTypeCDR);
    BurnRequest request = disc.request();
    request.cdText = text;
    const Result<> burned = m_drive->burn(request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QVERIFY(onDisc() == theirs);
    QCOMPARE(m_drive->emulated().packs().toHex(' '), theirPacks.toHex(' '));
    QCOMPARE(theirPacks.isEmpty(), languages.isEmpty());
}

MAPLORN_TEST_MAIN(ComparisonTest)
#include "ComparisonTest.moc"
