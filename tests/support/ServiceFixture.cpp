#include "ServiceFixture.h"

#include "RecordingServer.h"

#include <QCoreApplication>

ServiceFixture::ServiceFixture(const QStringList &options)
    : m_options(options)
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
                    QStringList{QStringLiteral("--child"), QStringLiteral("--port"),
                                QStringLiteral("0"), QStringLiteral("--data"), m_folder.path()}
                        + m_options);
    m_process.write("secret\n");
    while (!m_process.canReadLine())
        if (!m_process.waitForReadyRead())
            qFatal("the service does not start");
    m_port = m_process.readLine().trimmed().toUShort();
    preferService(m_port, QStringLiteral("secret"));
}

int ServiceFixture::end()
{
    m_process.terminate();
    m_process.waitForFinished();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void ServiceFixture::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}
