#include "DRKeys.h"
#include "MediaTypes.h"
#include "TestMain.h"
#include "VirtualDrive.h"

#include <QDir>

using namespace Qt::StringLiterals;

class VirtualRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_drive = std::make_unique<VirtualDrive>(); }
    void cleanup() { m_drive.reset(); }

    void newRecorderHoldsBlankRewritableCD();
    void keepsItsMediumFromRunToRun();
    void blankMedium_data();
    void blankMedium();
    void noMedium();
    void unknownTypeIsRefused();
    void writtenDiscIsKept();
    void otherMediaAreNotKept_data();
    void otherMediaAreNotKept();
    void damagedMedium_data();
    void damagedMedium();
    void openDiscIsAppendable();
    void reservedMediumStaysIn();
    void exclusiveAccess();
    void detachedDevice();

private:
    [[nodiscard]] VirtualRecorder &recorder() const { return m_drive->recorder(); }
    [[nodiscard]] DRDevice device() const { return m_drive->device(); }

    // Makes the medium a written one, with that on it.
    void writeDisc(const QByteArray &content, bool appendable = false) const;
    void store(const QString &path, const QByteArray &content) const;
    [[nodiscard]] QStringList shelf() const;

    std::unique_ptr<VirtualDrive> m_drive;
};

void VirtualRecorderTest::writeDisc(const QByteArray &content, bool appendable) const
{
    VirtualMedium medium = *recorder().medium();
    medium.state = VirtualMedium::State::Complete;
    medium.appendable = appendable;
    medium.tracks = {10};
    QVERIFY(medium.store(recorder().mediumFolder()));
    store(m_drive->mediumFile(u"disc.iso"_s), content);
}

void VirtualRecorderTest::store(const QString &path, const QByteArray &content) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QStringList VirtualRecorderTest::shelf() const
{
    return QDir(recorder().folder() + u"/ejected"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

void VirtualRecorderTest::newRecorderHoldsBlankRewritableCD()
{
    QVERIFY(device().mediaIsPresent());
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(device().mediaType(), QString(DRDeviceMediaTypeCDRW));
    QVERIFY(device().writesCD() && device().writesDVD());
    QCOMPARE(DRDevice::devices(), QList<DRDevice>{device()});
}

void VirtualRecorderTest::keepsItsMediumFromRunToRun()
{
    QVERIFY(recorder().eject());
    QVERIFY(!VirtualRecorder::create(recorder().folder()).value()->medium());
    m_drive->insert(DRDeviceMediaTypeBDR);
    const auto next = VirtualRecorder::create(recorder().folder());
    QCOMPARE(next.value()->medium()->identifier, recorder().medium()->identifier);
}

void VirtualRecorderTest::blankMedium_data()
{
    QTest::addColumn<QString>("type");
    for (const MediaType &medium : MediaTypes::all())
        QTest::newRow(qPrintable(medium.commandName())) << QString(medium.type);
}

void VirtualRecorderTest::blankMedium()
{
    QFETCH(const QString, type);
    m_drive->insert(type);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    for (const QString &spelling : {name, name.toLower(), name.toUpper()})
        QCOMPARE(MediaTypes::findByCommandName(spelling), MediaTypes::find(type));
    const QVariantMap medium = device().status().value(DRDeviceMediaInfoKey).toMap();
    const qint64 capacity = MediaTypes::find(type)->capacity;
    QCOMPARE(medium.value(DRDeviceMediaTypeKey).toString(), type);
    for (const QLatin1StringView flag : {DRDeviceMediaIsBlankKey, DRDeviceMediaIsAppendableKey})
        QVERIFY2(medium.value(flag).toBool(), flag.data());
    QCOMPARE(medium.value(DRDeviceMediaBlocksFreeKey).toLongLong(), capacity);
    QCOMPARE(medium.value(DRDeviceMediaBlocksUsedKey).toLongLong(), 0);
    QCOMPARE(device().mediaSpaceFree().value_or(DRMSF()), DRMSF(capacity));

    const QVariantList references = medium.value(DRDeviceTrackRefsKey).toList();
    QCOMPARE(references.size(), 1);
    const QVariantMap track =
        medium.value(DRDeviceTrackInfoKey).toMap().value(references.first().toString()).toMap();
    QVERIFY(track.value(DRTrackIsEmptyKey).toBool());
    QCOMPARE(track.value(DRTrackLengthKey).toLongLong(), capacity);
    QCOMPARE(track.value(DRBlockSizeKey).toInt(), 2048);

    double last = 0;
    for (const QVariant &speed : medium.value(DRDeviceBurnSpeedsKey).toList()) {
        QVERIFY(speed.toDouble() > last);
        last = speed.toDouble();
    }
    QCOMPARE(device().status().value(DRDeviceMaximumWriteSpeedKey).toDouble(), last);
}

void VirtualRecorderTest::noMedium()
{
    QVERIFY(recorder().eject());
    QVERIFY(!device().mediaIsPresent());
    QVERIFY(!device().mediaIsBlank());
    QVERIFY(device().trayIsOpen());
    QVERIFY(!device().mediaSpaceFree());
    QVERIFY(!device().status().contains(DRDeviceMediaInfoKey));
    QVERIFY(!recorder().eject());
    m_drive->insert(DRDeviceMediaTypeCDR);
    QVERIFY(device().mediaIsBlank());
}

void VirtualRecorderTest::unknownTypeIsRefused()
{
    const QString before = recorder().medium()->identifier;
    QVERIFY(!recorder().insertBlankMedium(DRDeviceMediaTypeCDROM));
    QVERIFY(!recorder().insertBlankMedium(QString()));
    QCOMPARE(recorder().medium()->identifier, before);
}

void VirtualRecorderTest::writtenDiscIsKept()
{
    QStringList places;
    for (const QByteArray content : {"one", "two"}) {
        m_drive->insert(DRDeviceMediaTypeCDR);
        writeDisc(content);
        const Result<QString> place = recorder().takeOut();
        QVERIFY2(place, qPrintable(place.error()));
        QCOMPARE(fileContent(place.value() + u"/disc.iso"_s), content);
        places.append(place.value());
    }
    m_drive->insert(DRDeviceMediaTypeCDR);
    writeDisc("three");
    m_drive->insert(DRDeviceMediaTypeCDR); // in its place
    QCOMPARE(shelf().size(), 3);
    QCOMPARE(fileContent(places.first() + u"/disc.iso"_s), "one"_ba);
    QVERIFY(device().mediaIsBlank());
}

void VirtualRecorderTest::otherMediaAreNotKept_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("blank") << static_cast<int>(VirtualMedium::State::Blank);
    QTest::newRow("not finished") << static_cast<int>(VirtualMedium::State::Incomplete);
}

void VirtualRecorderTest::otherMediaAreNotKept()
{
    QFETCH(const int, state);
    VirtualMedium medium = *recorder().medium();
    medium.state = static_cast<VirtualMedium::State>(state);
    QVERIFY(medium.store(recorder().mediumFolder()));
    store(m_drive->mediumFile(u"disc.iso.part"_s), "half");
    const Result<QString> place = recorder().takeOut();
    QVERIFY(place);
    QVERIFY(place.value().isEmpty());
    QVERIFY(!QDir(recorder().mediumFolder()).exists());
    QCOMPARE(shelf(), QStringList());
    QVERIFY(QDir(recorder().folder()).entryList({u"old-*"_s, u"new-*"_s}).isEmpty());
}

void VirtualRecorderTest::damagedMedium_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("cut off") << "<plist><dict><key>State</key><string>bla"_ba;
    QTest::newRow("nothing in it") << "<plist><dict></dict></plist>"_ba;
    QTest::newRow("of another program")
        << "<plist><dict><key>Type</key><string>Cassette</string></dict></plist>"_ba;
}

void VirtualRecorderTest::damagedMedium()
{
    QFETCH(const QByteArray, list);
    writeDisc("precious");
    store(m_drive->mediumFile(u"medium.plist"_s), list);
    QVERIFY(device().mediaIsPresent() && !device().mediaIsBlank());
    QVERIFY(!device().mediaIsAppendable() && !device().mediaIsErasable());
    QCOMPARE(device().mediaSpaceFree().value_or(DRMSF(1)), DRMSF(0));

    m_drive->insert(DRDeviceMediaTypeCDRW);
    QCOMPARE(shelf().size(), 1);
    QCOMPARE(fileContent(recorder().folder() + u"/ejected/"_s + shelf().first() + u"/disc.iso"_s),
             "precious"_ba);
}

void VirtualRecorderTest::openDiscIsAppendable()
{
    const qint64 capacity = recorder().medium()->capacity;
    writeDisc("open", true);
    QVERIFY(device().mediaIsAppendable() && !device().mediaIsBlank());
    QCOMPARE(device().mediaSpaceFree().value_or(DRMSF()), DRMSF(capacity - 10));
    writeDisc("closed", false);
    QVERIFY(!device().mediaIsAppendable());
    QCOMPARE(device().mediaSpaceFree().value_or(DRMSF(1)), DRMSF(0));
    QCOMPARE(device().mediaSpaceUsed().value_or(DRMSF()), DRMSF(10));
}

void VirtualRecorderTest::reservedMediumStaysIn()
{
    QVERIFY(device().acquireMediaReservation()); // by a page
    QVERIFY(device().acquireMediaReservation()); // by its job
    QVERIFY(device().mediaIsReserved());
    device().releaseMediaReservation();
    QVERIFY(!device().ejectMedia());
    QVERIFY(!recorder().insertBlankMedium(DRDeviceMediaTypeCDR));
    device().releaseMediaReservation();
    device().releaseMediaReservation(); // one too many takes nobody else's away
    QVERIFY(device().acquireMediaReservation());
    QVERIFY(device().mediaIsReserved());
    device().releaseMediaReservation();
    QVERIFY(device().ejectMedia());
}

void VirtualRecorderTest::exclusiveAccess()
{
    const auto elsewhere = VirtualRecorder::create(recorder().folder()).value();
    QVERIFY(device().acquireExclusiveAccess());
    QVERIFY(device().acquireExclusiveAccess());
    QVERIFY(!elsewhere->acquireExclusiveAccess());
    QVERIFY(!elsewhere->eject());
    QVERIFY(elsewhere->status().value(DRDeviceIsBusyKey).toBool());
    device().releaseExclusiveAccess();
    QVERIFY(!elsewhere->acquireExclusiveAccess());
    device().releaseExclusiveAccess();
    device().releaseExclusiveAccess();
    QVERIFY(!elsewhere->status().value(DRDeviceIsBusyKey).toBool());
    QVERIFY(elsewhere->acquireExclusiveAccess());
    QVERIFY(!device().acquireExclusiveAccess());
}

void VirtualRecorderTest::detachedDevice()
{
    const DRDevice kept = device();
    m_drive->detach();
    QVERIFY(!kept.isValid());
    QVERIFY(DRDevice::devices().isEmpty());
    QVERIFY(!kept.ejectMedia());
    QVERIFY(DRDevice().status().isEmpty() && !DRDevice().ejectMedia());
}

MAPLORN_TEST_MAIN(VirtualRecorderTest)
#include "VirtualRecorderTest.moc"
