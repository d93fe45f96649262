#include "OnlyIntegerValueFormatter.h"

#include <QRegularExpression>

QValidator::State OnlyIntegerValueFormatter::validate(QString &text, int &) const
{
    static const QRegularExpression number(QStringLiteral("\\A(\\s*[+-]?[0-9]+)?\\z"));
    return number.match(text).hasMatch() ? Acceptable : Invalid;
}
