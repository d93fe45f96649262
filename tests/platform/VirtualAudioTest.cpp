#include "AudioDisc.h"
#include "BurnRun.h"
#include "DRCDTextKeys.h"
#include "JobLog.h"
#include "PackTools.h"
#include "PropertyList.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <QDir>
#include <QProcess>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

constexpr int trackCount = static_cast<int>(AudioDisc::lengths.size());
const QStringList sheetsAndSound{u"disc.bin"_s, u"disc.cdt"_s, u"disc.cue"_s, u"disc.toc"_s,
                                 u"medium.plist"_s};

const QStringList eightLanguages{u"en"_s, u"de"_s, u"fr"_s, u"es"_s,
                                 u"it"_s, u"nl"_s, u"pt"_s, u"sv"_s};

// Texts of every kind, none like the one before, with all that has to be quoted in a sheet.
QList<QVariantMap> everyText(const QString &language)
{
    const auto perTrack =
        std::to_array({DRCDTextTitleKey, DRCDTextPerformerKey, DRCDTextSongwriterKey,
                       DRCDTextComposerKey, DRCDTextArrangerKey});
    QList<QVariantMap> dictionaries;
    for (int index = 0; index <= trackCount; ++index) {
        QVariantMap texts;
        for (const QLatin1StringView key : perTrack)
            texts.insert(key, QString(u"\"%1\" \\ \u00e4\u00ff 007 {%2} %3"_s.arg(key.sliced(8, 4))
                                          .arg(index)
                                          .arg(language)));
        texts.insert(DRCDTextMCNISRCKey,
                     index == 0 ? u"4006408126004"_s : u"DEA12160000%1"_s.arg(index));
        dictionaries.append(texts);
    }
    QVariantMap &disc = dictionaries.first();
    disc.insert(DRCDTextSpecialMessageKey, u"\\\"Message\\\" // no comment"_s);
    disc.insert(DRCDTextDiscIdentKey, u"MD \"4711\""_s);
    disc.insert(DRCDTextClosedKey, u"Closed \u00fc"_s);
    disc.insert(DRCDTextGenreCodeKey, 14);
    disc.insert(DRCDTextCopyrightAssertedForTitlesKey, true);
    return dictionaries;
}

DRCDTextBlock blockIn(const QString &language)
{
    return PackTools::block(language, everyText(language));
}

QList<DRCDTextBlock> blocksIn(const QStringList &languages)
{
    QList<DRCDTextBlock> blocks;
    for (const QString &language : languages)
        blocks.append(blockIn(language));
    return blocks;
}

// What another program prints, and says of errors; fails the test where it ends otherwise than
// well.
QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    const QByteArray output = process.readAll();
    if (!ended || process.exitCode() != 0)
        QTest::qFail(output.constData(), __FILE__, __LINE__);
    return output;
}

}

class VirtualAudioTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_drive.reset(); }

    void wholeBurn_data();
    void wholeBurn();
    void everyLanguageIsReadByOthers();
    void tocIsReadByOthers();
    void bytesOfSamplesAreInOrder();
    void textsOfProperties_data();
    void textsOfProperties();
    void erased_data();
    void erased();
    void ejectedIsKept();
    void mediumOfFormerTimesIsData();

private:
    [[nodiscard]] VirtualRecorder &recorder() const { return m_drive->recorder(); }
    [[nodiscard]] QString path(const char *name) const
    {
        return m_drive->mediumFile(QString::fromLatin1(name));
    }
    void burn(const QStringList &languages) const;

    std::unique_ptr<VirtualDrive> m_drive;
    std::unique_ptr<AudioDisc> m_disc;
};

void VirtualAudioTest::init()
{
    m_drive = std::make_unique<VirtualDrive>();
    m_disc = std::make_unique<AudioDisc>(*m_drive);
}

void VirtualAudioTest::burn(const QStringList &languages) const
{
    BurnRequest request = m_disc->request();
    request.cdText = blocksIn(languages);
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
}

void VirtualAudioTest::wholeBurn_data()
{
    QTest::addColumn<bool>("verify");
    QTest::newRow("unverified") << false;
    QTest::newRow("verified") << true;
}

void VirtualAudioTest::wholeBurn()
{
    QFETCH(const bool, verify);
    BurnRequest request = m_disc->request();
    request.verify = verify;
    request.cdText = blocksIn({u"en"_s, u"de"_s});
    BurnRun run;
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QCOMPARE(run.states(), BurnRun::wholeBurn(verify));
    QVERIFY(std::ranges::is_sorted(run.fractions()));
    QCOMPARE(run.fractions().last(), 1.0);

    QCOMPARE(m_drive->mediumFiles(), sheetsAndSound);
    QVERIFY(fileContent(path("disc.bin")) == m_disc->content());
    QCOMPARE(fileContent(path("disc.cdt")), PackTools::packs(request.cdText, trackCount) + '\0');
    QCOMPARE(fileContent(path("disc.cue")), "CDTEXTFILE \"disc.cdt\"\n"
                                            "FILE \"disc.bin\" BINARY\n"
                                            "  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
                                            "  TRACK 02 AUDIO\n    INDEX 01 00:04:01\n"
                                            "  TRACK 03 AUDIO\n    INDEX 01 00:08:11\n"_ba);

    const QVariantMap medium = m_drive->device().status().value(DRDeviceMediaInfoKey).toMap();
    QCOMPARE(medium.value(DRDeviceMediaIsBlankKey), QVariant(false));
    QCOMPARE(medium.value(DRDeviceMediaIsAppendableKey), QVariant(false));
    QCOMPARE(medium.value(DRDeviceMediaBlocksUsedKey).toInt(), AudioDisc::blockCount);
    QCOMPARE(medium.value(DRDeviceMediaTrackCountKey).toInt(), trackCount);
    int start = 0;
    for (size_t i = 0; i < AudioDisc::lengths.size(); ++i) {
        const QString reference =
            medium.value(DRDeviceTrackRefsKey).toStringList().value(static_cast<qsizetype>(i));
        const QVariantMap track =
            medium.value(DRDeviceTrackInfoKey).toMap().value(reference).toMap();
        QCOMPARE(track.value(DRTrackNumberKey).toInt(), static_cast<int>(i) + 1);
        QCOMPARE(track.value(DRBlockSizeKey).toInt(), 2352);
        QCOMPARE(track.value(DRBlockTypeKey), QVariant(0));
        QCOMPARE(track.value(DRTrackTypeKey).toString(), QString(DRTrackTypeComplete));
        QCOMPARE(track.value(DRTrackStartAddressKey).value<DRMSF>(), DRMSF(start));
        QCOMPARE(track.value(DRTrackLengthKey).value<DRMSF>(), DRMSF(AudioDisc::lengths.at(i)));
        start += AudioDisc::lengths.at(i);
    }
}

void VirtualAudioTest::everyLanguageIsReadByOthers()
{
    burn(eightLanguages);
    QCOMPARE(fileContent(path("disc.cdt")),
             PackTools::packs(blocksIn(eightLanguages), trackCount) + '\0');
    const QString printed =
        QString::fromUtf8(outputOf(u"cd-info"_s, {u"--no-device-info"_s, u"--no-cddb"_s,
                                                  u"--cue-file="_s + path("disc.cue")}));
    for (const QString &language : eightLanguages)
        for (const QVariantMap &texts : everyText(language))
            for (const QLatin1StringView key : {DRCDTextTitleKey, DRCDTextPerformerKey})
                QVERIFY2(printed.contains(texts.value(key).toString()), qPrintable(printed));
    // A track is printed with its start on a disc, two seconds after that in the file.
    for (const char *start : {"00:02:00", "00:06:01", "00:10:11"})
        QVERIFY2(printed.contains(QLatin1String(start)), qPrintable(printed));
}

void VirtualAudioTest::tocIsReadByOthers()
{
    burn(eightLanguages);
    for (const QString &command : {u"show-toc"_s, u"read-test"_s}) {
        QByteArray printed = outputOf(u"cdrdao"_s, {command, path("disc.toc")});
        // Told to an ordinary user, and not about the disc.
        printed.replace("WARNING: No super user permission to setup real time scheduling.", "");
        QVERIFY2(!printed.contains("ERROR") && !printed.contains("WARNING"), printed.constData());
        for (const char *end : {"00:04:01", "00:08:11", "00:12:16"})
            QVERIFY2(printed.contains(end) == (command == "show-toc"_L1), printed.constData());
    }

    // This one prints the first language's texts, and doubles backslashes.
    const QByteArray printed = outputOf(u"toc2cddb"_s, {path("disc.toc")});
    for (const QByteArray &text :
         {"DTITLE=\"Perf\" \\\\ \xe4\xff 007 {0} en / \"Titl\" \\\\ \xe4\xff 007 {0} en\n"_ba,
          "TTITLE2=\"Titl\" \\\\ \xe4\xff 007 {3} en\n"_ba})
        QVERIFY2(printed.contains(text), printed.constData());
}

void VirtualAudioTest::bytesOfSamplesAreInOrder()
{
    burn({});
    const QByteArray printed = outputOf(u"cdrdao"_s, {u"show-data"_s, path("disc.toc")});
    const QByteArray &content = m_disc->content();
    for (qsizetype frame = 0; frame < 5; ++frame) {
        const auto sample = [&content](qsizetype at) {
            return QByteArray::number(qFromLittleEndian<qint16>(content.constData() + at))
                .rightJustified(6);
        };
        const QByteArray line = QByteArray::number(frame) + ':' + sample(4 * frame) + ' '
                                + sample(4 * frame + 2) + '\n';
        QVERIFY2(printed.contains(line), printed.first(200).constData());
    }
}

void VirtualAudioTest::textsOfProperties_data()
{
    QTest::addColumn<QVariant>("texts");
    QTest::addColumn<QStringList>("languages");

    const auto block = QVariant::fromValue(blockIn(u"en"_s));
    const auto other = QVariant::fromValue(blockIn(u"de"_s));
    QTest::newRow("no texts at all") << QVariant() << QStringList();
    QTest::newRow("one block") << block << QStringList{u"en"_s};
    QTest::newRow("a list of variants")
        << QVariant(QVariantList{other, block}) << QStringList{u"de"_s, u"en"_s};
    QTest::newRow("a list of blocks")
        << QVariant::fromValue(blocksIn({u"de"_s, u"en"_s})) << QStringList{u"de"_s, u"en"_s};
    QTest::newRow("an empty list") << QVariant(QVariantList()) << QStringList();
    QTest::newRow("a block without texts")
        << QVariant::fromValue(PackTools::block(u"en"_s, {})) << QStringList();
    QTest::newRow("a text") << QVariant(u"Title"_s) << QStringList();
    QTest::newRow("a number") << QVariant(1) << QStringList();
    QTest::newRow("nine texts and a block")
        << QVariant(QVariantList(9, u"Title"_s) + QVariantList{block}) << QStringList{u"en"_s};
}

void VirtualAudioTest::textsOfProperties()
{
    QFETCH(const QVariant, texts);
    QFETCH(const QStringList, languages);
    DRBurn burn = DRBurn::initWithDevice(m_drive->device());
    if (texts.isValid())
        burn.setProperties({{DRCDTextKey, texts}, {u"Other"_s, 1}});
    burn.setVerifyDisc(true);
    const JobLog log(burn);
    burn.writeLayout(m_disc->request().tracks);
    QVERIFY(log.waitForEnd());
    QCOMPARE(burn.errorText(), QString());
    QCOMPARE(log.states(), QStringList(DRStatusStatePreparing) + BurnRun::wholeBurn(true)
                               + QStringList(DRStatusStateDone));

    const bool hasTexts = !languages.isEmpty();
    QStringList files = sheetsAndSound;
    if (!hasTexts)
        files.removeOne(u"disc.cdt"_s);
    QCOMPARE(m_drive->mediumFiles(), files);
    QCOMPARE(fileContent(path("disc.cue")).contains("CDTEXTFILE"), hasTexts);
    QCOMPARE(fileContent(path("disc.toc")).contains("CD_TEXT"), hasTexts);
    const QByteArray packs = PackTools::packs(blocksIn(languages), trackCount);
    QCOMPARE(fileContent(path("disc.cdt")), hasTexts ? packs + '\0' : QByteArray());
    outputOf(u"cdrdao"_s, {u"read-test"_s, path("disc.toc")});
}

void VirtualAudioTest::erased_data()
{
    QTest::addColumn<EraseType>("type");
    QTest::newRow("quick") << EraseType::Quick;
    QTest::newRow("complete") << EraseType::Complete;
}

void VirtualAudioTest::erased()
{
    QFETCH(const EraseType, type);
    burn({u"en"_s});
    QVERIFY(BurnRun().erase(recorder(), type));
    QCOMPARE(m_drive->mediumFiles(), QStringList{u"medium.plist"_s});
    QVERIFY(m_drive->device().mediaIsBlank());
    QVERIFY(m_drive->device().mediaIsAppendable());

    BurnRequest request;
    request.tracks = {DRTrack::trackForImageFile(m_drive->makeSource(u"image.iso"_s, 9 * 2048))};
    request.verify = true;
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
    QCOMPARE(m_drive->mediumFiles(), (QStringList{u"disc.iso"_s, u"medium.plist"_s}));
    QVERIFY(!recorder().medium()->audio);
}

void VirtualAudioTest::ejectedIsKept()
{
    burn({u"en"_s});
    QVERIFY(recorder().eject());
    QVERIFY(!m_drive->device().mediaIsPresent());
    QDir shelf(recorder().folder() + u"/ejected"_s);
    const QStringList kept = shelf.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(kept.size(), 1);
    QVERIFY(shelf.cd(kept.first()));
    QCOMPARE(shelf.entryList(QDir::Files | QDir::Hidden, QDir::Name), sheetsAndSound);
    QVERIFY(fileContent(shelf.filePath(u"disc.bin"_s)) == m_disc->content());
}

// Written before there were audio discs.
void VirtualAudioTest::mediumOfFormerTimesIsData()
{
    BurnRequest request;
    request.tracks = {DRTrack::trackForImageFile(m_drive->makeSource(u"image.iso"_s, 9 * 2048))};
    QVERIFY(BurnRun().burn(recorder(), request));
    QVariantMap list = PropertyList::readMap(path("medium.plist"));
    QCOMPARE(list.remove(u"Audio"_s), 1);
    QVERIFY(PropertyList::write(path("medium.plist"), list));

    QVERIFY(!recorder().medium()->audio);
    const QVariantMap medium = m_drive->device().status().value(DRDeviceMediaInfoKey).toMap();
    const QVariantMap track =
        medium.value(DRDeviceTrackInfoKey).toMap().value(u"Track 1"_s).toMap();
    QCOMPARE(track.value(DRBlockSizeKey).toInt(), 2048);
    QCOMPARE(track.value(DRBlockTypeKey).toInt(), 8);
    QVERIFY(BurnRun().erase(recorder(), EraseType::Complete));
    QCOMPARE(m_drive->mediumFiles(), QStringList{u"medium.plist"_s});
    QVERIFY(m_drive->device().mediaIsBlank());
}

MAPLORN_TEST_MAIN(VirtualAudioTest)
#include "VirtualAudioTest.moc"
