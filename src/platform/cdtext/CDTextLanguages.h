// The languages that CD-Text knows and that have an ISO 639-1 code. Any thread.
#pragma once

#include <QStringList>

namespace CDTextLanguages {

// The language's code on the disc; 0 for an empty or unknown code.
[[nodiscard]] quint8 ebuCode(const QString &iso639);

// The English name; "Default" for an empty code, and an unknown code itself.
[[nodiscard]] QString nameOf(const QString &iso639);

// All ISO 639-1 codes.
[[nodiscard]] QStringList codes();

}
