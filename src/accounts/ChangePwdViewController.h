// The page on which the signed-in user changes the password and the company's security questions
// and rescue e-mail. Main thread; the service calls block it.
#pragma once

#include "BundleUtil.h"
#include "Page.h"
#include "PasswordStrength.h"
#include "Records.h"
#include "SecurityQuestions.h"
#include "Waiting.h"

#include <memory>

class QLineEdit;

namespace Ui {
class ChangePwd;
}

class ChangePwdViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static ChangePwdViewController *getViewController();
    ~ChangePwdViewController() override;

protected:
    void viewDidLoad() override;

private:
    ChangePwdViewController();

    void initData();
    void initQuestionPopUp() { m_questions.initQuestionPopUp(); }
    void passwordCBAction();
    void saveAction();

    [[nodiscard]] bool checkPassword() const;
    [[nodiscard]] bool emailExists(const QString &address) const;
    [[nodiscard]] bool verify();
    [[nodiscard]] QList<Check> passwordChecks() const;
    [[nodiscard]] QList<Check> rescueEmailChecks() const;

    void save();
    [[nodiscard]] bool saveUser();
    [[nodiscard]] bool saveCompany() const;
    void passwordChanged();

    void setAllStatus(bool enabled);
    void setPasswordsEditable(bool editable);
    [[nodiscard]] std::array<QLineEdit *, 3> passwordFields() const;

    std::unique_ptr<Ui::ChangePwd> m_ui;
    UserxJson m_userxJson;
    BundleUtil m_bundleUtil;
    SecurityQuestions m_questions;
    PasswordStrength m_strength;
    Waiting m_waiting;
};
