#include "DeviceStatus.h"
#include "DRKeys.h"
#include "DescribedRecorder.h"
#include "TestMain.h"

#include <QTranslator>

namespace {

// Marks what passed through the translations.
class MarkingTranslator : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *text, const char *,
                                    int) const override
    {
        return QStringLiteral("%1<%2>").arg(QString::fromUtf8(context).left(3),
                                            QString::fromUtf8(text));
    }
};

QVariant msf(qint64 blocks)
{
    return QVariant::fromValue(DRMSF(blocks));
}

QVariantMap recorderStatus()
{
    return {{DRDeviceCurrentWriteSpeedKey, 705.6},
            {DRDeviceIsBusyKey, true},
            {DRDeviceIsTrayOpenKey, false},
            {DRDeviceMaximumWriteSpeedKey, 100000.0},
            {DRDeviceMediaStateKey, QString(DRDeviceMediaStateNone)}};
}

QVariantMap track(int number, qint64 length)
{
    return {{DRBlockSizeKey, 2048},
            {DRBlockTypeKey, 8},
            {DRFreeBlocksKey, 0},
            {DRSessionFormatKey, 0},
            {DRSessionNumberKey, 1},
            {DRTrackIsEmptyKey, number == 1},
            {DRTrackLengthKey, msf(length)},
            {DRTrackNumberKey, number},
            {DRTrackStartAddressKey, msf(75LL * number)},
            {DRTrackTypeKey, QString(DRTrackTypeComplete)}};
}

QVariantMap medium()
{
    return {{DRDeviceBurnSpeedsKey, QVariantList{4, 8.0, 705.6, 100000.0}},
            {DRDeviceMediaBSDNameKey, QStringLiteral("sr0")},
            {DRDeviceMediaBlocksFreeKey, 11},
            {DRDeviceMediaBlocksOverwritableKey, 12},
            {DRDeviceMediaBlocksUsedKey, 13},
            {DRDeviceMediaClassKey, QString(DRDeviceMediaClassCD)},
            {DRDeviceMediaFreeSpaceKey, msf(75)},
            {DRDeviceMediaIsAppendableKey, true},
            {DRDeviceMediaIsBlankKey, true},
            {DRDeviceMediaIsErasableKey, true},
            {DRDeviceMediaIsOverwritableKey, true},
            {DRDeviceMediaIsReservedKey, true},
            {DRDeviceMediaOverwritableSpaceKey, msf(150)},
            {DRDeviceMediaSessionCountKey, 1},
            {DRDeviceMediaTrackCountKey, 2},
            {DRDeviceMediaTypeKey, QString(DRDeviceMediaTypeCDRW)},
            {DRDeviceMediaUsedSpaceKey, msf(76)},
            {DRDeviceTrackRefsKey, QStringList{QStringLiteral("b"), QStringLiteral("a")}},
            {DRDeviceTrackInfoKey, QVariantMap{{QStringLiteral("a"), track(2, 10)},
                                               {QStringLiteral("b"), track(1, 20)}}}};
}

DeviceStatus statusOf(const QVariantMap &map)
{
    return DeviceStatus::initWithDevice(DescribedRecorder::device(map));
}

DeviceStatus statusOfMedium(const QVariantMap &medium)
{
    QVariantMap map = recorderStatus();
    map.insert(DRDeviceMediaInfoKey, medium);
    return statusOf(map);
}

// "label=value", a line each, as a table shows them.
QStringList lines(const DeviceStatus &status)
{
    QStringList result;
    for (const QString &label : *status.getSortedKeys())
        result.append(label + QLatin1Char('=')
                      + DeviceRows::displayText(status.getDict()->value(label)));
    return result;
}

}

class DeviceStatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noDeviceNoRows();
    void recorderWithoutMedium();
    void medium();
    void tracksShareOneValueALabel();
    void lostPropertyDoesNotKeepItsLastValue();
    void burnSpeeds_data();
    void burnSpeeds();
    void emptyMediumListsEveryLabel();
    void unknownKeysAndValues();
    void rowsAreSnapshot();
    void whatIsTranslated();
};

void DeviceStatusTest::noDeviceNoRows()
{
    const DeviceStatus status = DeviceStatus::initWithDevice();
    QVERIFY(!status.getDict());
    QVERIFY(!status.getSortedKeys());
}

void DeviceStatusTest::recorderWithoutMedium()
{
    QCOMPARE(lines(statusOf(recorderStatus())),
             (QStringList{QStringLiteral("Current write speed (KB/s)=705.6"),
                          QStringLiteral("Busy=YES"), QStringLiteral("Tray open=NO"),
                          QStringLiteral("Maximum write speed (KB/s)=100000"),
                          QStringLiteral("State=No medium")}));
}

void DeviceStatusTest::medium()
{
    const QStringList shown = lines(statusOfMedium(::medium()));
    const QStringList expected{
        QStringLiteral("Maximum write speed (KB/s)=100000"),
        QStringLiteral("Medium="),
        QStringLiteral("\tWrite speeds (KB/s)=4,8,705.6,100000"),
        QStringLiteral("\tDevice name=sr0"),
        QStringLiteral("\tBlocks free=11"),
        QStringLiteral("\tBlocks overwritable=12"),
        QStringLiteral("\tBlocks used=13"),
        QStringLiteral("\tClass=CD"),
        QStringLiteral("\tSpace free=00:01:00"),
        QStringLiteral("\tAppendable=NO"),
        QStringLiteral("\tBlank=NO"),
        QStringLiteral("\tErasable=NO"),
        QStringLiteral("\tOverwritable=YES"),
        QStringLiteral("\tReserved=NO"),
        QStringLiteral("\tSpace overwritable=00:02:00"),
        QStringLiteral("\tSessions=1"),
        QStringLiteral("\tNumber of tracks=2"),
        QStringLiteral("\tType=CD-RW"),
        QStringLiteral("\tSpace used=00:01:01"),
        QStringLiteral("\tTracks="),
    };
    QCOMPARE(shown.mid(3, expected.size()), expected);
    QCOMPARE(shown.last(), QStringLiteral("State=No medium"));
}

void DeviceStatusTest::tracksShareOneValueALabel()
{
    const QStringList shown = lines(statusOfMedium(::medium()));
    const QStringList second{
        QStringLiteral("\t\tTrack=a"),
        QStringLiteral("\t\t\tBlock size (bytes)=2048"),
        QStringLiteral("\t\t\tBlock type=8"),
        QStringLiteral("\t\t\tBlocks free=0"),
        QStringLiteral("\t\t\tSession format=0"),
        QStringLiteral("\t\t\tSession=1"),
        QStringLiteral("\t\t\tEmpty=NO"),
        QStringLiteral("\t\t\tLength=00:00:10"),
        QStringLiteral("\t\t\tNumber=2"),
        QStringLiteral("\t\t\tStart=00:02:00"),
        QStringLiteral("\t\t\tType=Complete"),
    };
    QCOMPARE(shown.mid(23, 22), second + second);
}

void DeviceStatusTest::lostPropertyDoesNotKeepItsLastValue()
{
    QVariantMap map = ::medium();
    map.insert(DRDeviceTrackInfoKey, QVariantMap{{QStringLiteral("b"), track(1, 20)}});
    const DeviceStatus status = statusOfMedium(map);
    QVERIFY(status.getSortedKeys()->contains(QStringLiteral("\t\t\tLength")));
    QVERIFY(!status.getDict()->contains(QStringLiteral("\t\t\tLength")));
    QVERIFY(!status.getDict()->contains(QStringLiteral("\t\t\tType")));
    QCOMPARE(status.getDict()->value(QStringLiteral("\t\t\tEmpty")), QStringLiteral("NO"));
}

void DeviceStatusTest::burnSpeeds_data()
{
    QTest::addColumn<QVariant>("speeds");
    QTest::addColumn<QString>("shown");

    QTest::newRow("whole numbers") << QVariant(QVariantList{4, 8, 16}) << "4,8,16";
    QTest::newRow("no trailing zeros") << QVariant(QVariantList{4.0, 2.40}) << "4,2.4";
    QTest::newRow("none") << QVariant(QVariantList{}) << "";
    QTest::newRow("absent") << QVariant() << "";
}

void DeviceStatusTest::burnSpeeds()
{
    QFETCH(const QVariant, speeds);
    QVariantMap map;
    if (speeds.isValid())
        map.insert(DRDeviceBurnSpeedsKey, speeds);
    const QVariant value =
        statusOfMedium(map).getDict()->value(QStringLiteral("\tWrite speeds (KB/s)"));
    QVERIFY(value.isValid());
    QTEST(value.toString(), "shown");
}

void DeviceStatusTest::emptyMediumListsEveryLabel()
{
    const DeviceStatus full = statusOfMedium(::medium());
    const DeviceStatus empty = statusOfMedium({});
    QCOMPARE(*empty.getSortedKeys(),
             full.getSortedKeys()->mid(0, 23) + QStringList{QStringLiteral("State")});
    QVERIFY(!empty.getDict()->contains(QStringLiteral("\tSpace free")));
    QVERIFY(!empty.getDict()->contains(QStringLiteral("\tType")));
    QCOMPARE(empty.getDict()->value(QStringLiteral("\tOverwritable")), QStringLiteral("NO"));
    // No two properties of one level have the same label: one would hide the other's value.
    const QStringList labels = *full.getSortedKeys();
    QCOMPARE(QSet<QString>(labels.cbegin(), labels.cend()).size(), labels.size() - 11);
}

void DeviceStatusTest::unknownKeysAndValues()
{
    QVariantMap map = recorderStatus();
    map.insert(QStringLiteral("DRDeviceColourKey"), QStringLiteral("black"));
    map.insert(DRDeviceMediaStateKey, QStringLiteral("ajar"));
    const QStringList shown = lines(statusOf(map));
    QCOMPARE(shown.size(), 5);
    QCOMPARE(shown.last(), QStringLiteral("State=ajar"));
}

void DeviceStatusTest::rowsAreSnapshot()
{
    const auto recorder = std::make_shared<DescribedRecorder>(recorderStatus());
    DeviceStatus status = DeviceStatus::initWithDevice(DRDevice(recorder));
    recorder->setStatus({{DRDeviceIsTrayOpenKey, true}});
    QCOMPARE(lines(status).size(), 5);
    status.toDictionary(DRDevice(recorder));
    QCOMPARE(lines(status), QStringList{QStringLiteral("Tray open=YES")});
    QCOMPARE(status.getDict()->size(), 1);
}

void DeviceStatusTest::whatIsTranslated()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QStringList shown = lines(statusOfMedium(::medium()));
    QCoreApplication::removeTranslator(&translator);

    for (const char *line :
         {"Loc<Busy>=Loc<YES>", "\tLoc<Blank>=Loc<NO>", "\tLoc<Class>=CD", "\tLoc<Type>=CD-RW",
          "\tLoc<Device name>=sr0", "\t\t\tLoc<Type>=Loc<Complete>", "Loc<State>=Loc<No medium>"})
        QVERIFY2(shown.contains(QString::fromLatin1(line)), line);
}

MAPLORN_TEST_MAIN(DeviceStatusTest)
#include "DeviceStatusTest.moc"
