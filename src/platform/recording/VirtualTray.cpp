#include "VirtualTray.h"

#include "MediaTypes.h"

#include <QDateTime>
#include <QDir>
#include <QSaveFile>
#include <QTemporaryDir>

QString VirtualTray::mediumFolder() const
{
    return m_folder + QStringLiteral("/medium");
}

QString VirtualTray::contentPath(const VirtualMedium &medium) const
{
    return mediumFolder()
           + (medium.audio ? QStringLiteral("/disc.bin") : QStringLiteral("/disc.iso"));
}

QString VirtualTray::unfinishedPath(const VirtualMedium &medium) const
{
    return contentPath(medium) + QStringLiteral(".part");
}

// Flushed apart, since commit() overlooks that what was kept in memory found no room on the disk.
Result<> VirtualTray::storeSheet(const QString &suffix, const QByteArray &content) const
{
    QSaveFile file(mediumFolder() + QStringLiteral("/disc.") + suffix);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush()
        || !file.commit())
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    return Done{};
}

void VirtualTray::removeSheets() const
{
    QDir folder(mediumFolder());
    for (const char *suffix : {"cue", "toc", "cdt"})
        folder.remove(QStringLiteral("disc.") + QLatin1StringView(suffix));
}

void VirtualTray::removeContent() const
{
    removeSheets();
    VirtualMedium medium;
    for (const bool audio : {false, true}) {
        medium.audio = audio;
        QFile::remove(contentPath(medium));
        QFile::remove(unfinishedPath(medium));
    }
}

std::optional<VirtualMedium> VirtualTray::medium() const
{
    return VirtualMedium::load(mediumFolder());
}

// What was burned is kept, and what cannot be told; there is nothing to keep of any other.
Result<QString> VirtualTray::takeOut() const
{
    const std::optional<VirtualMedium> present = medium();
    if (!present)
        return QString();
    const MediaType *type = MediaTypes::find(present->type);
    if (type && present->state != VirtualMedium::State::Complete) {
        // Moved away in whole and then removed, so that nobody sees half a medium.
        const QTemporaryDir gone(m_folder + QStringLiteral("/old-XXXXXX"));
        if (!QDir().rename(mediumFolder(), gone.filePath(QStringLiteral("medium"))))
            return Failure{QStringLiteral("%1 cannot be removed.").arg(mediumFolder())};
        return QString();
    }
    QDir shelf(m_folder + QStringLiteral("/ejected"));
    const QString name =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh-mm-ss "))
        + (type ? QString(type->name) : QStringLiteral("disc"));
    QString free = name;
    for (int i = 2; shelf.exists(free); ++i)
        free = QStringLiteral("%1 (%2)").arg(name).arg(i);
    const QString place = shelf.filePath(free);
    if (!shelf.mkpath(QStringLiteral(".")) || !QDir().rename(mediumFolder(), place))
        return Failure{QStringLiteral("The medium cannot be moved to %1.").arg(place)};
    return place;
}

Result<QString> VirtualTray::insertBlank(const MediaType &type) const
{
    // Made aside and moved in whole, so that nobody sees half a medium.
    QTemporaryDir fresh(m_folder + QStringLiteral("/new-XXXXXX"));
    if (!fresh.isValid())
        return Failure{fresh.errorString()};
    if (const Result<> stored = VirtualMedium::blank(type).store(fresh.path()); !stored)
        return stored.failure();
    Result<QString> place = takeOut();
    if (!place)
        return place;
    if (!QDir().rename(fresh.path(), mediumFolder()))
        return Failure{QStringLiteral("The medium cannot be put into %1.").arg(m_folder)};
    fresh.setAutoRemove(false);
    return place;
}
