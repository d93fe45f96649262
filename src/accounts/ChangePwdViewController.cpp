#include "ChangePwdViewController.h"

#include "AccountChecks.h"
#include "Alerts.h"
#include "BLSync.h"
#include "Fields.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_ChangePwd.h"

namespace {

constexpr char table[] = "ChangePwd";

}

ChangePwdViewController::ChangePwdViewController()
    : m_ui(madeForm<Ui::ChangePwd>(this))
    , m_questions(m_bundleUtil, {{{m_ui->question1PopUpButton, m_ui->answer1Field},
                                  {m_ui->question2PopUpButton, m_ui->answer2Field},
                                  {m_ui->question3PopUpButton, m_ui->answer3Field}}})
    , m_strength(m_ui->neoPwdField, m_ui->passwordStrengthIndicator)
    , m_waiting(this, m_ui->loadingView)
{
    setPasswordsEditable(false);
    connect(m_ui->passwordCB, &QCheckBox::clicked, this,
            &ChangePwdViewController::passwordCBAction);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &ChangePwdViewController::saveAction);
}

ChangePwdViewController::~ChangePwdViewController() = default;

ChangePwdViewController *ChangePwdViewController::getViewController()
{
    return new ChangePwdViewController;
}

void ChangePwdViewController::viewDidLoad()
{
    m_waiting.run([this](bool enabled) { setAllStatus(enabled); }, [this] { initData(); });
}

void ChangePwdViewController::initData()
{
    m_userxJson = Session::getLoggedUserxJson().value_or(UserxJson());
    initQuestionPopUp();
    const CompanyJson company =
        BLSyncCompany().getJson(m_userxJson.CompanyID).value_or(CompanyJson());
    m_questions.show(company);
    m_ui->rescueEmailField->setText(company.RescueEmail);
}

std::array<QLineEdit *, 3> ChangePwdViewController::passwordFields() const
{
    return {m_ui->oldPwdField, m_ui->neoPwdField, m_ui->pwdVerifyField};
}

void ChangePwdViewController::setPasswordsEditable(bool editable)
{
    for (QLineEdit *field : passwordFields())
        Fields::setEditable(field, editable);
}

void ChangePwdViewController::passwordCBAction()
{
    const bool isOn = m_ui->passwordCB->isChecked();
    setPasswordsEditable(isOn);
    if (isOn)
        m_ui->oldPwdField->setFocus();
}

bool ChangePwdViewController::checkPassword() const
{
    return BLSyncUserx().getCount(QStringLiteral("Userx='") + m_userxJson.Userx
                                  + QStringLiteral("' AND Passwordx='") + m_ui->oldPwdField->text()
                                  + u'\'')
           > 0;
}

bool ChangePwdViewController::emailExists(const QString &address) const
{
    const QString &company = m_userxJson.CompanyID;
    return BLSyncCompany().getCount(QStringLiteral("Email='") + address
                                    + QStringLiteral("' AND ID=") + company
                                    + QStringLiteral(" OR (RescueEmail='") + address
                                    + QStringLiteral("' AND ID!=") + company + u')')
               > 0
           || BLSyncUserx().getCount(QStringLiteral("Userx='") + address + u'\'') > 0;
}

bool ChangePwdViewController::verify()
{
    return m_waiting.passes((m_ui->passwordCB->isChecked() ? passwordChecks() : QList<Check>())
                            + m_questions.checks(table) + rescueEmailChecks());
}

QList<Check> ChangePwdViewController::passwordChecks() const
{
    QLineEdit *old = m_ui->oldPwdField;
    QLineEdit *neo = m_ui->neoPwdField;
    return {
        AccountChecks::notEmpty(old, localized("ChangePwd", "Old password can not be null."),
                                localized("ChangePwd", "Please enter your old password.")),
        {[this] { return !checkPassword(); },
         localized("ChangePwd", "Old password is not correct."),
         localized("ChangePwd", "Please try the correct old password."), old},
        AccountChecks::notEmpty(neo, localized("ChangePwd", "New password can not be null."),
                                localized("ChangePwd", "Please enter new password.")),
        AccountChecks::passwordLength(
            neo, localized("ChangePwd", "Password length cannot be less than 6"),
            localized("ChangePwd", "Please update your password.")),
        AccountChecks::passwordStrength(
            neo, m_strength, localized("ChangePwd", "Password strength is low."),
            localized("ChangePwd", "Password length should be more than 6,and contains lower case "
                                   "letter,upper case letter and digit.")),
        AccountChecks::same(neo, m_ui->pwdVerifyField,
                            localized("ChangePwd", "Password verification is failed."),
                            localized("ChangePwd", "Please enter the same password.")),
    };
}

QList<Check> ChangePwdViewController::rescueEmailChecks() const
{
    QLineEdit *field = m_ui->rescueEmailField;
    return {
        AccountChecks::notEmpty(field, localized("ChangePwd", "Rescue Email can not be null."),
                                localized("ChangePwd", "Please enter the rescue email.")),
        AccountChecks::address(field, localized("ChangePwd", "Rescue Email is invalid."),
                               localized("ChangePwd", "Please enter right format email.")),
        {[this, field] { return emailExists(field->text()); },
         localized("ChangePwd", "The rescue email exists"),
         localized("ChangePwd", "Please enter another rescue email."), field},
    };
}

void ChangePwdViewController::saveAction()
{
    m_waiting.run([this](bool enabled) { m_ui->changePwdBox->setEnabled(enabled); },
                  [this] {
                      if (!verify())
                          return;
                      m_waiting.end();
                      m_waiting.run([this](bool enabled) { setAllStatus(enabled); },
                                    [this] { save(); });
                  });
}

// Both alerts end with the same words, which are the service's too.
void ChangePwdViewController::save()
{
    const bool isSaved = saveUser() && saveCompany();
    if (isSaved)
        passwordChanged();
    MiscTool::showAlert(isSaved ? localized("ChangePwd", "Security Info changed successfully.")
                                : localized("ChangePwd", "Security Info changed failed."),
                        localized("ChangePwd", "Your security info has been changed."));
}

// The password is what the field holds, even if it is not to be changed.
bool ChangePwdViewController::saveUser()
{
    m_userxJson.Passwordx = m_ui->neoPwdField->text();
    return BLSyncUserx().update(m_userxJson);
}

bool ChangePwdViewController::saveCompany() const
{
    std::optional<CompanyJson> company = BLSyncCompany().getJson(m_userxJson.CompanyID);
    if (!company)
        return false;
    m_questions.store(*company);
    company->RescueEmail = m_ui->rescueEmailField->text();
    return BLSyncCompany().update(*company);
}

void ChangePwdViewController::passwordChanged()
{
    const auto users = BLSyncUserx().select(QStringLiteral("Userx='") + m_userxJson.Userx + u'\'');
    if (users)
        Session::setLoggedUserDict(users->first());
    m_ui->passwordCB->setChecked(false);
    for (QLineEdit *field : passwordFields())
        field->clear();
    setPasswordsEditable(false);
}

void ChangePwdViewController::setAllStatus(bool enabled)
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->oldPwdField, m_ui->neoPwdField, m_ui->pwdVerifyField, m_ui->question1PopUpButton,
             m_ui->question2PopUpButton, m_ui->question3PopUpButton, m_ui->answer1Field,
             m_ui->answer2Field, m_ui->answer3Field, m_ui->saveButton})
        control->setEnabled(enabled);
}
