// Property-list files (XML or binary), read and written as Qt values: dictionary as QVariantMap,
// array as QVariantList, string, integer (qint64, not negative), real (double), boolean, data
// (QByteArray) and date (QDateTime, UTC). Any thread.
#pragma once

#include "Result.h"

#include <QVariant>

namespace PropertyList {

// Reads a file or a resource (":/…"). The error names the file.
[[nodiscard]] Result<QVariant> read(const QString &path);

// The dictionary in a file; empty where the file is missing, damaged or holds something else.
[[nodiscard]] QVariantMap readMap(const QString &path);

// Writes XML, through a temporary file beside it, so that a reader sees the old or the new one.
[[nodiscard]] Result<> write(const QString &path, const QVariant &value);

}
