// Checks that registration, recovery, the change of security data and the profile have in common.
// The texts are of the page's table. Main thread.
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

// That the field holds something like an e-mail address.
[[nodiscard]] Check address(QLineEdit *field, const QString &message,
                            const QString &informativeText);

[[nodiscard]] Check passwordLength(QLineEdit *field, const QString &message,
                                   const QString &informativeText);
// That the password has every kind of character but special ones.
[[nodiscard]] Check passwordStrength(QLineEdit *field, const PasswordStrength &strength,
                                     const QString &message, const QString &informativeText);
[[nodiscard]] Check same(const QLineEdit *field, QLineEdit *repeated, const QString &message,
                         const QString &informativeText);

}
