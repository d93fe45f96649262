#include "LogoutViewController.h"

#include "Alerts.h"
#include "Localized.h"
#include "Session.h"

LogoutViewController *LogoutViewController::getViewController()
{
    return new LogoutViewController;
}

void LogoutViewController::setMainWindow(QWidget *window)
{
    m_mainWindow = window;
}

void LogoutViewController::viewWillAppear()
{
    Alerts::confirmOnWindow(this, localized("Logout", "Are you sure to logout?"),
                            localized("Logout", "Please be sure to save all the data."),
                            [this] { logout(); });
}

// Closing the last window quits, after it has asked about jobs that still run.
void LogoutViewController::logout()
{
    Session::clear();
    if (m_mainWindow)
        m_mainWindow->close();
}
