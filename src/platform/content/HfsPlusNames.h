// Names that HFS+ cannot hold as they are, since they are too long for it when decomposed, or as
// long as can be and alike but for case, so that libisofs finds no other one. Any thread.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

namespace HfsPlusNames {

constexpr qsizetype longest = 255; // UTF-16 units, decomposed

// As many whole characters from the front as fit.
[[nodiscard]] QString shortened(QString name, qsizetype units = longest);

// The names for HFS+ of those among the names in one folder, in UTF-8, that need another one.
[[nodiscard]] QHash<QByteArray, QByteArray> replacements(const QList<QByteArray> &names);

}
