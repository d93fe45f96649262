// Checks of a page's input: data, run in order up to the first that fails, which moves the focus
// to its control and shows its alert. Main thread.
#pragma once

#include <QString>

#include <functional>
#include <initializer_list>

class QWidget;

struct Check
{
    std::function<bool()> fails;
    QString message;
    QString informativeText;
    QWidget *control = nullptr; // that gets the focus; null: the focus stays
};

// True when none fails.
[[nodiscard]] bool runChecks(std::initializer_list<Check> checks);
