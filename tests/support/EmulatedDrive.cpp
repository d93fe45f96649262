#include "EmulatedDrive.h"

#include <QFile>
#include <QProcess>

#include <cstdio>

namespace {

constexpr int patience = 60000; // ms
constexpr int preGap = 150;     // blocks
constexpr qint64 sectorSize = 2352;
constexpr qint64 blockSize = 2048;

}

EmulatedDrive::EmulatedDrive()
{
    qputenv("MMC_DRIVE", m_folder.path().toLocal8Bit());
}

EmulatedDrive::~EmulatedDrive()
{
    qunsetenv("MMC_DRIVE");
}

// In one step: the drive must not find half a file.
void EmulatedDrive::store(const QString &name, const QString &text) const
{
    const QString path = m_folder.filePath(name);
    QFile file(path + QStringLiteral(".new"));
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
        qFatal("%s", qPrintable(file.errorString()));
    file.close();
    if (std::rename(QFile::encodeName(file.fileName()).constData(),
                    QFile::encodeName(path).constData())
        != 0)
        qFatal("%s", qPrintable(path));
}

bool EmulatedDrive::isInserting() const
{
    return QFile::exists(m_folder.filePath(QStringLiteral("insert")));
}

QByteArray EmulatedDrive::read(const QString &name, qint64 offset, qint64 size) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::ReadOnly) || !file.seek(offset))
        return {};
    return size < 0 ? file.readAll() : file.read(size);
}

QStringList EmulatedDrive::commands() const
{
    return QString::fromLatin1(read(QStringLiteral("commands")))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QByteArray EmulatedDrive::data(qint64 first, qint64 count, bool cd) const
{
    if (!cd)
        return read(QStringLiteral("blocks"), first * blockSize, count * blockSize);
    QByteArray bytes;
    for (qint64 block = first; block < first + count; ++block)
        bytes += sectors(block, 1).first(blockSize);
    return bytes;
}

QByteArray EmulatedDrive::sectors(qint64 first, qint64 count) const
{
    QByteArray bytes =
        read(QStringLiteral("blocks"), (preGap + first) * sectorSize, count * sectorSize);
    return bytes.append(count * sectorSize - bytes.size(), '\0'); // the file may end before
}

QByteArray EmulatedDrive::packs() const
{
    return read(QStringLiteral("packs"));
}

EmulatedDrive::Run EmulatedDrive::run(const QString &program, const QStringList &arguments,
                                      const QString &folder) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(MMC_DRIVE_LIBRARY));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForFinished(patience))
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAll())};
}
