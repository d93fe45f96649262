// The program that makes disc images, run as a child: the system's own where there is one, else
// maplorn-diskimage. It is ended, cleanly, with what started it and with the program. Main thread.
#pragma once

#include "RunningJobs.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class QProcess;

class DiskImageTool : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~DiskImageTool() override;

    // "/usr/bin/hdiutil" where that exists, else the tool of this program. The path given takes the
    // place of both, for tests; empty: none.
    [[nodiscard]] static QString programPath();
    static void setProgramPath(const QString &path);

    // Starts the tool with these arguments and returns. ended is called once: with the tool's exit
    // status, or null when it could not be started or did not end by itself.
    void run(const QStringList &arguments,
             const std::function<void(std::optional<int> exitStatus)> &ended);

    // Whether the last run was ended by RunningJobs.
    [[nodiscard]] bool wasAborted() const { return m_aborted; }

private:
    QProcess *m_process = nullptr;
    RunningJobs::Mark m_mark;
    bool m_aborted = false;
};
