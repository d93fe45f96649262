// Alerts and questions: a message line, an informative line, buttons "OK" then "Cancel" in this
// order on every desktop. Main thread.
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace MiscTool {

// An alert with the default button; returns when the user has closed it.
void showAlert(const QString &message, const QString &informativeText);

}

namespace Alerts {

// A question as a sheet on the window that holds the widget; returns at once. onOk is called when
// the user presses "OK", unless the widget has gone by then. The buttons' texts are of that table.
void confirmOnWindow(QWidget *widget, const QString &message, const QString &informativeText,
                     const std::function<void()> &onOk, const char *table = "Localizable");

// A modal question; true for "OK".
[[nodiscard]] bool confirm(QWidget *widget, const QString &message, const QString &informativeText);

// Makes every box of the application show its buttons in the order above. Once, at start-up.
void fixButtonOrder();

}
