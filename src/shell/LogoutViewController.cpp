#include "LogoutViewController.h"

#include "Alerts.h"
#include "Localized.h"
#include "ViewController.h"

LogoutViewController *LogoutViewController::getViewController()
{
    return new LogoutViewController;
}

void LogoutViewController::setMainWindow(ViewController *window)
{
    m_mainWindow = window;
}

void LogoutViewController::viewWillAppear()
{
    Alerts::confirmOnWindow(
        this, localized("Logout", "Are you sure to logout?"),
        localized("Logout", "Please be sure to save all the data."),
        [this] { m_mainWindow->signOut(); }, "Logout");
}
