// maplorn-diskimage, run by a test, and the folder that it works in. Main thread.
#pragma once

#include "TreeTools.h"

#include <QProcess>
#include <QTemporaryDir>

class DiskImageRun
{
public:
    struct Outcome
    {
        int exitCode = -1; // -1 where a signal ended it
        QByteArray output;
        QByteArray errors;

        // Failed as a failure should: status 1, and one line with this in it.
        [[nodiscard]] bool failedWith(const QByteArray &reason) const;
        [[nodiscard]] QByteArray text() const;
    };

    DiskImageRun();
    ~DiskImageRun();
    DiskImageRun(const DiskImageRun &) = delete;
    DiskImageRun &operator=(const DiskImageRun &) = delete;
    DiskImageRun(DiskImageRun &&) = delete;
    DiskImageRun &operator=(DiskImageRun &&) = delete;

    // In the folder, which the program starts in.
    [[nodiscard]] QByteArray path(const QByteArray &name) const;
    [[nodiscard]] QByteArrayList names(const QByteArray &folder) const;

    // The process, for starting it; "%" at the start of a word stands for the folder.
    void prepare(QProcess &process, const QByteArrayList &words) const;
    [[nodiscard]] Outcome run(const QByteArrayList &words) const;
    [[nodiscard]] static Outcome finish(QProcess &process);

    void setEnvironment(const QString &name, const QString &value)
    {
        m_environment.insert(name, value);
    }

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};
