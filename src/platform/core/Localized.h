// Texts for people, in the language of the session: the English text is the key, and what is
// shown where no translation has it. Any thread.
#pragma once

#include <QString>

// The table (translation context) of the texts that belong to no page.
inline constexpr char localizableTable[] = "Localizable";

[[nodiscard]] QString localized(const char *table, const QString &key);
[[nodiscard]] inline QString localized(const QString &key)
{
    return localized(localizableTable, key);
}
