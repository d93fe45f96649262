#include "LoginViewController.h"

#include "Alerts.h"
#include "Checks.h"
#include "Fields.h"
#include "ForgotViewController.h"
#include "Initialization.h"
#include "Localized.h"
#include "MainQueue.h"
#include "RegisterViewController.h"
#include "ServerPanel.h"
#include "Session.h"
#include "ui_Login.h"

#include <QKeyEvent>

namespace {

// The rows of the group, as one text behind what an administrator has anyway.
QString permissionOf(const UserxJson &user)
{
    QString permission = user.IsAdmin.toInt() != 0 ? QStringLiteral("0") : QStringLiteral("");
    if (const auto groups = BLSyncUserGroup().select(QStringLiteral("ID=") + user.UserGroupID))
        permission += UserGroupJson::getJson(groups->first()).Permissionx;
    return permission;
}

void openSheet(QDialog *sheet)
{
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->open();
}

}

LoginViewController::LoginViewController(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::Login>())
{
    m_ui->setupUi(this);
    Fields::keepPlaceWhenHidden(m_ui->loadingView);
    m_ui->loadingView->hide();
    // On the main window: the sheet below is disabled or waits while the panel is open.
    m_panel = std::make_unique<ServerPanel>(this);
    const std::initializer_list<std::pair<QPushButton *, void (LoginViewController::*)()>> actions{
        {m_ui->forgotPasswordButton, &LoginViewController::forgotPasswordAction},
        {m_ui->registerButton, &LoginViewController::registerAction},
        {m_ui->serverButton, &LoginViewController::serverAction},
        {m_ui->exitButton, &LoginViewController::exitAction},
        {m_ui->loginButton, &LoginViewController::loginAction},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
}

LoginViewController::~LoginViewController() = default;

LoginViewController *LoginViewController::getViewController(QWidget *parent)
{
    return new LoginViewController(parent);
}

void LoginViewController::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        viewWillAppear();
    QDialog::showEvent(event);
}

void LoginViewController::viewWillAppear()
{
    const QString user = Session::getLoggerUser();
    if (user.isEmpty())
        return;
    m_ui->userField->setText(user);
    m_ui->passwordField->setFocus();
}

// Escape would otherwise be the way to leave the program without meaning to.
void LoginViewController::keyPressEvent(QKeyEvent *event)
{
    if (!event->matches(QKeySequence::Cancel))
        QDialog::keyPressEvent(event);
}

void LoginViewController::reject()
{
    exitAction();
}

void LoginViewController::setAllStatus(bool enabled)
{
    if (!enabled)
        m_focus = focusWidget();
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->userField, m_ui->passwordField, m_ui->forgotPasswordButton, m_ui->registerButton,
             m_ui->serverButton, m_ui->exitButton, m_ui->loginButton})
        control->setEnabled(enabled);
    if (enabled && m_focus)
        m_focus->setFocus();
}

void LoginViewController::forgotPasswordAction()
{
    openSheet(ForgotViewController::getViewController(this));
}

void LoginViewController::registerAction()
{
    auto *sheet = RegisterViewController::getViewController(this);
    connect(sheet, &QDialog::accepted, this, &LoginViewController::viewWillAppear);
    openSheet(sheet);
}

void LoginViewController::serverAction()
{
    m_panel->present();
}

void LoginViewController::exitAction()
{
    done(Rejected);
    Q_EMIT exited();
}

bool LoginViewController::verify()
{
    return runChecks({
        {[this] { return m_ui->userField->text().isEmpty(); },
         localized("Login", "User can not be null."), localized("Login", "Please enter your user."),
         m_ui->userField},
        {[this] { return m_ui->passwordField->text().isEmpty(); },
         localized("Login", "Password can not be null."),
         localized("Login", "Please enter your password."), m_ui->passwordField},
    });
}

void LoginViewController::loginAction()
{
    if (!verify())
        return;
    setAllStatus(false);
    // The disabled page is drawn before the service calls block it.
    MainQueue::async(this, [this] { loginActinInThread(); });
}

void LoginViewController::loginActinInThread()
{
    m_ui->loadingView->show();
    if (checkUser() && login()) {
        Q_EMIT loggedIn();
        done(Accepted);
    }
    m_ui->loadingView->hide();
}

bool LoginViewController::refuse(const QString &message, const QString &informativeText)
{
    setAllStatus(true);
    MiscTool::showAlert(message, informativeText);
    return false;
}

bool LoginViewController::checkUser()
{
    const QString user = m_ui->userField->text();
    QString where = QStringLiteral("Userx='") + user + u'\'';
    if (!m_blSync.select(where)) {
        if (user == QLatin1StringView("root"))
            Initialization().initAll();
        return refuse(localized("Login", "Your user does not exist."),
                      localized("Login", "Please register or ask your administrator to create."));
    }
    where += QStringLiteral(" AND Passwordx='") + m_ui->passwordField->text() + u'\'';
    if (!m_blSync.select(where))
        return refuse(
            localized("Login", "Password is not correct."),
            localized("Login", "Please check password or reset password by Forgot Password."));
    where += QStringLiteral(" AND IsEnabled=1");
    if (!m_blSync.select(where))
        return refuse(localized("Login", "Your user is disabled."),
                      localized("Login", "Please contact your administrator."));
    return true;
}

bool LoginViewController::login()
{
    const auto users = m_blSync.select(
        QStringLiteral("IsEnabled=1 AND Userx='") + m_ui->userField->text()
        + QStringLiteral("' AND Passwordx='") + m_ui->passwordField->text() + u'\'');
    if (!users)
        return refuse(localized("Login", "Login Failed."),
                      localized("Login", "Please check user or password."));
    Session::setLoggedUserDict(users->first());
    Session::setPermission(permissionOf(UserxJson::getJson(users->first())));
    return true;
}

std::optional<CompanyJson> LoginViewController::getCompanyJson()
{
    const std::optional<UserxJson> user = Session::getLoggedUserxJson();
    if (!user)
        return std::nullopt;
    const auto companies = BLSyncCompany().select(QStringLiteral("ID=") + user->CompanyID);
    if (!companies)
        return std::nullopt;
    return CompanyJson::getJson(companies->first());
}
