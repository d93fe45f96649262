#include "RegisterViewController.h"

#include "AccountChecks.h"
#include "Alerts.h"
#include "BLSync.h"
#include "DateTools.h"
#include "Form.h"
#include "Localized.h"
#include "PopUps.h"
#include "Session.h"
#include "ui_Register.h"

namespace {

constexpr char table[] = "Register";

}

RegisterViewController::RegisterViewController(QWidget *parent)
    : QDialog(parent)
    , m_ui(madeForm<Ui::Register>(this))
    , m_questions(m_bundleUtil, {{{m_ui->question1PopUpButton, m_ui->answer1Field},
                                  {m_ui->question2PopUpButton, m_ui->answer2Field},
                                  {m_ui->question3PopUpButton, m_ui->answer3Field}}})
    , m_countries(m_bundleUtil, {.businessContinentPopUp = m_ui->businessContinentPopUpButton,
                                 .countryPopUp = m_ui->countryPopUpButton,
                                 .countryCountLabel = m_ui->countryCountLabel,
                                 .imageView = m_ui->imageView,
                                 .telCallingCodeField = m_ui->telCallingCodeField,
                                 .mobileCallingCodeField = m_ui->mobileCallingCodeField,
                                 .currencyField = m_ui->currencyField,
                                 .weChatField = m_ui->weChatField})
    , m_strength(m_ui->passwordxField, m_ui->passwordStrengthIndicator)
    , m_waiting(this, m_ui->loadingView)
{
    initData();
    connectButtons();
    showItem(m_ui->welcomeItem, m_ui->continueButtonOfWelcomeItem);
}

RegisterViewController::~RegisterViewController() = default;

RegisterViewController *RegisterViewController::getViewController(QWidget *parent)
{
    return new RegisterViewController(parent);
}

void RegisterViewController::initData()
{
    m_ui->termsAndConditiuonsTextView->setPlainText(m_bundleUtil.getTermsAndConditions());
    initQuestionPopUp();
    m_ui->datePicker->setDate(QDate::currentDate());
    initTitlePopup();
    initIndustryPopup();
    m_countries.initBusinessContinentPopup();
    m_countries.initCountryPopup();
}

void RegisterViewController::initTitlePopup()
{
    PopUps::fill(m_ui->titlePopUpButton, m_bundleUtil.getTitles());
}

void RegisterViewController::initIndustryPopup()
{
    PopUps::fill(m_ui->industryPopUpButton, m_bundleUtil.getIndustries());
}

void RegisterViewController::connectButtons()
{
    using Self = RegisterViewController;
    const std::initializer_list<std::pair<QPushButton *, void (Self::*)()>> actions{
        {m_ui->continueButtonOfWelcomeItem, &Self::continueButtonOfWelcomeItemAction},
        {m_ui->printableVersionButton, &Self::pritableVersionButtonAction},
        {m_ui->goBackButtonOfTermsAndConditionsItem,
         &Self::goBackButtonOfTermsAndConditionsItemAction},
        {m_ui->agreeButtonOfTermsAndConditiuonsItem,
         &Self::agreeButtonOfTermsAndConditionsItemAction},
        {m_ui->goBackButtonOfDetailItem, &Self::goBackButtonOfDetailItemAction},
        {m_ui->continueButtonOfDetailItem, &Self::continueButtonOfDetailItemAction},
        {m_ui->goBackButtonOfMoreDetailItem, &Self::goBackButtonOfMoreDetailItemAction},
        {m_ui->cancelButtonOfMoreDetailItem, &Self::reject},
        {m_ui->createButtonOfMoreDetailItem, &Self::createButtonOfMoreDetailItemAction},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->agreeCB, &QCheckBox::toggled, this, &Self::agreeCBAction);
}

void RegisterViewController::reject()
{
    if (!m_waiting.isOn())
        QDialog::reject();
}

void RegisterViewController::showItem(QWidget *item, QPushButton *defaultButton)
{
    m_ui->tabView->setCurrentWidget(item);
    defaultButton->setDefault(true);
}

void RegisterViewController::continueButtonOfWelcomeItemAction()
{
    showItem(m_ui->termsAndConditionsItem, m_ui->agreeButtonOfTermsAndConditiuonsItem);
}

// The button is there, and waits for terms that have a printable version.
void RegisterViewController::pritableVersionButtonAction() {}

void RegisterViewController::agreeCBAction(bool agreed)
{
    m_ui->agreeButtonOfTermsAndConditiuonsItem->setEnabled(agreed);
}

void RegisterViewController::goBackButtonOfTermsAndConditionsItemAction()
{
    showItem(m_ui->welcomeItem, m_ui->continueButtonOfWelcomeItem);
}

void RegisterViewController::agreeButtonOfTermsAndConditionsItemAction()
{
    showItem(m_ui->detailItem, m_ui->continueButtonOfDetailItem);
    m_ui->emailField->setFocus();
}

void RegisterViewController::goBackButtonOfDetailItemAction()
{
    continueButtonOfWelcomeItemAction();
}

void RegisterViewController::continueButtonOfDetailItemAction()
{
    m_waiting.run([this](bool enabled) { m_ui->detailItem->setEnabled(enabled); },
                  [this] {
                      if (!detailVerify())
                          return;
                      showItem(m_ui->moreDetailItem, m_ui->createButtonOfMoreDetailItem);
                      m_ui->firstNameField->setFocus();
                  });
}

void RegisterViewController::goBackButtonOfMoreDetailItemAction()
{
    showItem(m_ui->detailItem, m_ui->continueButtonOfDetailItem);
}

void RegisterViewController::createButtonOfMoreDetailItemAction()
{
    if (moreDetailVerify())
        m_waiting.run([this](bool enabled) { setAllStatus(enabled); }, [this] { createAction(); });
}

bool RegisterViewController::emailExists(const QString &address)
{
    return BLSyncCompany().getCount(QStringLiteral("Email='") + address
                                    + QStringLiteral("' OR RescueEmail='") + address + u'\'')
               > 0
           || BLSyncUserx().getCount(QStringLiteral("Userx='") + address + u'\'') > 0;
}

bool RegisterViewController::detailVerify()
{
    return m_waiting.passes(emailChecks() + passwordChecks() + m_questions.checks(table)
                            + rescueEmailChecks());
}

QList<Check> RegisterViewController::emailChecks() const
{
    QLineEdit *field = m_ui->emailField;
    return {
        AccountChecks::notEmpty(field, localized("Register", "Email can not be null."),
                                localized("Register", "Please enter your email.")),
        AccountChecks::address(field, localized("Register", "Email is invalid."),
                               localized("Register", "Please enter right format email.")),
        {[field] { return emailExists(field->text()); }, localized("Register", "The email exists"),
         localized("Register", "Please enter another email."), field},
    };
}

QList<Check> RegisterViewController::passwordChecks() const
{
    QLineEdit *field = m_ui->passwordxField;
    return {
        AccountChecks::notEmpty(field, localized("Register", "Password can not be null."),
                                localized("Register", "Please enter your password.")),
        AccountChecks::passwordLength(
            field, localized("Register", "Password length cannot be less than 6"),
            localized("Register", "Please update your password.")),
        AccountChecks::passwordStrength(
            field, m_strength, localized("Register", "Password strength is low."),
            localized("Register", "Password length should be more than 6,and contains lower case "
                                  "letter,upper case letter and digit.")),
        AccountChecks::same(field, m_ui->verifyPasswordxField,
                            localized("Register", "Fail to verify password."),
                            localized("Register", "Please check your password.")),
    };
}

QList<Check> RegisterViewController::rescueEmailChecks() const
{
    QLineEdit *field = m_ui->rescueEmailField;
    return {
        AccountChecks::notEmpty(field, localized("Register", "Rescue Email can not be null."),
                                localized("Register", "Please enter the rescue email.")),
        AccountChecks::address(field, localized("Register", "Rescue Email is invalid."),
                               localized("Register", "Please enter right format email.")),
        {[field] { return emailExists(field->text()); },
         localized("Register", "The rescue email exists"),
         localized("Register", "Please enter another rescue email."), field},
        {[this] { return m_ui->rescueEmailField->text() == m_ui->emailField->text(); },
         localized("Register", "The rescue email cannot be same as email."),
         localized("Register", "Please enter another rescue email."), field},
    };
}

bool RegisterViewController::moreDetailVerify()
{
    return runChecks(personChecks() + placeChecks());
}

QList<Check> RegisterViewController::personChecks() const
{
    return {
        AccountChecks::notEmpty(m_ui->firstNameField,
                                localized("Register", "First Name can not be null."),
                                localized("Register", "Please enter your first name.")),
        AccountChecks::notEmpty(m_ui->lastNameField,
                                localized("Register", "Last Name can not be null."),
                                localized("Register", "Please enter your last name.")),
        AccountChecks::chosen(m_ui->titlePopUpButton,
                              localized("Register", "Title can not be null."),
                              localized("Register", "Please choose the title.")),
        AccountChecks::notEmpty(m_ui->companyField,
                                localized("Register", "Company can not be null."),
                                localized("Register", "Please enter your company.")),
        AccountChecks::chosen(m_ui->industryPopUpButton,
                              localized("Register", "Industry can not be null."),
                              localized("Register", "Please select the industry.")),
        AccountChecks::notEmpty(m_ui->jobTitleField,
                                localized("Register", "Job Title can not be null."),
                                localized("Register", "Please enter your job title.")),
    };
}

QList<Check> RegisterViewController::placeChecks() const
{
    return {
        AccountChecks::chosen(m_ui->businessContinentPopUpButton,
                              localized("Register", "Business Continent can not be null."),
                              localized("Register", "Please select the Business Continent.")),
        AccountChecks::chosen(m_ui->countryPopUpButton,
                              localized("Register", "Country/Territory can not be null."),
                              localized("Register", "Please select the country/territory.")),
        {[this] { return m_ui->telField->text().isEmpty() && m_ui->mobileField->text().isEmpty(); },
         localized("Register", "Tel and mobile can not be null at the same time."),
         localized("Register", "Please enter telephone or mobile."), m_ui->mobileField},
        {[this] { return m_countries.isWeChatRequired() && m_ui->weChatField->text().isEmpty(); },
         localized("Register", "WeChat can not be null."),
         localized("Register", "Please enter your WeChat."), m_ui->weChatField},
    };
}

CompanyJson RegisterViewController::getJson()
{
    CompanyJson company;
    m_questions.store(company);
    for (const auto &[value, field] :
         std::initializer_list<std::pair<QString CompanyJson::*, const QLineEdit *>>{
             {&CompanyJson::Email, m_ui->emailField},
             {&CompanyJson::RescueEmail, m_ui->rescueEmailField},
             {&CompanyJson::FirstName, m_ui->firstNameField},
             {&CompanyJson::LastName, m_ui->lastNameField},
             {&CompanyJson::Namex, m_ui->companyField},
             {&CompanyJson::JobTitle, m_ui->jobTitleField},
             {&CompanyJson::WeChat, m_ui->weChatField},
             {&CompanyJson::Skype, m_ui->skypeField},
             {&CompanyJson::Currency, m_ui->currencyField},
             {&CompanyJson::Tel, m_ui->telField},
             {&CompanyJson::Mobile, m_ui->mobileField},
             {&CompanyJson::Website, m_ui->websiteField},
             {&CompanyJson::Address, m_ui->addressField}})
        company.*value = field->text();
    company.Birthdate = m_ui->datePicker->date().toString(QStringLiteral("yyyy-MM-dd"));
    company.ReceiveAds =
        m_ui->receiveAdsCB->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    company.Title = m_bundleUtil.getTitle(m_ui->titlePopUpButton->currentIndex());
    company.Industry = m_bundleUtil.getIndustry(m_ui->industryPopUpButton->currentIndex());
    company.BusinessContinent = m_countries.businessContinent();
    company.Country = m_countries.country();
    company.MaxUsers = QStringLiteral("1");
    company.RegisterTime = MiscTool::getServerNow();
    company.ExpireTime = MiscTool::getServerNowAfterOneYear();
    company.IsEnabled = QStringLiteral("1");
    company.Memo = QStringLiteral("");
    return company;
}

UserxJson RegisterViewController::userOf(const CompanyJson &company) const
{
    UserxJson user;
    user.CompanyID = company.ID;
    user.UserGroupID = QStringLiteral("0");
    user.ParentID = QStringLiteral("0");
    user.IsAdmin = QStringLiteral("1");
    user.Userx = company.Email;
    user.Passwordx = m_ui->passwordxField->text();
    user.FirstName = company.FirstName;
    user.LastName = company.LastName;
    user.Memo = QStringLiteral("");
    user.IsEnabled = QStringLiteral("1");
    return user;
}

// Only the first of its failures is told; after the others the company stays at the service.
void RegisterViewController::createAction()
{
    CompanyJson company = getJson();
    if (!BLSyncCompany().insert(company)) {
        MiscTool::showAlert(localized("Register", "Fail to register."),
                            localized("Register", "Please try again later."));
        return;
    }
    const auto companies =
        BLSyncCompany().select(QStringLiteral("Email='") + m_ui->emailField->text() + u'\'');
    if (!companies)
        return;
    UserxJson user = userOf(CompanyJson::getJson(companies->first()));
    if (!BLSyncUserx().insert(user))
        return;
    Session::setLoggedUserx(user.Userx);
    accept();
    MiscTool::showAlert(localized("Register", "Registered successfully."),
                        localized("Register", "Please login with your email."));
}

void RegisterViewController::setAllStatus(bool enabled)
{
    for (QWidget *control : std::initializer_list<QWidget *>{m_ui->firstNameField,
                                                             m_ui->lastNameField,
                                                             m_ui->titlePopUpButton,
                                                             m_ui->companyField,
                                                             m_ui->industryPopUpButton,
                                                             m_ui->jobTitleField,
                                                             m_ui->weChatField,
                                                             m_ui->skypeField,
                                                             m_ui->businessContinentPopUpButton,
                                                             m_ui->countryPopUpButton,
                                                             m_ui->currencyField,
                                                             m_ui->telCallingCodeField,
                                                             m_ui->telField,
                                                             m_ui->mobileCallingCodeField,
                                                             m_ui->mobileField,
                                                             m_ui->websiteField,
                                                             m_ui->addressField,
                                                             m_ui->goBackButtonOfMoreDetailItem,
                                                             m_ui->cancelButtonOfMoreDetailItem,
                                                             m_ui->createButtonOfMoreDetailItem})
        control->setEnabled(enabled);
}
