#include "OwnService.h"

#include "ChildProcess.h"
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
    QObject::connect(
        &service->m_process, &QProcess::finished, &service->m_process,
        [service = service.get()] { service->restart(); }, Qt::QueuedConnection);
    return service;
}

// One that has ended by itself, though not over and over.
void OwnService::restart()
{
    constexpr qint64 minute = 60 * 1000; // ms
    if (m_process.state() != QProcess::NotRunning || m_sinceStart.elapsed() < minute)
        return;
    qWarning("the service of this machine has ended and is started again");
    if (const Result<> started = start(MiscTool::getPort()); !started)
        qWarning().noquote() << started.error();
}

Result<> OwnService::start(const QString &port)
{
    const QString program = programPath();
    if (program.isEmpty())
        return Failure{localized("OwnService", "The program maplorn-service is missing.")};
    m_password = randomPassword();
    m_sinceStart.start();
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setChildProcessModifier(&ChildProcess::inheritStreamsOnly);
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
    // Another application's service may have the port of the last run: it stays the one kept.
    if (Preferences::value(portKey).toString().isEmpty())
        Preferences::setValue(portKey, port);
    ServiceConfig::setOwnService(m_config.fileName());
    return Done{};
}

OwnService::~OwnService()
{
    m_process.disconnect();
    ServiceConfig::setOwnService({});
    m_process.closeWriteChannel();
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(patience))
        m_process.kill();
}
