#include "OwnService.h"

#include "Localized.h"
#include "Preferences.h"
#include "PropertyList.h"
#include "ServiceAddress.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <array>

namespace {

constexpr int patience = 5000; // ms that the child may take to start or to end
const QString portKey = QStringLiteral("OwnServicePort");
const QString anyPort = QStringLiteral("0");

QString programPath()
{
    const QString name = QStringLiteral("maplorn-service");
    const QString beside =
        QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(name) : beside;
}

QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + QStringLiteral("/maplorn-disc/service");
}

QByteArray randomPassword()
{
    std::array<quint32, 8> bits{};
    QRandomGenerator::system()->fillRange(bits.data(), bits.size());
    return QByteArray(reinterpret_cast<const char *>(bits.data()), sizeof bits).toHex();
}

}

Result<std::unique_ptr<OwnService>> OwnService::startIfNeeded()
{
    if (ServiceConfig::namesHost())
        return std::unique_ptr<OwnService>();
    auto service = std::make_unique<OwnService>();
    // The port of the last run, so that server settings that were saved then still hold.
    const QString last = Preferences::value(portKey).toString();
    Result<> started = service->start(last.isEmpty() ? anyPort : last);
    if (!started && !last.isEmpty())
        started = service->start(anyPort);
    if (!started)
        return started.failure();
    return service;
}

Result<> OwnService::start(const QString &port)
{
    const QString program = programPath();
    if (program.isEmpty())
        return Failure{localized("OwnService", "The program maplorn-service is missing.")};
    m_password = randomPassword();
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, {QStringLiteral("--child"), QStringLiteral("--port"), port,
                              QStringLiteral("--data"), dataFolder()});
    m_process.write(m_password + '\n');
    QElapsedTimer time;
    time.start();
    while (!m_process.canReadLine() && m_process.state() != QProcess::NotRunning
           && time.elapsed() < patience)
        m_process.waitForReadyRead(patience);
    const QString listening = QString::fromLatin1(m_process.readLine()).trimmed();
    if (listening.toUShort() == 0) {
        m_process.kill();
        m_process.waitForFinished(patience);
        return Failure{localized("OwnService", "The service of this machine did not start.")};
    }
    return announce(listening);
}

Result<> OwnService::announce(const QString &port)
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    m_config.setFileTemplate((runtime.isEmpty() ? QDir::tempPath() : runtime)
                             + QStringLiteral("/maplorn-disc-XXXXXX.plist"));
    if (!m_config.open())
        return Failure{m_config.errorString()};
    const Result<> written = PropertyList::write(
        m_config.fileName(),
        QVariantMap{{QStringLiteral("Protocol"), QStringLiteral("http")},
                    {QStringLiteral("Host"), QStringLiteral("127.0.0.1")},
                    {QStringLiteral("Port"), port},
                    {QStringLiteral("Context"), QString()},
                    {QStringLiteral("ServicePassword"), QString::fromLatin1(m_password)}});
    if (!written)
        return written;
    Preferences::setValue(portKey, port);
    ServiceConfig::setOwnService(m_config.fileName());
    return Done{};
}

OwnService::~OwnService()
{
    ServiceConfig::setOwnService({});
    m_process.closeWriteChannel();
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(patience))
        m_process.kill();
}
