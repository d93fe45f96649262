#include "DataRepository.h"

#include "FileTools.h"
#include "RepositoryFolder.h"
#include "TreeCopy.h"

#include <QDir>

using namespace RepositoryFolder;

namespace {

QString dataRepository()
{
    return made(repository() + QStringLiteral("/Data"));
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

    if (info.canonicalFilePath() == repository() || info.canonicalFilePath() == dataRepository())
        return Failure{QStringLiteral("%1 is the repository itself.").arg(source)};

    Incoming incoming(dataRepository());
    if (!incoming.isValid())
        return Failure{incoming.errorString()};
    const QString leftOut = kind == Kind::Folder ? repository() : QString();
    if (const Result<> copied =
            TreeCopy::copy(info.canonicalFilePath(), incoming.copy(), leftOut, stop);
        !copied)
        return copied;
    return incoming.takePlace(place);
}

bool DataRepository::remove(Kind kind, const QString &name)
{
    return TreeCopy::remove(pathOf(kind, name));
}
