#include "Checks.h"

#include "Alerts.h"

#include <QWidget>

#include <algorithm>

const Check *firstFailure(const QList<Check> &checks)
{
    const auto failure = std::ranges::find_if(checks, [](const Check &c) { return c.fails(); });
    return failure == checks.end() ? nullptr : &*failure;
}

void tell(const Check &failure)
{
    if (failure.control)
        failure.control->setFocus();
    MiscTool::showAlert(failure.message, failure.informativeText);
}

bool runChecks(const QList<Check> &checks)
{
    const Check *failure = firstFailure(checks);
    if (failure)
        tell(*failure);
    return !failure;
}
