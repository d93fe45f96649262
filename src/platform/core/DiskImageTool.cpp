#include "DiskImageTool.h"

#include "ChildProcess.h"
#include "MainQueue.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <csignal>

#include <sys/prctl.h>

namespace {

constexpr int patience = 5000; // ms that the tool may take to end when it is told to

QString &chosenPath()
{
    static QString path;
    return path;
}

// The tool removes what it has made so far when it is told to end.
void end(QProcess *process)
{
    process->terminate();
    QTimer::singleShot(patience, process, &QProcess::kill);
}

}

DiskImageTool::~DiskImageTool()
{
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return;
    m_process->disconnect();
    m_process->terminate();
    if (!m_process->waitForFinished(patience))
        m_process->kill();
    m_process->waitForFinished(patience);
}

void DiskImageTool::setProgramPath(const QString &path)
{
    chosenPath() = path;
}

QString DiskImageTool::programPath()
{
    if (!chosenPath().isEmpty())
        return chosenPath();
    const QString systems = QStringLiteral("/usr/bin/hdiutil");
    if (QFileInfo(systems).isExecutable())
        return systems;
    const QString ours = QStringLiteral("maplorn-diskimage");
    const QString beside =
        QStandardPaths::findExecutable(ours, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(ours) : beside;
}

void DiskImageTool::run(const QStringList &arguments,
                        const std::function<void(std::optional<int>)> &ended)
{
    Q_ASSERT(!m_mark);
    m_process = new QProcess(this);
    const QPointer<QProcess> process = m_process;
    m_aborted = false;
    m_mark = RunningJobs::instance().add([this, process] {
        if (!process)
            return;
        m_aborted = true;
        end(process);
    });
    const auto finish = [this, ended](std::optional<int> exitStatus) {
        MainQueue::deliver(this, [this, ended, exitStatus] {
            m_process->deleteLater();
            m_process = nullptr;
            m_mark.reset();
            ended(exitStatus);
        });
    };
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(m_process, &QProcess::finished, this, [finish](int code, QProcess::ExitStatus status) {
        finish(status == QProcess::NormalExit ? std::optional(code) : std::nullopt);
    });
    connect(m_process, &QProcess::errorOccurred, this,
            [finish, this](QProcess::ProcessError error) {
                if (error != QProcess::FailedToStart)
                    return;
                qWarning().noquote()
                    << "the disc-image tool cannot be started:" << m_process->errorString();
                finish(std::nullopt);
            });
    m_process->setChildProcessModifier([] {
        prctl(PR_SET_PDEATHSIG, SIGTERM); // also where this program is killed
        ChildProcess::inheritStreamsOnly();
    });
    m_process->start(programPath(), arguments);
}
