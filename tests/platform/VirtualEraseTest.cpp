#include "BurnRun.h"
#include "DRKeys.h"
#include "MediaTypes.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <filesystem>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class VirtualEraseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<VirtualDrive>(); }
    void cleanup() { m_drive.reset(); }

    void whatCanBeErased_data();
    void whatCanBeErased();
    void completeLeavesNothing_data();
    void completeLeavesNothing();
    void completeTakesNoRoom();
    void quickIsNotOverwriting();
    void states();
    void cancelledHalfWay();

private:
    [[nodiscard]] VirtualRecorder &recorder() const { return m_drive->recorder(); }
    [[nodiscard]] QString path(const char *name) const
    {
        return m_drive->mediumFile(QString::fromLatin1(name));
    }
    void burn() const { burn(m_drive->makeSource(u"image.iso"_s, 3000000)); }
    void burn(const QString &image) const;

    // Another name for a file, through which it is seen after its removal.
    [[nodiscard]] QString linkTo(const QString &path) const;

    std::unique_ptr<VirtualDrive> m_drive;
};

void VirtualEraseTest::burn(const QString &image) const
{
    BurnRequest request;
    request.tracks = {DRTrack::trackForImageFile(image)};
    const Result<> burned = BurnRun().burn(recorder(), request);
    QVERIFY2(burned, qPrintable(burned.error()));
}

QString VirtualEraseTest::linkTo(const QString &path) const
{
    QString name = recorder().folder() + u"/link"_s;
    std::filesystem::create_hard_link(path.toStdString(), name.toStdString());
    return name;
}

void VirtualEraseTest::whatCanBeErased_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("erasable");
    for (const MediaType &medium : MediaTypes::all())
        QTest::newRow(medium.name.data())
            << QString(medium.type) << VirtualDrive::isRewritable(medium);
}

void VirtualEraseTest::whatCanBeErased()
{
    QFETCH(const QString, type);
    QFETCH(const bool, erasable);
    m_drive->insert(type);
    burn();
    const QByteArray content = fileContent(path("disc.iso"));
    for (const EraseType kind : {EraseType::Quick, EraseType::Complete})
        QCOMPARE(static_cast<bool>(BurnRun().erase(recorder(), kind)), erasable);
    QCOMPARE(m_drive->device().mediaIsBlank(), erasable);
    QCOMPARE(fileContent(path("disc.iso")), erasable ? QByteArray() : content);
}

void VirtualEraseTest::completeLeavesNothing_data()
{
    QTest::addColumn<QString>("left");
    QTest::newRow("by a burn") << u"disc.iso"_s;
    QTest::newRow("by a burn that was cut off") << u"disc.iso.part"_s;
}

void VirtualEraseTest::completeLeavesNothing()
{
    QFETCH(const QString, left);
    burn();
    QVERIFY(left == "disc.iso"_L1 || QFile::rename(path("disc.iso"), m_drive->mediumFile(left)));
    const QString link = linkTo(m_drive->mediumFile(left));
    const qint64 size = QFileInfo(link).size();
    QVERIFY(BurnRun().erase(recorder(), EraseType::Complete));
    QCOMPARE(fileContent(link).count('\0'), size);
    QCOMPARE(m_drive->mediumFiles(), QStringList{u"medium.plist"_s});
}

// Of the disk, which may be full: what reads as zeros already stays as it is.
void VirtualEraseTest::completeTakesNoRoom()
{
    const QString image = m_drive->makeSource(u"image.iso"_s, 9000000);
    QVERIFY(QFile::resize(image, 300000000));
    burn(image);
    const QByteArray link = QFile::encodeName(linkTo(path("disc.iso")));
    struct stat before = {};
    struct stat after = {};
    QVERIFY(::stat(link.constData(), &before) == 0 && before.st_blocks * 512 < 20000000);
    BurnRun run;
    QVERIFY(run.erase(recorder(), EraseType::Complete));
    QVERIFY(::stat(link.constData(), &after) == 0 && after.st_blocks <= before.st_blocks);
    QCOMPARE(fileContent(QFile::decodeName(link)).count('\0'), 300001280);
    QCOMPARE(run.fractions().last(), 1.0);
}

void VirtualEraseTest::quickIsNotOverwriting()
{
    burn();
    const QString link = linkTo(path("disc.iso"));
    QVERIFY(BurnRun().erase(recorder(), EraseType::Quick));
    QCOMPARE(fileContent(link).count('\0'), 3000000 % 2048 ? 2048 - 3000000 % 2048 : 0);
    QCOMPARE(m_drive->mediumFiles(), QStringList{u"medium.plist"_s});
    burn();
    QVERIFY(!m_drive->device().mediaIsBlank());
}

void VirtualEraseTest::states()
{
    burn();
    for (const EraseType type : {EraseType::Complete, EraseType::Quick}) {
        BurnRun run;
        QVERIFY(run.erase(recorder(), type)); // the second time of a medium that is blank already
        QCOMPARE(run.states(),
                 (QStringList{QString(DRStatusStateErasing), QString(DRStatusStateFinishing)}));
        QVERIFY(std::ranges::is_sorted(run.fractions()));
        QCOMPARE(run.fractions().last(), 1.0);
    }
}

void VirtualEraseTest::cancelledHalfWay()
{
    burn();
    BurnRun run;
    run.at(DRStatusStateErasing, [&run] { run.stop(); });
    QVERIFY(!run.erase(recorder(), EraseType::Complete));
    QVERIFY(!m_drive->device().mediaIsBlank());
    QVERIFY(!QFile::exists(path("disc.iso")));
    QVERIFY(BurnRun().erase(recorder(), EraseType::Quick));
    QVERIFY(m_drive->device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), QStringList{u"medium.plist"_s});
}

MAPLORN_TEST_MAIN(VirtualEraseTest)
#include "VirtualEraseTest.moc"
