// The module that asks, each time it appears, whether to sign out and quit. Main thread.
#pragma once

#include "Page.h"

class ViewController;

class LogoutViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static LogoutViewController *getViewController();

    // The window that the question stands on and that is closed at last.
    void setMainWindow(ViewController *window);

protected:
    void viewWillAppear() override;

private:
    ViewController *m_mainWindow = nullptr;
};
