#include "DataRepository.h"

#include "FileTools.h"
#include "TreeCopy.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace {

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

QString dataRepository()
{
    return made(repository() + QStringLiteral("/Data"));
}

// Where a copy is made before it takes its place: beside the stores, whose content is what lies in
// them, and on their file system. What a save that was killed left here goes after a day.
class Incoming
{
public:
    Incoming()
        : m_folder(dataRepository() + QStringLiteral("/incoming-XXXXXX"))
    {
        m_folder.setAutoRemove(false);
        const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
        const QDir data(dataRepository());
        for (const QFileInfo &left :
             data.entryInfoList({QStringLiteral("incoming-??????")}, QDir::Dirs))
            if (left.lastModified() < yesterday)
                TreeCopy::remove(left.filePath());
    }
    ~Incoming()
    {
        if (m_folder.isValid() && !m_kept)
            TreeCopy::remove(m_folder.path());
    }
    Incoming(const Incoming &) = delete;
    Incoming &operator=(const Incoming &) = delete;

    [[nodiscard]] bool isValid() const { return m_folder.isValid(); }
    [[nodiscard]] QString errorString() const { return m_folder.errorString(); }
    [[nodiscard]] QString copy() const { return m_folder.filePath(QStringLiteral("copy")); }

    // Puts the complete copy in the old one's place, in one step where the file system can.
    [[nodiscard]] Result<> takePlace(const QString &place)
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

private:
    [[nodiscard]] Result<> takePlaceInTwoSteps(const QString &place)
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

    QTemporaryDir m_folder;
    bool m_kept = false; // it holds the only copy
};

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

    Incoming incoming;
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
