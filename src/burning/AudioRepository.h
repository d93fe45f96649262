// The store of audio records: one folder a record, with copies of the tracks' files and the
// CD-Text. Any thread.
#pragma once

#include "Result.h"

#include <QStringList>
#include <QVariantMap>

#include <stop_token>

namespace AudioRepository {

struct Record
{
    QString name;
    QStringList names;  // of the copies
    QStringList paths;  // of the tracks' files, one each
    QVariantMap cdText; // language to list of dictionaries; empty: no file of it
};

// The folder that holds the records; made when it is missing.
[[nodiscard]] QString folder();

// How many entries it has.
[[nodiscard]] qsizetype count();

// Whether a folder can have that name.
[[nodiscard]] bool isName(const QString &name);
[[nodiscard]] bool exists(const QString &name);

// Stores a record, which is seen only when it is complete. What cannot be copied is left out and
// named in the log. Fails when there can be no folder of that name, or when stopped. Slow.
[[nodiscard]] Result<> save(const Record &record, const std::stop_token &stop);

}
