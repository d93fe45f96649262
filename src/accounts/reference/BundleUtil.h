// The fixed choice lists of the account pages, each loaded from its property list at first use and
// kept as long as this object. A list that is missing is empty; looking up what is not there gives
// a null text or notFound. Any thread, one object a thread.
#pragma once

#include <QStringList>
#include <QVariantMap>

#include <optional>

class BundleUtil
{
public:
    static constexpr qsizetype notFound = -1;

    // The folder that holds the property lists.
    explicit BundleUtil(const QString &folder = QStringLiteral(":/reference"));

    [[nodiscard]] QStringList getIndustries();
    [[nodiscard]] QString getIndustry(qsizetype index);
    [[nodiscard]] qsizetype indexOfIndustry(const QString &industry);

    [[nodiscard]] QStringList getTitles();
    [[nodiscard]] QString getTitle(qsizetype index);
    [[nodiscard]] qsizetype indexOfTitle(const QString &title);

    // Element 0 is the line for nothing chosen, here and in each list of countries.
    [[nodiscard]] QStringList getBusinessContinents();
    [[nodiscard]] QString getBusinessContinent(qsizetype index);
    [[nodiscard]] qsizetype indexOfBusinessContinent(const QString &continent);

    // Empty for continent 0; null unless both indexes are 1 or more.
    [[nodiscard]] QStringList getCountries(qsizetype continentIndex);
    [[nodiscard]] QString getCountry(qsizetype continentIndex, qsizetype countryIndex);
    [[nodiscard]] qsizetype indexOfCountry(qsizetype continentIndex, const QString &country);

    // Digits without "+"; and the currency's text.
    [[nodiscard]] QString getCallingCode(const QString &country);
    [[nodiscard]] QString getCurrency(const QString &country);

    [[nodiscard]] QStringList getFirstGroupSecurityQuestions();
    [[nodiscard]] QStringList getSecondGroupSecurityQuestions();
    [[nodiscard]] QStringList getThirdGroupSecurityQuestions();
    [[nodiscard]] QString getQuestionOfFirstGroup(qsizetype index);
    [[nodiscard]] QString getQuestionOfSecondGroup(qsizetype index);
    [[nodiscard]] QString getQuestionOfThirdGroup(qsizetype index);
    // The group is "Group1", "Group2" or "Group3".
    [[nodiscard]] qsizetype indexOfSecurityQuestion(const QString &group, const QString &question);

    [[nodiscard]] QVariantMap getCategoryDict();
    [[nodiscard]] QStringList getPaymentMethods();
    [[nodiscard]] QString getTermsAndConditions();

    [[nodiscard]] QStringList getStatuses();
    [[nodiscard]] QString getStatus(qsizetype index);
    [[nodiscard]] qsizetype indexOfStatus(const QString &status);

private:
    void initIndustry();
    void initTitle();
    void initBusinessContinent();
    void initCountries();
    void initCallingCode();
    void initCurrency();
    void initSecurityQuestion();
    void initCategory();
    void initPaymentMethod();
    void initTermsAndConditions();
    void initStatus();

    void load(QStringList &array, const char *resource) const;
    void load(QVariantMap &dict, const char *resource) const;

    QString m_folder;
    QStringList m_industryArray;
    QStringList m_titleArray;
    QStringList m_businessContinentArray;
    QVariantMap m_countryDict;
    QVariantMap m_callingCodeDict;
    QVariantMap m_currencyDict;
    QVariantMap m_securityQuestionDict;
    QVariantMap m_categoryDict;
    QStringList m_paymentMethodArray;
    QVariantMap m_termsAndConditionsDict;
    QStringList m_statusArray;
};
