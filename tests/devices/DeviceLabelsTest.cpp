#include "DeviceLabels.h"
#include "DRKeys.h"
#include "DRStatus.h"
#include "MediaTypes.h"
#include "PropertyList.h"
#include "TestMain.h"

#include <QFile>
#include <QRegularExpression>

namespace {

const QStringList tables{QStringLiteral("DeviceStatus"), QStringLiteral("DRStatus"),
                         QStringLiteral("DeviceInfo")};

// The names that the recording service defines and a page may show.
QStringList shownNames()
{
    QFile header(QFINDTESTDATA("../../src/platform/recording/DRKeys.h"));
    if (!header.open(QIODevice::ReadOnly))
        return {};
    static const QRegularExpression name(QStringLiteral(R"(\bDR_NAME\((DR\w+)\);)"));
    static const QRegularExpression notShown(
        QStringLiteral("Notification$|^DRStatusProgress|^DRStatus[A-Za-z]+Key$"));
    QStringList names;
    auto found = name.globalMatch(QString::fromUtf8(header.readAll()));
    while (found.hasNext()) {
        const QString text = found.next().captured(1);
        if (!notShown.match(text).hasMatch())
            names.append(text);
    }
    return names;
}

}

class DeviceLabelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNameIsInOneTable();
    void mediaAreCalledTheSameEverywhere();
    void missingTable();
    void titleOfState_data();
    void titleOfState();
};

void DeviceLabelsTest::everyNameIsInOneTable()
{
    const QStringList names = shownNames();
    QVERIFY(names.size() > 100);
    QStringList labelled;
    for (const QString &table : tables) {
        const QVariantMap labels =
            PropertyList::readMap(QStringLiteral(":/labels/%1.plist").arg(table));
        for (auto it = labels.cbegin(); it != labels.cend(); ++it) {
            QVERIFY2(!it.value().toString().isEmpty(), qPrintable(it.key()));
            labelled.append(it.key());
        }
    }
    QStringList expected = names;
    expected.sort();
    labelled.sort();
    QCOMPARE(labelled, expected);
}

void DeviceLabelsTest::mediaAreCalledTheSameEverywhere()
{
    const DeviceLabels labels(QStringLiteral("DeviceStatus"));
    for (const MediaType &medium : MediaTypes::all())
        QCOMPARE(labels.valueForKey(medium.type), QString(medium.name));
}

void DeviceLabelsTest::missingTable()
{
    QCOMPARE(DeviceLabels(QStringLiteral("None")).valueForKey(DRDeviceIsBusyKey),
             QStringLiteral("DRDeviceIsBusyKey"));
}

void DeviceLabelsTest::titleOfState_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("title"); // null: none
    QTest::addColumn<QString>("label");

    const auto row = [](QLatin1StringView state, const char *title, const char *label) {
        QTest::newRow(state.data())
            << QString(state) << QString::fromLatin1(title) << QString::fromLatin1(label);
    };
    row(DRStatusStateTrackWrite, "Write", "Write");
    row(DRStatusStateSessionClose, "Session Close", "Session Close");
    row(DRStatusStateErasing, "Erasing", "Erasing");
    row(DRStatusStateDone, nullptr, "Done");
    row(QLatin1StringView("DRStatusStateNew"), nullptr, "DRStatusStateNew");
}

void DeviceLabelsTest::titleOfState()
{
    QFETCH(const QString, state);
    QFETCH(const QString, title);
    QCOMPARE(DRStatus::titleOfState(state).value_or(QString()), title);
    QCOMPARE(DRStatus::titleOfState(state).has_value(), !title.isNull());
    QTEST(DRStatus().valueForKey(state), "label");
}

MAPLORN_TEST_MAIN(DeviceLabelsTest)
#include "DeviceLabelsTest.moc"
