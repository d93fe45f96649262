#include "BundleUtil.h"

#include "PropertyList.h"

BundleUtil::BundleUtil(const QString &folder)
    : m_folder(folder)
{
}

void BundleUtil::load(QStringList &array, const char *resource) const
{
    if (!array.isEmpty())
        return;
    const Result<QVariant> content = PropertyList::read(
        m_folder + u'/' + QLatin1StringView(resource) + QStringLiteral(".plist"));
    if (content)
        array = content.value().toStringList();
}

void BundleUtil::load(QVariantMap &dict, const char *resource) const
{
    if (dict.isEmpty())
        dict = PropertyList::readMap(m_folder + u'/' + QLatin1StringView(resource)
                                     + QStringLiteral(".plist"));
}

void BundleUtil::initIndustry()
{
    load(m_industryArray, "Industry");
}

void BundleUtil::initTitle()
{
    load(m_titleArray, "Title");
}

void BundleUtil::initBusinessContinent()
{
    load(m_businessContinentArray, "BusinessContinent");
}

void BundleUtil::initCountries()
{
    load(m_countryDict, "Country");
}

void BundleUtil::initCallingCode()
{
    load(m_callingCodeDict, "CallingCode");
}

void BundleUtil::initCurrency()
{
    load(m_currencyDict, "Currency");
}

void BundleUtil::initSecurityQuestion()
{
    load(m_securityQuestionDict, "SecurityQuestion");
}

void BundleUtil::initCategory()
{
    load(m_categoryDict, "Category");
}

void BundleUtil::initPaymentMethod()
{
    load(m_paymentMethodArray, "PaymentMethod");
}

void BundleUtil::initTermsAndConditions()
{
    load(m_termsAndConditionsDict, "Terms");
}

void BundleUtil::initStatus()
{
    load(m_statusArray, "Status");
}

QStringList BundleUtil::getIndustries()
{
    initIndustry();
    return m_industryArray;
}

QString BundleUtil::getIndustry(qsizetype index)
{
    return getIndustries().value(index);
}

qsizetype BundleUtil::indexOfIndustry(const QString &text)
{
    return getIndustries().indexOf(text);
}

QStringList BundleUtil::getTitles()
{
    initTitle();
    return m_titleArray;
}

QString BundleUtil::getTitle(qsizetype index)
{
    return getTitles().value(index);
}

qsizetype BundleUtil::indexOfTitle(const QString &text)
{
    return getTitles().indexOf(text);
}

QStringList BundleUtil::getBusinessContinents()
{
    initBusinessContinent();
    return m_businessContinentArray;
}

QString BundleUtil::getBusinessContinent(qsizetype index)
{
    return getBusinessContinents().value(index);
}

qsizetype BundleUtil::indexOfBusinessContinent(const QString &text)
{
    return getBusinessContinents().indexOf(text);
}

QStringList BundleUtil::getStatuses()
{
    initStatus();
    return m_statusArray;
}

QString BundleUtil::getStatus(qsizetype index)
{
    return getStatuses().value(index);
}

qsizetype BundleUtil::indexOfStatus(const QString &text)
{
    return getStatuses().indexOf(text);
}

QStringList BundleUtil::getCountries(qsizetype continentIndex)
{
    initCountries();
    if (continentIndex <= 0)
        return {};
    return m_countryDict.value(getBusinessContinent(continentIndex)).toStringList();
}

QString BundleUtil::getCountry(qsizetype continentIndex, qsizetype countryIndex)
{
    if (countryIndex < 1)
        return {};
    return getCountries(continentIndex).value(countryIndex);
}

qsizetype BundleUtil::indexOfCountry(qsizetype continentIndex, const QString &country)
{
    initCountries();
    return m_countryDict.value(getBusinessContinent(continentIndex))
        .toStringList()
        .indexOf(country);
}

QString BundleUtil::getCallingCode(const QString &country)
{
    initCallingCode();
    return m_callingCodeDict.value(country).toString();
}

QString BundleUtil::getCurrency(const QString &country)
{
    initCurrency();
    return m_currencyDict.value(country).toString();
}

QVariantMap BundleUtil::getCategoryDict()
{
    initCategory();
    return m_categoryDict;
}

QStringList BundleUtil::getPaymentMethods()
{
    initPaymentMethod();
    return m_paymentMethodArray;
}

QString BundleUtil::getTermsAndConditions()
{
    initTermsAndConditions();
    return m_termsAndConditionsDict.value(QStringLiteral("Body")).toString();
}

qsizetype BundleUtil::indexOfSecurityQuestion(const QString &group, const QString &question)
{
    initSecurityQuestion();
    return m_securityQuestionDict.value(group).toStringList().indexOf(question);
}

QStringList BundleUtil::getFirstGroupSecurityQuestions()
{
    initSecurityQuestion();
    return m_securityQuestionDict.value(QStringLiteral("Group1")).toStringList();
}

QString BundleUtil::getQuestionOfFirstGroup(qsizetype index)
{
    return getFirstGroupSecurityQuestions().value(index);
}

QStringList BundleUtil::getSecondGroupSecurityQuestions()
{
    initSecurityQuestion();
    return m_securityQuestionDict.value(QStringLiteral("Group2")).toStringList();
}

QString BundleUtil::getQuestionOfSecondGroup(qsizetype index)
{
    return getSecondGroupSecurityQuestions().value(index);
}

QStringList BundleUtil::getThirdGroupSecurityQuestions()
{
    initSecurityQuestion();
    return m_securityQuestionDict.value(QStringLiteral("Group3")).toStringList();
}

QString BundleUtil::getQuestionOfThirdGroup(qsizetype index)
{
    return getThirdGroupSecurityQuestions().value(index);
}
