#include "CompanyForm.h"

#include "AccountChecks.h"
#include "Fields.h"
#include "Form.h"
#include "Localized.h"
#include "PopUps.h"
#include "ui_CompanyForm.h"

namespace {

// As people and other programs write dates, with or without a time behind; null for any other
// text.
QDate dateOf(const QString &written)
{
    static const QStringList formats{QStringLiteral("yyyy-M-d"),   QStringLiteral("yyyy/M/d"),
                                     QStringLiteral("yyyy.M.d"),   QStringLiteral("M/d/yyyy"),
                                     QStringLiteral("d.M.yyyy"),   QStringLiteral("d MMMM yyyy"),
                                     QStringLiteral("d MMM yyyy"), QStringLiteral("MMMM d, yyyy"),
                                     QStringLiteral("MMM d, yyyy")};
    const QString trimmed = written.trimmed();
    for (const QString &date : {trimmed, trimmed.section(u' ', 0, 0), trimmed.section(u'T', 0, 0)})
        for (const QString &format : formats)
            if (const QDate found = QDate::fromString(date, format); found.isValid())
                return found;
    return {};
}

}

CompanyForm::CompanyForm(QWidget *parent)
    : QWidget(parent)
    , m_ui(madeForm<Ui::CompanyForm>(this))
    , m_countries(m_bundleUtil, {.businessContinentPopUp = m_ui->businessContinent0PopUp,
                                 .countryPopUp = m_ui->countryPopUp,
                                 .countryCountLabel = m_ui->countryCountLabel,
                                 .imageView = m_ui->imageView,
                                 .telCallingCodeField = m_ui->telCallingCodeField,
                                 .mobileCallingCodeField = m_ui->mobileCallingCodeField,
                                 .currencyField = m_ui->currencyField,
                                 .weChatField = m_ui->wechatField})
{
    Fields::setEditable(m_ui->emailField, false);
    connect(m_ui->datePicker, &QDateEdit::dateChanged, this, [this] { m_isBirthdate = true; });
}

CompanyForm::~CompanyForm() = default;

void CompanyForm::addToNames(const QString &suffix)
{
    for (QWidget *control : findChildren<QWidget *>())
        if (!control->objectName().isEmpty())
            control->setObjectName(control->objectName() + suffix);
}

void CompanyForm::initTitlePopup()
{
    PopUps::fill(m_ui->titlePopUp, m_bundleUtil.getTitles());
}

void CompanyForm::initIndustryPopup()
{
    PopUps::fill(m_ui->industryPopUp, m_bundleUtil.getIndustries());
}

void CompanyForm::initBusinessContinent0Popup()
{
    m_countries.initBusinessContinentPopup();
}

QList<std::pair<QString CompanyJson::*, QLineEdit *>> CompanyForm::textFields() const
{
    return {{&CompanyJson::Namex, m_ui->nameField},
            {&CompanyJson::FirstName, m_ui->firstNameField},
            {&CompanyJson::LastName, m_ui->lastNameField},
            {&CompanyJson::JobTitle, m_ui->jobTitleField},
            {&CompanyJson::Tel, m_ui->telField},
            {&CompanyJson::Mobile, m_ui->mobileField},
            {&CompanyJson::Currency, m_ui->currencyField},
            {&CompanyJson::WeChat, m_ui->wechatField},
            {&CompanyJson::Skype, m_ui->skypeField},
            {&CompanyJson::Website, m_ui->websiteField},
            {&CompanyJson::Address, m_ui->addressField}};
}

void CompanyForm::fill(const CompanyJson &company)
{
    m_ui->emailField->setText(company.Email);
    for (const auto &[value, field] : textFields()) {
        field->setText(company.*value);
        field->setCursorPosition(0);
    }
    initIndustryPopup();
    PopUps::select(m_ui->industryPopUp, m_bundleUtil.indexOfIndustry(company.Industry));
    initTitlePopup();
    PopUps::select(m_ui->titlePopUp, m_bundleUtil.indexOfTitle(company.Title));
    initBusinessContinent0Popup();
    m_countries.select(company.BusinessContinent, company.Country);
    m_countries.countryAction();
    const QDate birthdate = dateOf(company.Birthdate);
    m_ui->datePicker->setDate(birthdate.isValid() ? birthdate : QDate::currentDate());
    m_isBirthdate = birthdate.isValid();
    m_ui->receiveAdsCB->setChecked(company.ReceiveAds.toInt() == 1);
}

void CompanyForm::store(CompanyJson &company)
{
    for (const auto &[value, field] : textFields())
        company.*value = field->text();
    company.Industry = m_bundleUtil.getIndustry(m_ui->industryPopUp->currentIndex());
    company.Title = m_bundleUtil.getTitle(m_ui->titlePopUp->currentIndex());
    company.BusinessContinent = m_countries.businessContinent();
    company.Country = m_countries.country();
    if (m_isBirthdate)
        company.Birthdate = m_ui->datePicker->date().toString(QStringLiteral("yyyy-MM-dd"));
    company.ReceiveAds =
        m_ui->receiveAdsCB->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
}

QList<Check> CompanyForm::checks() const
{
    return QList<Check>{
               AccountChecks::notEmpty(m_ui->nameField,
                                       localized("Company", "Company can not be null."),
                                       localized("Company", "Please enter your company.")),
               AccountChecks::chosen(
                   m_ui->industryPopUp, localized("Company", "Select Industry"),
                   localized("Company", "Please select which industry belonged to.")),
           }
           + contactChecks() + placeChecks();
}

QList<Check> CompanyForm::contactChecks() const
{
    return {
        AccountChecks::notEmpty(m_ui->firstNameField,
                                localized("Company", "First Name can not be null."),
                                localized("Company", "Please enter your first name.")),
        AccountChecks::notEmpty(m_ui->lastNameField,
                                localized("Company", "Last Name can not be null."),
                                localized("Company", "Please enter your last name.")),
        AccountChecks::chosen(m_ui->titlePopUp, localized("Company", "Title can not be null."),
                              localized("Company", "Please choose your title.")),
        AccountChecks::notEmpty(m_ui->jobTitleField,
                                localized("Company", "Job Title can not be null."),
                                localized("Company", "Please enter your job title.")),
    };
}

QList<Check> CompanyForm::placeChecks() const
{
    return {
        AccountChecks::chosen(m_ui->businessContinent0PopUp,
                              localized("Company", "Select Business Continent"),
                              localized("Company", "Please select your Business Continent.")),
        AccountChecks::chosen(m_ui->countryPopUp, localized("Company", "Select Your Country."),
                              localized("Company", "Please select your country or territory.")),
        {[this] { return m_ui->telField->text().isEmpty() && m_ui->mobileField->text().isEmpty(); },
         localized("Company", "Tel and Mobile can not be null at the same time."),
         localized("Company", "Please enter Tel or Mobile."), m_ui->telField},
        {[this] { return m_countries.isWeChatRequired() && m_ui->wechatField->text().isEmpty(); },
         localized("Company", "WeChat can not be null."),
         localized("Company", "Please enter your WeChat."), m_ui->wechatField},
    };
}
