#include "AudioRepository.h"

#include "FileTools.h"
#include "PropertyList.h"
#include "TreeCopy.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdio>

namespace {

QString repository()
{
    return MiscTool::getCachedPath() + QStringLiteral("/Repository");
}

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
    const QString path = repository() + QStringLiteral("/Music");
    QDir().mkpath(path);
    return path;
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

// Made aside and moved over the empty folder that stands for the name meanwhile.
Result<> AudioRepository::save(const Record &record, const std::stop_token &stop)
{
    const QString place = folder() + u'/' + record.name;
    if (!isName(record.name) || !QDir().mkdir(place))
        return Failure{QStringLiteral("%1: the folder cannot be made").arg(place)};
    QTemporaryDir incoming(repository() + QStringLiteral("/incoming-XXXXXX"));
    const auto giveUp = [&place](const QString &reason) {
        QDir().rmdir(place);
        return Failure{reason};
    };
    if (!incoming.isValid())
        return giveUp(incoming.errorString());
    for (qsizetype i = 0; i < record.paths.size() && !stop.stop_requested(); ++i)
        copyFile(record.paths.at(i), incoming.filePath(record.names.at(i)), stop);
    if (!record.cdText.isEmpty()) {
        const QString list = incoming.filePath(QStringLiteral("CD-Text.plist"));
        if (const Result<> written = PropertyList::write(list, record.cdText); !written)
            qWarning().noquote() << "the CD-Text was left out of the record:" << written.error();
    }
    if (stop.stop_requested())
        return giveUp(QStringLiteral("The saving was stopped."));
    QFile::setPermissions(incoming.path(), QFile::permissions(place)); // a temporary one is private
    if (std::rename(QFile::encodeName(incoming.path()).constData(),
                    QFile::encodeName(place).constData())
        != 0)
        return giveUp(QStringLiteral("%1: %2").arg(place, qt_error_string(errno)));
    incoming.setAutoRemove(false);
    return Done{};
}
