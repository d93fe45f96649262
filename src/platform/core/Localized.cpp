#include "Localized.h"

#include <QCoreApplication>

QString localized(const char *table, const QString &key)
{
    return QCoreApplication::translate(table, key.toUtf8().constData());
}
