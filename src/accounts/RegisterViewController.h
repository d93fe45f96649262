// The sheet in which a new customer registers: four pages, of which the last makes the company and
// its first user, an administrator, at the service. Main thread; the service calls block it.
#pragma once

#include "BundleUtil.h"
#include "CountryPopUps.h"
#include "PasswordStrength.h"
#include "Records.h"
#include "SecurityQuestions.h"
#include "Waiting.h"

#include <QDialog>

#include <memory>

class QPushButton;

namespace Ui {
class Register;
}

class RegisterViewController : public QDialog
{
    Q_OBJECT

public:
    ~RegisterViewController() override;

    // Accepted when the company and its user are made; the session then offers the user's name.
    [[nodiscard]] static RegisterViewController *getViewController(QWidget *parent);

    // Closes without saving, but not while the service is at work.
    void reject() override;

private:
    explicit RegisterViewController(QWidget *parent);

    void initData();
    void initQuestionPopUp() { m_questions.initQuestionPopUp(); }
    void initTitlePopup();
    void initIndustryPopup();
    void connectButtons();

    void continueButtonOfWelcomeItemAction();
    void pritableVersionButtonAction();
    void agreeCBAction(bool agreed);
    void goBackButtonOfTermsAndConditionsItemAction();
    void agreeButtonOfTermsAndConditionsItemAction();
    void goBackButtonOfDetailItemAction();
    void continueButtonOfDetailItemAction();
    void goBackButtonOfMoreDetailItemAction();
    void createButtonOfMoreDetailItemAction();

    [[nodiscard]] static bool emailExists(const QString &address);
    [[nodiscard]] bool detailVerify();
    [[nodiscard]] bool moreDetailVerify();
    [[nodiscard]] QList<Check> emailChecks() const;
    [[nodiscard]] QList<Check> passwordChecks() const;
    [[nodiscard]] QList<Check> rescueEmailChecks() const;
    [[nodiscard]] QList<Check> personChecks() const;
    [[nodiscard]] QList<Check> placeChecks() const;

    [[nodiscard]] CompanyJson getJson();
    [[nodiscard]] UserxJson userOf(const CompanyJson &company) const;
    void createAction();

    void setAllStatus(bool enabled);
    void showItem(QWidget *item, QPushButton *defaultButton);

    std::unique_ptr<Ui::Register> m_ui;
    BundleUtil m_bundleUtil;
    SecurityQuestions m_questions;
    CountryPopUps m_countries;
    PasswordStrength m_strength;
    Waiting m_waiting;
};
