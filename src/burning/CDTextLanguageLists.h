// The two lists of languages in the CD-Text editor: those in use, each with its encoding's tag, and
// those that can be added. Main thread.
#pragma once

#include <QStringList>

class QComboBox;

namespace CDTextLanguageLists {

// The title of the language that is always in use, and first.
[[nodiscard]] QString defaultLanguage();

[[nodiscard]] QStringList titles(const QComboBox *popUp);

// Makes the items anew, the default language with that tag, the others sorted and without an
// encoding.
void rebuild(QComboBox *selectedLanguagePopUp, QStringList titles, int defaultTag);

// Puts a language back where it stands in the order; the one chosen stays chosen.
void putBack(QComboBox *availableLanguagePopUp, const QString &name);

}
