#include "ServiceFixture.h"

#include "RecordingServer.h"

#include <QCoreApplication>

#include <csignal>

ServiceFixture::ServiceFixture()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    start();
}

ServiceFixture::~ServiceFixture()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

void ServiceFixture::start()
{
    m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/maplorn-service"),
                    {QStringLiteral("--child"), QStringLiteral("--port"), QStringLiteral("0"),
                     QStringLiteral("--data"), m_folder.path()});
    m_process.write("secret\n");
    while (!m_process.canReadLine())
        if (!m_process.waitForReadyRead())
            qFatal("the service does not start");
    m_port = m_process.readLine().trimmed().toUShort();
    preferService(m_port, QStringLiteral("secret"));
}

void ServiceFixture::terminateHard() const
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGKILL);
}

void ServiceFixture::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}
