#include "DataRepository.h"

#include "FileTools.h"
#include "TreeCopy.h"

#include <QDir>
#include <QTemporaryDir>

namespace {

QString made(const QString &folder)
{
    QDir().mkpath(folder);
    return folder;
}

QString repository()
{
    return made(MiscTool::getCachedPath() + QStringLiteral("/Repository"));
}

QString dataRepository()
{
    return made(repository() + QStringLiteral("/Data"));
}

bool removePath(const QString &path)
{
    const QFileInfo info(path);
    return info.isDir() && !info.isSymLink() ? QDir(path).removeRecursively() : QFile::remove(path);
}

bool isThere(const QString &path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

// Puts the complete copy in the old one's place, which is kept aside until that has worked.
Result<> takePlace(const QString &copy, const QString &place, const QString &aside)
{
    const bool replaces = isThere(place);
    if (replaces && !QDir().rename(place, aside))
        return Failure{QStringLiteral("%1 cannot be replaced.").arg(place)};
    if (!QDir().rename(copy, place)) {
        if (replaces)
            QDir().rename(aside, place);
        return Failure{QStringLiteral("%1 cannot be made.").arg(place)};
    }
    return Done{};
}

}

QString DataRepository::folder(Kind kind)
{
    return made(dataRepository()
                + (kind == Kind::Folder ? QStringLiteral("/Folder") : QStringLiteral("/Image")));
}

QString DataRepository::pathOf(Kind kind, const QString &name)
{
    return folder(kind) + QLatin1Char('/') + name;
}

QStringList DataRepository::names(Kind kind)
{
    return QDir(folder(kind))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::NoSort);
}

qint64 DataRepository::sizeOf(Kind kind, const QString &name, const std::stop_token &stop)
{
    const QString path = pathOf(kind, name);
    return kind == Kind::Folder ? MiscTool::getFolderSize(path, stop) : MiscTool::getFileSize(path);
}

Result<> DataRepository::save(Kind kind, const QString &source, const std::stop_token &stop)
{
    const QFileInfo info(QDir::cleanPath(source));
    const QString place = pathOf(kind, info.fileName());
    if (info.fileName().isEmpty())
        return Failure{QStringLiteral("%1 has no name to be stored under.").arg(source)};
    if (info.canonicalFilePath() == QFileInfo(place).canonicalFilePath())
        return info.exists() ? Result<>(Done{})
                             : Failure{QStringLiteral("%1 does not exist.").arg(source)};

    // Beside the stores: their content is what lies in them, and renaming needs one file system.
    QTemporaryDir incoming(dataRepository() + QStringLiteral("/incoming-XXXXXX"));
    if (!incoming.isValid())
        return Failure{incoming.errorString()};
    const QString copy = incoming.filePath(QStringLiteral("copy"));
    const QString leftOut = kind == Kind::Folder ? repository() : QString();
    if (const Result<> copied = TreeCopy::copy(info.canonicalFilePath(), copy, leftOut, stop);
        !copied)
        return copied;
    return takePlace(copy, place, incoming.filePath(QStringLiteral("old")));
}

bool DataRepository::remove(Kind kind, const QString &name)
{
    return removePath(pathOf(kind, name));
}
