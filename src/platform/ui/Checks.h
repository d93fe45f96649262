// Checks of a page's input: data, run in order up to the first that fails, which moves the focus
// to its control and shows its alert. Main thread.
#pragma once

#include <QList>
#include <QString>

#include <functional>

class QWidget;

struct Check
{
    std::function<bool()> fails;
    QString message;
    QString informativeText;
    QWidget *control = nullptr; // that gets the focus; null: the focus stays
};

// True when none fails.
[[nodiscard]] bool runChecks(const QList<Check> &checks);

// Its two halves: the first check that fails, null when none does; and telling the user.
[[nodiscard]] const Check *firstFailure(const QList<Check> &checks);
void tell(const Check &failure);
