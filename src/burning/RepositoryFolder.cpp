#include "RepositoryFolder.h"

#include "FileTools.h"
#include "TreeCopy.h"

#include <QDateTime>
#include <QDir>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace RepositoryFolder {

QString made(const QString &folder)
{
    QDir().mkpath(folder);
    return folder;
}

QString repository()
{
    return QFileInfo(made(MiscTool::getCachedPath() + QStringLiteral("/Repository")))
        .canonicalFilePath();
}

Incoming::Incoming(const QString &folder)
    : m_folder(folder + QStringLiteral("/incoming-XXXXXX"))
{
    m_folder.setAutoRemove(false);
    const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
    const QDir stores(folder);
    for (const QFileInfo &left :
         stores.entryInfoList({QStringLiteral("incoming-??????")}, QDir::Dirs))
        if (left.lastModified() < yesterday)
            TreeCopy::remove(left.filePath());
}

Incoming::~Incoming()
{
    if (m_folder.isValid() && !m_kept)
        TreeCopy::remove(m_folder.path());
}

Result<> Incoming::takePlace(const QString &place)
{
    const QByteArray from = QFile::encodeName(copy());
    const QByteArray to = QFile::encodeName(place);
    const auto rename = [&](unsigned flags) {
        return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), flags) == 0;
    };
    if (rename(RENAME_NOREPLACE) || (errno == EEXIST && rename(RENAME_EXCHANGE)))
        return Done{};
    return takePlaceInTwoSteps(place);
}

Result<> Incoming::takePlaceInTwoSteps(const QString &place)
{
    const QString aside = m_folder.filePath(QStringLiteral("old"));
    const QFileInfo old(place);
    const bool replaces = old.exists() || old.isSymLink();
    if (replaces && !QDir().rename(place, aside))
        return Failure{QStringLiteral("%1 cannot be replaced.").arg(place)};
    if (QDir().rename(copy(), place))
        return Done{};
    m_kept = replaces && !QDir().rename(aside, place);
    return Failure{QStringLiteral("%1 cannot be made.").arg(place)};
}

}
