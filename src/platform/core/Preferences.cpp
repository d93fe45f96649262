#include "Preferences.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

namespace {

QString path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + QStringLiteral("/maplorn-disc/preferences.ini");
}

// QSettings would make a new file readable for all, and keeps the mode of one that is there.
void makePrivate(const QString &file)
{
    constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    constexpr QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup
                                                | QFileDevice::ReadOther | QFileDevice::WriteOther;
    if (QFile::exists(file)) {
        if (QFile::permissions(file) & others)
            QFile::setPermissions(file, ownerOnly);
        return;
    }
    QDir().mkpath(QFileInfo(file).path());
    QFile fresh(file);
    if (fresh.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        fresh.close();
}

}

QVariant Preferences::value(const QString &key)
{
    return QSettings(path(), QSettings::IniFormat).value(key);
}

void Preferences::setValue(const QString &key, const QVariant &value)
{
    makePrivate(path());
    QSettings settings(path(), QSettings::IniFormat);
    settings.setValue(key, value);
    settings.sync();
}

void Preferences::remove(const QString &key)
{
    makePrivate(path());
    QSettings settings(path(), QSettings::IniFormat);
    settings.remove(key);
    settings.sync();
}
