#include "AccountTour.h"

#include "Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>

const QString AccountTour::user = QStringLiteral("office@company.example");
const QString AccountTour::password = QStringLiteral("Abcdef2");

namespace {

const QString firstPassword = QStringLiteral("Abcdef1");
const QString recoveredPassword = QStringLiteral("Abcdef3!");
const QString rescueEmail = QStringLiteral("rescue@company.example");

}

void AccountTour::registerCompany(const QString &shots)
{
    runSession<AccountTour>(shots, [](const AccountTour &tour) {
        say(QStringLiteral("Registering a company"));
        tour.press("registerButton", "continueButtonOfWelcomeItem");
        tour.shootSheet(QStringLiteral("register-welcome"));
        tour.press("continueButtonOfWelcomeItem", "agreeCB");
        tour.find<QCheckBox>("agreeCB")->click();
        tour.shootSheet(QStringLiteral("register-terms"));
        tour.press("agreeButtonOfTermsAndConditiuonsItem", "emailField");
        tour.fillDetails();
        tour.press("continueButtonOfDetailItem", "firstNameField");
        tour.fillMoreDetails();
        tour.clickForAlert("createButtonOfMoreDetailItem",
                           QStringLiteral("Registered successfully."));
        require(tour.find<QLineEdit>("userField")->text() == user,
                QStringLiteral("the new user is not offered"));
        tour.signIn(firstPassword);
        tour.changeSecurity();
        tour.signOut();
    });
}

void AccountTour::recoverPassword(const QString &shots)
{
    runSession<AccountTour>(shots, [](const AccountTour &tour) {
        say(QStringLiteral("Recovering the password"));
        tour.press("forgotPasswordButton", "emailField");
        tour.type("emailField", user);
        tour.shootSheet(QStringLiteral("forgot-1"));
        tour.press("continueButtonOfStep1Item", "answer1Field");
        tour.findRescue();
        tour.recover();
        tour.signIn(recoveredPassword);
        tour.signOut();
    });
}

void AccountTour::fillDetails() const
{
    shootSheet(QStringLiteral("register-detail"));
    type("emailField", user);
    type("passwordxField", firstPassword);
    type("verifyPasswordxField", firstPassword);
    answerQuestions(QStringLiteral("My answer"));
    type("rescueEmailField", rescueEmail);
    find<QDateEdit>("datePicker")->setDate(QDate(2000, 11, 25));
    find<QCheckBox>("receiveAdsCB")->click();
    shootSheet(QStringLiteral("register-detail-filled"));
}

void AccountTour::fillMoreDetails() const
{
    shootSheet(QStringLiteral("register-more"));
    type("firstNameField", QStringLiteral("Anna"));
    type("lastNameField", QStringLiteral("Example"));
    find<QComboBox>("titlePopUpButton")->setCurrentIndex(3);
    type("companyField", QStringLiteral("Company Ltd."));
    find<QComboBox>("industryPopUpButton")->setCurrentIndex(1);
    type("jobTitleField", QStringLiteral("Director"));
    pick("businessContinentPopUpButton", QStringLiteral("Asia Pacific"));
    pick("countryPopUpButton", QStringLiteral("China"));
    shootSheet(QStringLiteral("register-more-china"));
    pick("businessContinentPopUpButton", QStringLiteral("Europe"));
    pick("countryPopUpButton", QStringLiteral("Germany"));
    type("telField", QStringLiteral("30 1234567"));
    type("websiteField", QStringLiteral("https://company.example"));
    find<QWidget>("addressField")->setFocus();
    type("addressField", QStringLiteral("Hauptstraße 1, Berlin"));
    shootSheet(QStringLiteral("register-more-filled"));
}

void AccountTour::signIn(const QString &current) const
{
    pressSignIn(user, current);
    waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("nobody is signed in"));
    require(Session::getLoggedUserxJson()->Userx == user, QStringLiteral("somebody else is"));
}

void AccountTour::changeSecurity() const
{
    say(QStringLiteral("Changing the password and the security questions"));
    openModule(QStringLiteral("Password"));
    auto *button = find<QPushButton>("saveButton");
    waitFor([button] { return button->isEnabled(); }, QStringLiteral("no security data"));
    require(find<QLineEdit>("rescueEmailField")->text() == rescueEmail,
            QStringLiteral("other security data"));
    shoot(QStringLiteral("password"));
    find<QCheckBox>("passwordCB")->click();
    type("oldPwdField", firstPassword);
    type("neoPwdField", password);
    type("pwdVerifyField", password);
    answerQuestions(QStringLiteral("Another answer"));
    shoot(QStringLiteral("password-filled"));
    shootNarrow(QStringLiteral("password-narrow"));
    clickForAlert("saveButton", QStringLiteral("Security Info changed successfully."));
    waitFor([button] { return button->isEnabled(); }, QStringLiteral("the page stays disabled"));
    shoot(QStringLiteral("password-saved"));
}

// Wrong answers up to the other way to prove who one is, and back.
void AccountTour::findRescue() const
{
    answerQuestions(QStringLiteral("My answer"));
    shootSheet(QStringLiteral("forgot-2"));
    while (!isShown("rescueEmailField"))
        clickForAlert("continueButtonOfStep2Item", QStringLiteral("The first answer is wrong."));
    type("rescueEmailField", rescueEmail);
    for (const auto &[popUp, item] :
         {std::pair("yearPopUpButton", "2000"), std::pair("monthPopUpButton", "11"),
          std::pair("dayPopUpButton", "25")})
        pick(popUp, QLatin1StringView(item));
    shootSheet(QStringLiteral("forgot-3"));
}

void AccountTour::recover() const
{
    press("continueButtonOfStep3Item", "passwordxField");
    type("passwordxField", recoveredPassword);
    type("verifyPasswordxField", recoveredPassword);
    shootSheet(QStringLiteral("forgot-4"));
    click(find<QWidget>("okButtonOfStep4Item"));
    waitFor([this] { return !isShown("passwordxField"); }, QStringLiteral("the sheet stays"));
}

// What a test keyboard cannot key in is pasted.
void AccountTour::type(const char *field, const QString &text) const
{
    find<QLineEdit>(field)->setText(text);
}

void AccountTour::answerQuestions(const QString &answer) const
{
    for (const auto &[popUp, field] : {std::pair("question1PopUpButton", "answer1Field"),
                                       std::pair("question2PopUpButton", "answer2Field"),
                                       std::pair("question3PopUpButton", "answer3Field")}) {
        pick(popUp, find<QComboBox>(popUp)->itemText(1));
        type(field, answer);
    }
}

void AccountTour::press(const char *button, const char *shownThen) const
{
    click(find<QWidget>(button));
    waitFor([&] { return isShown(shownThen); },
            QStringLiteral("%1 does not lead on").arg(QLatin1StringView(button)));
}
