#include "DiskImageRun.h"

#include <QFile>

#include <filesystem>

bool DiskImageRun::Outcome::failedWith(const QByteArray &reason) const
{
    return exitCode == 1 && output.isEmpty() && errors.count('\n') == 1 && errors.endsWith('\n')
           && errors.startsWith("maplorn-diskimage: ") && errors.contains(reason);
}

QByteArray DiskImageRun::Outcome::text() const
{
    return "status " + QByteArray::number(exitCode) + ", output " + output + ", errors " + errors;
}

DiskImageRun::DiskImageRun()
{
    TreeTools::makeFolder(path("source"));
}

// QTemporaryDir does not find the names that are no text.
DiskImageRun::~DiskImageRun()
{
    std::filesystem::remove_all(m_folder.path().toStdString());
}

QByteArray DiskImageRun::path(const QByteArray &name) const
{
    return QFile::encodeName(m_folder.path()) + '/' + name;
}

QByteArrayList DiskImageRun::names(const QByteArray &folder) const
{
    QByteArrayList names;
    for (const auto &entry : std::filesystem::directory_iterator(path(folder).toStdString()))
        names.append(QByteArray::fromStdString(entry.path().filename().string()));
    std::sort(names.begin(), names.end());
    return names;
}

void DiskImageRun::prepare(QProcess &process, const QByteArrayList &words) const
{
    process.setProgram(QStringLiteral(DISKIMAGE_PROGRAM));
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(m_folder.path());
    QStringList arguments;
    for (const QByteArray &word : words)
        arguments.append(QFile::decodeName(word.startsWith('%') ? path(word.mid(1)) : word));
    process.setArguments(arguments);
}

DiskImageRun::Outcome DiskImageRun::run(const QByteArrayList &words) const
{
    QProcess process;
    prepare(process, words);
    process.start();
    return finish(process);
}

DiskImageRun::Outcome DiskImageRun::finish(QProcess &process)
{
    Outcome outcome;
    if (process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    return outcome;
}
