// The service that the application runs itself: found without any setting, private, and gone with
// its owner.
#include "BLSync.h"
#include "OwnService.h"
#include "Preferences.h"
#include "ServiceAddress.h"
#include "WindowTestMain.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryFile>

class OwnServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersWithoutAnySetting();
    void keepsItsPortAndItsRecords();
    void takenPortIsLeftToItsUser();
    void configuredHostNeedsNoService();

private:
    [[nodiscard]] static bool isListening(quint16 port)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        return socket.waitForConnected(1000);
    }
};

void OwnServiceTest::answersWithoutAnySetting()
{
    const auto service = OwnService::startIfNeeded();
    QVERIFY(service && service.value());
    QCOMPARE(MiscTool::getHost(), QStringLiteral("127.0.0.1"));
    UserGroupJson group;
    group.Namex = QStringLiteral("kept");
    QVERIFY(BLSyncUserGroup().insert(group));

    const QDir runtime(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
    const QStringList configs = runtime.entryList({QStringLiteral("maplorn-disc-*.plist")});
    QCOMPARE(configs.size(), 1);
    QCOMPARE(QFile::permissions(runtime.filePath(configs.first()))
                 & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
             QFile::Permissions());
}

void OwnServiceTest::keepsItsPortAndItsRecords()
{
    const QString port = Preferences::value(QStringLiteral("OwnServicePort")).toString();
    QVERIFY2(!isListening(port.toUShort()), "the service outlived its owner");
    const auto service = OwnService::startIfNeeded();
    QVERIFY(service && service.value());
    QCOMPARE(MiscTool::getPort(), port);
    QCOMPARE(BLSyncUserGroup().getCount(QStringLiteral("Namex='kept'")), 1);
}

void OwnServiceTest::takenPortIsLeftToItsUser()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    const QString taken = QString::number(other.serverPort());
    Preferences::setValue(QStringLiteral("OwnServicePort"), taken);
    const auto service = OwnService::startIfNeeded();
    QVERIFY(service && service.value());
    QVERIFY(MiscTool::getPort() != taken);
    QCOMPARE(BLSyncUserGroup().getCount(QStringLiteral("Namex='kept'")), 1);
}

void OwnServiceTest::configuredHostNeedsNoService()
{
    QTemporaryFile config;
    QVERIFY(config.open());
    config.write("<plist version=\"1.0\"><dict><key>Host</key><string>discs.example.com</string>"
                 "</dict></plist>");
    config.close();
    ServiceConfig::setFile(config.fileName());
    const auto service = OwnService::startIfNeeded();
    QVERIFY(service && !service.value());
    QCOMPARE(MiscTool::getHost(), QStringLiteral("discs.example.com"));
    ServiceConfig::setFile({});
}

MAPLORN_WINDOW_TEST_MAIN(OwnServiceTest)
#include "OwnServiceTest.moc"
