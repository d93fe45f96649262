#include "PasswordStrength.h"

#include "Fields.h"
#include "LevelIndicator.h"
#include "Passwords.h"

#include <QLineEdit>

namespace {

constexpr quint64 maximum = 20;
constexpr quint64 levelsOfStrength = 2;

}

PasswordStrength::PasswordStrength(QLineEdit *field, LevelIndicator *indicator)
    : m_indicator(indicator)
{
    indicator->setMaximum(maximum);
    indicator->setFullIsGood(true);
    Fields::keepPlaceWhenHidden(indicator);
    connect(field, &QLineEdit::textChanged, this, &PasswordStrength::controlTextDidChange);
    controlTextDidChange(field->text());
}

void PasswordStrength::controlTextDidChange(const QString &password)
{
    m_indicator->setHidden(password.isEmpty());
    m_indicator->setValue(levelsOfStrength * MiscTool::passwordStrength(password));
}

bool PasswordStrength::isHighest() const
{
    return m_indicator->value() == m_indicator->maximum();
}

// Exactly: the highest is another one.
bool PasswordStrength::isHigh() const
{
    return m_indicator->value() == m_indicator->maximum() - levelsOfStrength;
}
