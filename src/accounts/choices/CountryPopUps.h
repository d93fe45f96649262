// The pop-ups of the business continent and of its countries, and the fields that follow the
// country chosen: its flag, calling code and currency. Main thread.
#pragma once

#include <QObject>

class BundleUtil;
class QComboBox;
class QLabel;
class QLineEdit;

// Of a page; null where it has none. Only the two pop-ups must be there.
struct CountryControls
{
    QComboBox *businessContinentPopUp = nullptr;
    QComboBox *countryPopUp = nullptr;
    QLabel *countryCountLabel = nullptr;
    QLabel *imageView = nullptr; // the flag
    QLineEdit *telCallingCodeField = nullptr;
    QLineEdit *mobileCallingCodeField = nullptr;
    QLineEdit *currencyField = nullptr;
    QLineEdit *weChatField = nullptr;
};

class CountryPopUps : public QObject
{
    Q_OBJECT

public:
    // The lists are the page's and outlive this.
    CountryPopUps(BundleUtil &bundleUtil, const CountryControls &controls);

    void initBusinessContinentPopup();
    // The countries of the selected continent; none of them is chosen.
    void initCountryPopup();
    // Shows what belongs to the selected country.
    void countryAction();

    // By the stored names; what is not in the lists is not selected. What belongs to the country is
    // left to countryAction.
    void select(const QString &businessContinent, const QString &country);

    // The names as they are stored; null where none is chosen.
    [[nodiscard]] QString businessContinent() const;
    [[nodiscard]] QString country() const;

    // Where the page has a field for it.
    [[nodiscard]] bool isWeChatRequired() const;

private:
    void businessContinentAction() { initCountryPopup(); }

    BundleUtil &m_bundleUtil;
    CountryControls m_controls;
};
