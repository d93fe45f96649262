// The form of a company's profile, in which a company shows and changes its own, and root that of
// any. Main thread.
#pragma once

#include "BundleUtil.h"
#include "Checks.h"
#include "CountryPopUps.h"
#include "Records.h"

#include <QWidget>

#include <memory>

class QLineEdit;

namespace Ui {
class CompanyForm;
}

class CompanyForm : public QWidget
{
    Q_OBJECT

public:
    explicit CompanyForm(QWidget *parent = nullptr);
    ~CompanyForm() override;

    // Tells the controls of a second form in a page apart: each name ends in that.
    void addToNames(const QString &suffix);

    void fill(const CompanyJson &company);
    // E-mail, rescue e-mail and questions stay the company's, and a birthdate that cannot be read
    // and was not chosen anew.
    void store(CompanyJson &company);

    // What has to hold before a company is stored.
    [[nodiscard]] QList<Check> checks() const;

private:
    void initTitlePopup();
    void initIndustryPopup();
    void initBusinessContinent0Popup();
    [[nodiscard]] QList<std::pair<QString CompanyJson::*, QLineEdit *>> textFields() const;
    [[nodiscard]] QList<Check> contactChecks() const;
    [[nodiscard]] QList<Check> placeChecks() const;

    std::unique_ptr<Ui::CompanyForm> m_ui;
    BundleUtil m_bundleUtil;
    CountryPopUps m_countries;
    bool m_isBirthdate = false; // what the picker shows, and not only today's date
};
