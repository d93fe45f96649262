// Passwords and codes. Random numbers come from the system's source. Any thread.
#pragma once

#include <QStringList>

namespace MiscTool {

// 0 to 10: the length, of which 6 count, and 1 for each of lower case, upper case, digits and
// symbols that occur.
[[nodiscard]] uint passwordStrength(const QString &password);

// The same list in an order that is as likely as any other.
QStringList &shuffle(QStringList &list);

// Six different digits.
[[nodiscard]] QString getSimplePassword();
[[nodiscard]] QString getVerifyCode();

// Eight different letters and digits; the letter n comes as " n", so that a password with it has
// nine characters.
[[nodiscard]] QString getAdvancedRandomPassword();

}
