#include "CountryPopUps.h"

#include "BundleUtil.h"
#include "Fields.h"
#include "Localized.h"
#include "PopUps.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>

namespace {

const QString codeThatNeedsWeChat = QStringLiteral("+86");

void show(QLineEdit *field, const QString &text)
{
    if (field)
        field->setText(text);
}

}

CountryPopUps::CountryPopUps(BundleUtil &bundleUtil, const CountryControls &controls)
    : m_bundleUtil(bundleUtil)
    , m_controls(controls)
{
    connect(controls.businessContinentPopUp, &QComboBox::activated, this,
            &CountryPopUps::businessContinentAction);
    connect(controls.countryPopUp, &QComboBox::activated, this, &CountryPopUps::countryAction);
    for (QLineEdit *field : {controls.telCallingCodeField, controls.mobileCallingCodeField})
        if (field)
            Fields::setEditable(field, false);
}

void CountryPopUps::initBusinessContinentPopup()
{
    PopUps::fill(m_controls.businessContinentPopUp, m_bundleUtil.getBusinessContinents());
}

void CountryPopUps::initCountryPopup()
{
    const QStringList countries =
        m_bundleUtil.getCountries(m_controls.businessContinentPopUp->currentIndex());
    PopUps::fill(m_controls.countryPopUp, countries);
    // The line for nothing chosen is no country.
    if (m_controls.countryCountLabel)
        m_controls.countryCountLabel->setText(
            QString::number(countries.isEmpty() ? 0 : countries.size() - 1));
    if (m_controls.imageView)
        m_controls.imageView->clear();
}

void CountryPopUps::countryAction()
{
    const QString name = country();
    if (m_controls.imageView)
        m_controls.imageView->setPixmap(QPixmap(QStringLiteral(":/flags/%1.png").arg(name)));
    const QString callingCode = u'+' + m_bundleUtil.getCallingCode(name);
    show(m_controls.telCallingCodeField, callingCode);
    show(m_controls.mobileCallingCodeField, callingCode);
    show(m_controls.currencyField, m_bundleUtil.getCurrency(name));
    if (m_controls.weChatField)
        m_controls.weChatField->setPlaceholderText(
            callingCode == codeThatNeedsWeChat ? localized("Localizable", "Required") : QString());
}

void CountryPopUps::select(const QString &businessContinent, const QString &country)
{
    const qsizetype continent = m_bundleUtil.indexOfBusinessContinent(businessContinent);
    PopUps::select(m_controls.businessContinentPopUp, continent);
    initCountryPopup();
    PopUps::select(m_controls.countryPopUp, m_bundleUtil.indexOfCountry(continent, country));
}

QString CountryPopUps::businessContinent() const
{
    const int index = m_controls.businessContinentPopUp->currentIndex();
    return index < 1 ? QString() : m_bundleUtil.getBusinessContinent(index);
}

QString CountryPopUps::country() const
{
    return m_bundleUtil.getCountry(m_controls.businessContinentPopUp->currentIndex(),
                                   m_controls.countryPopUp->currentIndex());
}

bool CountryPopUps::isWeChatRequired() const
{
    return m_controls.telCallingCodeField
           && m_controls.telCallingCodeField->text() == codeThatNeedsWeChat;
}
