#include "MediaTools.h"
#include "DRKeys.h"
#include "DescribedRecorder.h"
#include "TestMain.h"

#include <QGuiApplication>
#include <QPixmap>

namespace {

DRDevice holding(const QVariantMap &medium)
{
    return DescribedRecorder::device({{DRDeviceMediaInfoKey, medium}});
}

QVariantMap trackOf(qint64 blocks, int blockSize)
{
    return {{DRTrackLengthKey, QVariant::fromValue(DRMSF(blocks))}, {DRBlockSizeKey, blockSize}};
}

QVariantMap blank(const QStringList &references)
{
    return {{DRDeviceMediaIsBlankKey, true},
            {DRDeviceMediaFreeSpaceKey, QVariant::fromValue(DRMSF(75))},
            {DRDeviceTrackRefsKey, references},
            {DRDeviceTrackInfoKey, QVariantMap{{QStringLiteral("1"), trackOf(14648437, 2048)},
                                               {QStringLiteral("2"), trackOf(10, 2352)}}}};
}

}

class MediaToolsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void discSize_data();
    void discSize();
    void freeSpace();
    void picture_data();
    void picture();
};

void MediaToolsTest::discSize_data()
{
    QTest::addColumn<QVariantMap>("medium");
    QTest::addColumn<qint64>("bytes");

    const QString one = QStringLiteral("1");
    const QString two = QStringLiteral("2");
    QVariantMap written = blank({one});
    written.insert(DRDeviceMediaIsBlankKey, false);
    QTest::newRow("more than 32 bits") << blank({one}) << qint64(29999998976);
    QTest::newRow("the first reference, not the first key") << blank({two, one}) << qint64(23520);
    QTest::newRow("written") << written << qint64(0);
    QTest::newRow("no track") << blank({}) << qint64(0);
    QTest::newRow("no such track") << blank({QStringLiteral("3")}) << qint64(0);
    QTest::newRow("no medium") << QVariantMap() << qint64(0);
}

void MediaToolsTest::discSize()
{
    QFETCH(const QVariantMap, medium);
    QTEST(MiscTool::getDiscSize(holding(medium)), "bytes");
}

void MediaToolsTest::freeSpace()
{
    QCOMPARE(MiscTool::getDiscSizeInMSF(holding(blank({}))).value_or(DRMSF()), DRMSF(75));
    QVERIFY(!MiscTool::getDiscSizeInMSF(holding({})));
    QVERIFY(!MiscTool::getDiscSizeInMSF(DRDevice()));
}

void MediaToolsTest::picture_data()
{
    QTest::addColumn<QString>("name");
    const auto row = [](QLatin1StringView type, const char *name) {
        QTest::newRow(type.data()) << QString::fromLatin1(name);
    };
    row(DRDeviceMediaTypeCDR, "CD-R");
    row(DRDeviceMediaTypeCDRW, "CD-RW");
    row(DRDeviceMediaTypeCDROM, "CD-ROM");
    row(DRDeviceMediaTypeBDROM, "BD");
    row(DRDeviceMediaTypeBDR, "BD-R");
    row(DRDeviceMediaTypeBDRE, "BD-RE");
    row(DRDeviceMediaTypeDVDPlusRDoubleLayer, "DVD+R");
    row(DRDeviceMediaTypeDVDPlusRWDoubleLayer, "DVD+RW");
    row(DRDeviceMediaTypeDVDRDualLayer, "DVD-R");
    row(DRDeviceMediaTypeDVDRWDualLayer, "DVD-RW");
    row(DRDeviceMediaTypeDVDRAM, "DVD-RAM");
    row(DRDeviceMediaTypeDVDROM, "DVD");
    row(DRDeviceMediaTypeHDDVDROM, "HD-DVD");
    row(DRDeviceMediaTypeHDDVDRDualLayer, "HD-DVD-R");
    row(DRDeviceMediaTypeHDDVDRAM, "HD-DVD-RAM");
    row(DRDeviceMediaTypeHDDVDRWDualLayer, "HD-DVD-RW");
    row(DRDeviceMediaTypeUnknown, "CD-ROM");
    row(QLatin1StringView(""), "CD-ROM");
}

void MediaToolsTest::picture()
{
    const QString type = QString::fromLatin1(QTest::currentDataTag());
    QTEST(MiscTool::mediaImageName(type), "name");
    const QImage drawn =
        MiscTool::getMediaImage(holding({{DRDeviceMediaTypeKey, type}})).pixmap(64, 64).toImage();
    QCOMPARE(drawn.size(), QSize(64, 64));
    QVERIFY(qAlpha(drawn.pixel(32, 8)) > 0);
}

int main(int argc, char **argv)
{
    const TestEnvironment environment;
    const QGuiApplication application(argc, argv);
    MediaToolsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MediaToolsTest.moc"
