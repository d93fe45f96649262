#include "Checks.h"

#include "Alerts.h"

#include <QWidget>

bool runChecks(std::initializer_list<Check> checks)
{
    for (const Check &check : checks) {
        if (!check.fails())
            continue;
        if (check.control)
            check.control->setFocus();
        MiscTool::showAlert(check.message, check.informativeText);
        return false;
    }
    return true;
}
