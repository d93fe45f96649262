#include "DRFolder.h"

#include <QDir>

QString DRFolder::name() const
{
    const QString name = QDir(QDir::cleanPath(m_path)).dirName();
    return name.isEmpty() ? QStringLiteral("Disc") : name; // "/" has no name of its own
}
