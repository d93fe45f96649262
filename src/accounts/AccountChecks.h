// Checks that registration, recovery and the change of security data have in common. The texts are
// of the page's table. Main thread.
#pragma once

#include "Checks.h"

class PasswordStrength;
class QComboBox;
class QLineEdit;

namespace AccountChecks {

[[nodiscard]] Check notEmpty(QLineEdit *field, const QString &message,
                             const QString &informativeText);
// The first line of a pop-up stands for nothing chosen.
[[nodiscard]] Check chosen(QComboBox *popUp, const QString &message,
                           const QString &informativeText);

// That the field holds something like an address.
[[nodiscard]] QList<Check> email(QLineEdit *field, const char *table);
[[nodiscard]] QList<Check> rescueEmail(QLineEdit *field, const char *table);

[[nodiscard]] Check password(QLineEdit *field, const char *table);
[[nodiscard]] Check passwordLength(QLineEdit *field, const char *table);
// That the password has every kind of character but special ones.
[[nodiscard]] Check passwordStrength(QLineEdit *field, const PasswordStrength &strength,
                                     const char *table);
[[nodiscard]] Check repeatedPassword(QLineEdit *field, QLineEdit *repeated, const char *table);

}
