// The sheet that stands over the main window until somebody has signed in. It asks the service for
// the user, fills the session and tells the main window. Main thread; the service calls block it.
#pragma once

#include "BLSync.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class ServerPanel;

namespace Ui {
class Login;
}

class LoginViewController : public QDialog
{
    Q_OBJECT

public:
    ~LoginViewController() override;

    [[nodiscard]] static LoginViewController *getViewController(QWidget *parent);

    // The company of the signed-in user; null where the service has none.
    [[nodiscard]] static std::optional<CompanyJson> getCompanyJson();

    // Closing the sheet is leaving the program.
    void reject() override;

Q_SIGNALS:
    // The session is filled; the sheet goes when this returns.
    void loggedIn();
    // The sheet has gone and the program is to end.
    void exited();

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    explicit LoginViewController(QWidget *parent);

    void viewWillAppear();
    void setAllStatus(bool enabled);
    void forgotPasswordAction();
    void registerAction();
    void serverAction();
    void exitAction();
    void loginAction();

    [[nodiscard]] bool verify();
    [[nodiscard]] bool checkUser();
    void loginActinInThread();
    [[nodiscard]] bool login();
    [[nodiscard]] bool refuse(const QString &message, const QString &informativeText);

    std::unique_ptr<Ui::Login> m_ui;
    BLSyncUserx m_blSync;
    std::unique_ptr<ServerPanel> m_panel;
    QPointer<QWidget> m_focus; // that had the focus before the page was disabled
};
