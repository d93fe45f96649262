#include "AudioRepository.h"

#include "PropertyList.h"
#include "RepositoryFolder.h"
#include "TreeCopy.h"

#include <QDir>

namespace {

// Of tracks that have the same file name the first is kept.
void copyFile(const QString &from, const QString &to, const std::stop_token &stop)
{
    if (QFileInfo::exists(to)) {
        qWarning().noquote() << "a track was left out of the record, which has one of its name:"
                             << from;
        return;
    }
    const QString file = QFileInfo(from).canonicalFilePath(); // the file itself, not a link to it
    const Result<> copied = TreeCopy::copy(file.isEmpty() ? from : file, to, {}, stop);
    if (copied)
        return;
    qWarning().noquote() << "a track was left out of the record:" << copied.error();
    TreeCopy::remove(to);
}

}

QString AudioRepository::folder()
{
    return RepositoryFolder::made(RepositoryFolder::repository() + QStringLiteral("/Music"));
}

qsizetype AudioRepository::count()
{
    return QDir(folder())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

bool AudioRepository::isName(const QString &name)
{
    constexpr qsizetype longest = 255; // bytes (NAME_MAX)
    return !name.isEmpty() && name != QLatin1StringView(".") && name != QLatin1StringView("..")
           && !name.contains(u'/') && !name.contains(QChar(0))
           && QFile::encodeName(name).size() <= longest;
}

bool AudioRepository::exists(const QString &name)
{
    const QFileInfo place(folder() + u'/' + name);
    return place.exists() || place.isSymLink();
}

// Made aside; an empty folder stands for the name meanwhile, so that nobody else takes it.
Result<> AudioRepository::save(const Record &record, const std::stop_token &stop)
{
    const QString place = folder() + u'/' + record.name;
    if (!isName(record.name) || !QDir().mkdir(place))
        return Failure{QStringLiteral("%1: the folder cannot be made").arg(place)};
    const auto giveUp = [&place](const QString &reason) {
        QDir().rmdir(place);
        return Failure{reason};
    };
    RepositoryFolder::Incoming incoming(RepositoryFolder::repository());
    const QDir copy(incoming.copy());
    if (!incoming.isValid())
        return giveUp(incoming.errorString());
    if (!QDir().mkdir(copy.path()))
        return giveUp(QStringLiteral("%1: the folder cannot be made").arg(copy.path()));
    for (qsizetype i = 0; i < record.paths.size() && !stop.stop_requested(); ++i)
        copyFile(record.paths.at(i), copy.filePath(record.names.at(i)), stop);
    if (!record.cdText.isEmpty()) {
        const QString list = copy.filePath(QStringLiteral("CD-Text.plist"));
        if (const Result<> written = PropertyList::write(list, record.cdText); !written)
            qWarning().noquote() << "the CD-Text was left out of the record:" << written.error();
    }
    if (stop.stop_requested())
        return giveUp(QStringLiteral("The saving was stopped."));
    if (const Result<> placed = incoming.takePlace(place); !placed)
        return giveUp(placed.error());
    return Done{};
}
