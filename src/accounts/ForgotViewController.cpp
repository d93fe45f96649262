#include "ForgotViewController.h"

#include "AccountChecks.h"
#include "Alerts.h"
#include "BLSync.h"
#include "Form.h"
#include "Localized.h"
#include "PopUps.h"
#include "ui_Forgot.h"

namespace {

constexpr char table[] = "Forgot";
constexpr qint32 errorsUntilRescue = 7;

void initNumbers(QComboBox *popUp, const char *title, int first, int last)
{
    if (popUp->count() > 0)
        return;
    QStringList titles{QLatin1StringView(title)};
    for (int number = first; number <= last; ++number)
        titles.append(QString::number(number));
    PopUps::fill(popUp, titles);
}

}

ForgotViewController::ForgotViewController(QWidget *parent)
    : QDialog(parent)
    , m_ui(madeForm<Ui::Forgot>(this))
    , m_questions(m_bundleUtil, {{{m_ui->question1PopUpButton, m_ui->answer1Field},
                                  {m_ui->question2PopUpButton, m_ui->answer2Field},
                                  {m_ui->question3PopUpButton, m_ui->answer3Field}}})
    , m_strength(m_ui->passwordxField, m_ui->passwordStrengthIndicator)
    , m_waiting(this, m_ui->loadingView)
    , m_lastItem(m_ui->step1Item)
{
    initData();
    connectButtons();
    showItem(m_ui->step1Item);
}

ForgotViewController::~ForgotViewController() = default;

ForgotViewController *ForgotViewController::getViewController(QWidget *parent)
{
    return new ForgotViewController(parent);
}

void ForgotViewController::initData()
{
    initQuestionPopUp();
    initYearPopUp();
    initMonthPopUp();
    initDayPopUp();
}

void ForgotViewController::initYearPopUp()
{
    initNumbers(m_ui->yearPopUpButton, QT_TRANSLATE_NOOP("Localizable", "Year"), 1900, 2016);
}

void ForgotViewController::initMonthPopUp()
{
    initNumbers(m_ui->monthPopUpButton, QT_TRANSLATE_NOOP("Localizable", "Month"), 1, 12);
}

void ForgotViewController::initDayPopUp()
{
    initNumbers(m_ui->dayPopUpButton, QT_TRANSLATE_NOOP("Localizable", "Day"), 1, 31);
}

void ForgotViewController::connectButtons()
{
    using Self = ForgotViewController;
    const std::initializer_list<std::pair<QPushButton *, void (Self::*)()>> actions{
        {m_ui->continueButtonOfStep1Item, &Self::continueActionOfStep1},
        {m_ui->cancelButtonOfStep1Item, &Self::reject},
        {m_ui->goBackButtonOfStep2Item, &Self::goBackActionOfStep2},
        {m_ui->continueButtonOfStep2Item, &Self::continueActionOfStep2},
        {m_ui->cancelButtonOfStep2Item, &Self::reject},
        {m_ui->goBackButtonOfStep3Item, &Self::goBackActionOfStep3},
        {m_ui->continueButtonOfStep3Item, &Self::continueActionOfStep3},
        {m_ui->cancelButtonOfStep3Item, &Self::reject},
        {m_ui->goBackButtonOfStep4Item, &Self::goBackActionOfStep4},
        {m_ui->okButtonOfStep4Item, &Self::okAction},
        {m_ui->cancelButtonOfStep4Item, &Self::reject},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
}

void ForgotViewController::reject()
{
    if (!m_waiting.isOn())
        QDialog::reject();
}

void ForgotViewController::showItem(QWidget *item)
{
    m_ui->tabView->setCurrentWidget(item);
    for (const auto &[page, button] : std::initializer_list<std::pair<QWidget *, QPushButton *>>{
             {m_ui->step1Item, m_ui->continueButtonOfStep1Item},
             {m_ui->step2Item, m_ui->continueButtonOfStep2Item},
             {m_ui->step3Item, m_ui->continueButtonOfStep3Item},
             {m_ui->step4Item, m_ui->okButtonOfStep4Item}})
        if (page == item)
            button->setDefault(true);
}

void ForgotViewController::waitFor(const std::function<void()> &work)
{
    QWidget *item = m_ui->tabView->currentWidget();
    m_waiting.run([item](bool enabled) { item->setEnabled(enabled); }, work);
}

bool ForgotViewController::emailExists(const QString &address)
{
    return BLSyncUserx().getCount(QStringLiteral("Userx='") + address + u'\'') > 0;
}

bool ForgotViewController::rescueemailExists(const QString &address)
{
    return BLSyncCompany().getCount(QStringLiteral("RescueEmail='") + address + u'\'') > 0;
}

bool ForgotViewController::verifyOfStep1()
{
    QLineEdit *field = m_ui->emailField;
    return m_waiting.passes({
        AccountChecks::notEmpty(field, localized("Forgot", "Email can not be null."),
                                localized("Forgot", "Please enter your email.")),
        AccountChecks::address(field, localized("Forgot", "Email is invalid."),
                               localized("Forgot", "Please enter right format email.")),
        {[field] { return !emailExists(field->text()); },
         localized("Forgot", "The email doesn't exist."),
         localized("Forgot", "Please confirm the email."), field},
    });
}

void ForgotViewController::continueActionOfStep1()
{
    waitFor([this] {
        if (!verifyOfStep1())
            return;
        loadAccount();
        m_lastItem = m_ui->step1Item;
        showItem(m_ui->step2Item);
        m_ui->question1PopUpButton->setFocus();
    });
}

void ForgotViewController::loadAccount()
{
    const QString email = m_ui->emailField->text();
    const auto companies = BLSyncCompany().select(QStringLiteral("Email='") + email + u'\'');
    m_companyJson =
        companies ? std::optional(CompanyJson::getJson(companies->first())) : std::nullopt;
    const auto users = BLSyncUserx().select(QStringLiteral("Userx='") + email + u'\'');
    m_userxJson = users ? std::optional(UserxJson::getJson(users->first())) : std::nullopt;
}

bool ForgotViewController::verifyOfStep2()
{
    const bool passed = runChecks(m_questions.checks(table, m_companyJson));
    if (!passed)
        ++m_errorCount;
    return passed;
}

// Going back from the questions stays there once they have been answered, rightly or not.
void ForgotViewController::continueActionOfStep2()
{
    m_lastItem = m_ui->step2Item;
    if (verifyOfStep2()) {
        showItem(m_ui->step4Item);
        m_ui->passwordxField->setFocus();
    } else if (m_errorCount >= errorsUntilRescue) {
        showItem(m_ui->step3Item);
        m_ui->rescueEmailField->setFocus();
    }
}

// Without leading zeros, as the pop-ups have it.
QString ForgotViewController::birthdate() const
{
    return m_ui->yearPopUpButton->currentText() + u'-' + m_ui->monthPopUpButton->currentText()
           + u'-' + m_ui->dayPopUpButton->currentText();
}

bool ForgotViewController::verifyOfStep3()
{
    QLineEdit *field = m_ui->rescueEmailField;
    return m_waiting.passes({
        AccountChecks::notEmpty(field, localized("Forgot", "Rescue Email can not be null."),
                                localized("Forgot", "Please enter the rescue email.")),
        AccountChecks::address(field, localized("Forgot", "Rescue Email is invalid."),
                               localized("Forgot", "Please enter right format email.")),
        {[field] { return !rescueemailExists(field->text()); },
         localized("Forgot", "The rescue email not exists"),
         localized("Forgot", "Please enter the right rescue email."), field},
        {[this, field] { return field->text() == m_ui->emailField->text(); },
         localized("Forgot", "The rescue email cannot be same as email."),
         localized("Forgot", "Please enter another rescue email."), field},
        {[this] { return !m_companyJson || birthdate() != m_companyJson->Birthdate; },
         localized("Forgot", "Your birthdate is wrong."),
         localized("Forgot", "Please choose your right birthdate."), m_ui->yearPopUpButton},
    });
}

void ForgotViewController::continueActionOfStep3()
{
    waitFor([this] {
        if (!verifyOfStep3())
            return;
        m_lastItem = m_ui->step3Item;
        showItem(m_ui->step4Item);
        m_ui->passwordxField->setFocus();
    });
}

// More is asked of the password than at the registration.
bool ForgotViewController::verifyOfStep4()
{
    QLineEdit *field = m_ui->passwordxField;
    return runChecks({
        AccountChecks::notEmpty(field, localized("Forgot", "Password can not be null."),
                                localized("Forgot", "Please enter your password.")),
        AccountChecks::passwordLength(field,
                                      localized("Forgot", "Password length cannot be less than 6"),
                                      localized("Forgot", "Please update your password.")),
        {[this] { return !m_strength.isHighest(); },
         localized("Forgot", "Password strength is low."),
         localized(
             "Forgot",
             "Password length should be more than 6,and contains lower case letter,upper case "
             "letter,digit and special character."),
         field},
        AccountChecks::same(field, m_ui->verifyPasswordxField,
                            localized("Forgot", "Fail to verify password."),
                            localized("Forgot", "Please check your password.")),
    });
}

void ForgotViewController::okAction()
{
    if (verifyOfStep4())
        waitFor([this] { changePassword(); });
}

void ForgotViewController::changePassword()
{
    if (m_userxJson)
        m_userxJson->Passwordx = m_ui->passwordxField->text();
    if (m_userxJson && BLSyncUserx().update(*m_userxJson))
        accept();
    else
        MiscTool::showAlert(localized("Forgot", "Fail to change password."),
                            localized("Forgot", "Please try again later."));
}
