// How strong the password in a field is, shown beside it while the field holds one. The pages
// differ in what strength they demand. Main thread.
#pragma once

#include <QObject>

class LevelIndicator;
class QLineEdit;

class PasswordStrength : public QObject
{
    Q_OBJECT

public:
    PasswordStrength(QLineEdit *field, LevelIndicator *indicator);

    // The highest, a password with every kind of character; and one without special characters.
    [[nodiscard]] bool isHighest() const;
    [[nodiscard]] bool isHigh() const;

private:
    void controlTextDidChange(const QString &password);

    LevelIndicator *m_indicator;
};
