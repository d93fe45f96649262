#include "AccountChecks.h"

#include "PasswordStrength.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

constexpr qsizetype shortestPassword = 7;

}

Check AccountChecks::notEmpty(QLineEdit *field, const QString &message,
                              const QString &informativeText)
{
    return {[field] { return field->text().isEmpty(); }, message, informativeText, field};
}

Check AccountChecks::chosen(QComboBox *popUp, const QString &message,
                            const QString &informativeText)
{
    return {[popUp] { return popUp->currentIndex() < 1; }, message, informativeText, popUp};
}

Check AccountChecks::address(QLineEdit *field, const QString &message,
                             const QString &informativeText)
{
    return {[field] { return !field->text().contains(u'@') || !field->text().contains(u'.'); },
            message, informativeText, field};
}

Check AccountChecks::passwordLength(QLineEdit *field, const QString &message,
                                    const QString &informativeText)
{
    return {[field] { return field->text().size() < shortestPassword; }, message, informativeText,
            field};
}

Check AccountChecks::passwordStrength(QLineEdit *field, const PasswordStrength &strength,
                                      const QString &message, const QString &informativeText)
{
    return {[&strength] { return !strength.isHigh(); }, message, informativeText, field};
}

Check AccountChecks::same(const QLineEdit *field, QLineEdit *repeated, const QString &message,
                          const QString &informativeText)
{
    return {[field, repeated] { return field->text() != repeated->text(); }, message,
            informativeText, repeated};
}
