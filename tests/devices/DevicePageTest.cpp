// The page about one recorder: the rows of its first two tabs in their order, and which tabs it
// has.
#include "DRKeys.h"
#include "DescribedRecorder.h"
#include "DeviceViewController.h"
#include "VirtualDrive.h"
#include "WindowTestMain.h"

#include <QTabWidget>
#include <QTableWidget>

class DevicePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void generalRows_data();
    void generalRows();
    void informationRows();
    void statusTabFollowsTheMedium();
    void nothingKnown();

private:
    static QStringList labels(const DeviceRows &rows)
    {
        return rows.getSortedKeys().value_or(QStringList());
    }
};

void DevicePageTest::generalRows_data()
{
    QTest::addColumn<bool>("hasMedium");
    QTest::addColumn<QStringList>("labels");

    const QStringList recorder{QStringLiteral("Device"), QStringLiteral("IO Registry"),
                               QStringLiteral("WritesCD"), QStringLiteral("WritesDVD")};
    QTest::newRow("without a medium") << false << recorder;
    QTest::newRow("with one") << true
                              << recorder
                                     + QStringList{QStringLiteral("BSD Name"),
                                                   QStringLiteral("Media Type"),
                                                   QStringLiteral("Space Free"),
                                                   QStringLiteral("Space Used"),
                                                   QStringLiteral("Space Overwritable"),
                                                   QStringLiteral("Appendable"),
                                                   QStringLiteral("Blank"),
                                                   QStringLiteral("Busy"),
                                                   QStringLiteral("Erasable"),
                                                   QStringLiteral("Overwritable"),
                                                   QStringLiteral("Present"),
                                                   QStringLiteral("Reserved"),
                                                   QStringLiteral("Transitioning"),
                                                   QStringLiteral("TrayOpen")};
}

void DevicePageTest::generalRows()
{
    QFETCH(const bool, hasMedium);
    VirtualDrive drive;
    if (!hasMedium)
        QVERIFY(drive.recorder().eject());
    const DeviceGeneral general = DeviceGeneral::initWithDevice(drive.device());
    QTEST(labels(general), "labels");
    const QVariantMap values = general.getDict().value();
    QCOMPARE(values.value(QStringLiteral("WritesDVD")).toString(), QStringLiteral("YES"));
    if (!hasMedium)
        return;
    QCOMPARE(values.value(QStringLiteral("Media Type")).toString(), QStringLiteral("CD-RW"));
    QCOMPARE(values.value(QStringLiteral("Space Free")).toString(), QStringLiteral("79:57:74"));
    QCOMPARE(values.value(QStringLiteral("Blank")).toString(), QStringLiteral("YES"));
    QCOMPARE(values.value(QStringLiteral("TrayOpen")).toString(), QStringLiteral("NO"));
}

void DevicePageTest::informationRows()
{
    const QVariantMap info{
        {DRDeviceWriteCapabilitiesKey,
         QVariantMap{{DRDeviceCanWriteDVDKey, false}, {DRDeviceCanWriteCDKey, true}}},
        {DRDeviceVendorNameKey, QStringLiteral("Vendor")},
        {DRDeviceFirmwareRevisionKey, QStringLiteral("1.07")},
        {DRDeviceLoadingMechanismCanEjectKey, true},
        {DRDevicePhysicalInterconnectLocationKey,
         QString(DRDevicePhysicalInterconnectLocationExternal)},
        {DRDeviceWriteBufferSizeKey, 2048},
        {QStringLiteral("DRDeviceColourKey"), QStringLiteral("black")},
    };
    const DeviceInfo rows = DeviceInfo::initWithDevice(DescribedRecorder::device({}, info));
    const QStringList expected{QStringLiteral("Can eject"), QStringLiteral("Location"),
                               QStringLiteral("Vendor"),    QStringLiteral("Write buffer (KB)"),
                               QStringLiteral("Writes"),    QStringLiteral("\tCD"),
                               QStringLiteral("\tDVD")};
    QCOMPARE(labels(rows), expected);
    const QVariantMap values = rows.getDict().value();
    QCOMPARE(values.value(QStringLiteral("Firmware revision")).toString(), QStringLiteral("1.07"));
    QCOMPARE(values.value(QStringLiteral("Location")).toString(), QStringLiteral("External"));
    QCOMPARE(values.value(QStringLiteral("Writes")).toString(), QString());
    QCOMPARE(values.value(QStringLiteral("\tCD")).toString(), QStringLiteral("YES"));
    QCOMPARE(values.value(QStringLiteral("\tDVD")).toString(), QStringLiteral("NO"));
}

void DevicePageTest::statusTabFollowsTheMedium()
{
    VirtualDrive drive;
    for (const bool hasMedium : {true, false}) {
        if (!hasMedium)
            QVERIFY(drive.recorder().eject());
        const std::unique_ptr<DeviceViewController> page(DeviceViewController::getViewController());
        page->setDevice(drive.device());
        page->show();
        const auto *tabs = page->findChild<QTabWidget *>(QStringLiteral("tabView"));
        QStringList titles;
        for (int i = 0; i < tabs->count(); ++i)
            titles.append(tabs->tabText(i));
        QStringList expected{QStringLiteral("General"), QStringLiteral("Information")};
        if (hasMedium)
            expected.append(QStringLiteral("Status"));
        QCOMPARE(titles, expected);
        const auto *status = page->findChild<QTableWidget *>(QStringLiteral("statusTableView"));
        if (hasMedium) // indented as its label's tab says
            QVERIFY(status->item(5, 0)->text().startsWith(QStringLiteral("    ")));
        const auto *general = page->findChild<QTableWidget *>(QStringLiteral("generalTableView"));
        QCOMPARE(general->item(0, 1)->text(), QStringLiteral("Virtual Recorder"));
        QCOMPARE(general->horizontalHeaderItem(1)->text(), QStringLiteral("Value"));
    }
}

void DevicePageTest::nothingKnown()
{
    QVERIFY(!DeviceGeneral::initWithDevice().getDict());
    QVERIFY(!DeviceInfo::initWithDevice().getSortedKeys());
    const std::unique_ptr<DeviceViewController> page(DeviceViewController::getViewController());
    page->show();
    QCOMPARE(page->findChild<QTabWidget *>(QStringLiteral("tabView"))->count(), 2);
}

MAPLORN_WINDOW_TEST_MAIN(DevicePageTest)
#include "DevicePageTest.moc"
