// The sheet in which a user who forgot the password proves who they are, by the company's security
// questions or else by its rescue e-mail and birthdate, and sets a new one. Main thread; the
// service calls block it.
#pragma once

#include "BundleUtil.h"
#include "PasswordStrength.h"
#include "Records.h"
#include "SecurityQuestions.h"
#include "Waiting.h"

#include <QDialog>

#include <memory>
#include <optional>

class QPushButton;

namespace Ui {
class Forgot;
}

class ForgotViewController : public QDialog
{
    Q_OBJECT

public:
    ~ForgotViewController() override;

    [[nodiscard]] static ForgotViewController *getViewController(QWidget *parent);

    // Closes without changes, but not while the service is at work.
    void reject() override;

private:
    explicit ForgotViewController(QWidget *parent);

    void initData();
    void initQuestionPopUp() { m_questions.initQuestionPopUp(); }
    void initYearPopUp();
    void initMonthPopUp();
    void initDayPopUp();
    void connectButtons();

    void continueActionOfStep1();
    void continueActionOfStep2();
    void continueActionOfStep3();
    void okAction();
    void goBackActionOfStep2() { showItem(m_lastItem); }
    void goBackActionOfStep3() { showItem(m_lastItem); }
    void goBackActionOfStep4() { showItem(m_lastItem); }

    [[nodiscard]] static bool emailExists(const QString &address);
    [[nodiscard]] static bool rescueemailExists(const QString &address);
    [[nodiscard]] bool verifyOfStep1();
    [[nodiscard]] bool verifyOfStep2();
    [[nodiscard]] bool verifyOfStep3();
    [[nodiscard]] bool verifyOfStep4();

    [[nodiscard]] QString birthdate() const;
    void loadAccount();
    void changePassword();
    void showItem(QWidget *item);
    // Runs work that asks the service, with the page that is shown disabled.
    void waitFor(const std::function<void()> &work);

    std::unique_ptr<Ui::Forgot> m_ui;
    BundleUtil m_bundleUtil;
    SecurityQuestions m_questions;
    PasswordStrength m_strength;
    Waiting m_waiting;
    std::optional<CompanyJson> m_companyJson; // whose e-mail was given
    std::optional<UserxJson> m_userxJson;     // whose name it is
    QWidget *m_lastItem;                      // that going back leads to
    qint32 m_errorCount = 0;                  // of the answers to the questions
};
