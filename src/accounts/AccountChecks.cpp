#include "AccountChecks.h"

#include "Localized.h"
#include "PasswordStrength.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

constexpr qsizetype shortestPassword = 7;

bool isNoAddress(const QLineEdit *field)
{
    return !field->text().contains(u'@') || !field->text().contains(u'.');
}

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

QList<Check> AccountChecks::email(QLineEdit *field, const char *table)
{
    return {
        {[field] { return field->text().isEmpty(); }, localized(table, "Email can not be null."),
         localized(table, "Please enter your email."), field},
        {[field] { return isNoAddress(field); }, localized(table, "Email is invalid."),
         localized(table, "Please enter right format email."), field},
    };
}

QList<Check> AccountChecks::rescueEmail(QLineEdit *field, const char *table)
{
    return {
        {[field] { return field->text().isEmpty(); },
         localized(table, "Rescue Email can not be null."),
         localized(table, "Please enter the rescue email."), field},
        {[field] { return isNoAddress(field); }, localized(table, "Rescue Email is invalid."),
         localized(table, "Please enter right format email."), field},
    };
}

Check AccountChecks::password(QLineEdit *field, const char *table)
{
    return {[field] { return field->text().isEmpty(); },
            localized(table, "Password can not be null."),
            localized(table, "Please enter your password."), field};
}

Check AccountChecks::passwordLength(QLineEdit *field, const char *table)
{
    return {[field] { return field->text().size() < shortestPassword; },
            localized(table, "Password length cannot be less than 6"),
            localized(table, "Please update your password."), field};
}

Check AccountChecks::passwordStrength(QLineEdit *field, const PasswordStrength &strength,
                                      const char *table)
{
    return {[&strength] { return !strength.isHigh(); },
            localized(table, "Password strength is low."),
            localized(table, "Password length should be more than 6,and contains lower case "
                             "letter,upper case letter and digit."),
            field};
}

Check AccountChecks::repeatedPassword(QLineEdit *field, QLineEdit *repeated, const char *table)
{
    return {[field, repeated] { return field->text() != repeated->text(); },
            localized(table, "Fail to verify password."),
            localized(table, "Please check your password."), repeated};
}
