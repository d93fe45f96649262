// What may be typed where a whole number is wanted: nothing, or one number with an optional sign
// and white space before it. Main thread.
#pragma once

#include <QValidator>

class OnlyIntegerValueFormatter : public QValidator
{
    Q_OBJECT

public:
    using QValidator::QValidator;

    [[nodiscard]] State validate(QString &text, int &cursor) const override;
};
