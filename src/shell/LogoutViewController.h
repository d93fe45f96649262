// The module that asks, each time it appears, whether to sign out and quit. Main thread.
#pragma once

#include "Page.h"

#include <QPointer>

class LogoutViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static LogoutViewController *getViewController();

    // The window that the question stands on and that is closed at last.
    void setMainWindow(QWidget *window);

protected:
    void viewWillAppear() override;

private:
    void logout();

    QPointer<QWidget> m_mainWindow;
};
