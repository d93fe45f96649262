// The page of the companies: the profile of the user's own, and for root the directory of all, one
// page of rows after the other, from which it opens any. Main thread; the service calls block it.
#pragma once

#include "BLSync.h"
#include "BundleUtil.h"
#include "CountryPopUps.h"
#include "Page.h"
#include "Waiting.h"

#include <memory>

namespace Ui {
class Company;
}

class CompanyViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static CompanyViewController *getViewController();
    ~CompanyViewController() override;

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;

private:
    CompanyViewController();

    void connectControls();
    void tabViewDidSelectTabViewItem();

    // The own company.
    void initData();
    [[nodiscard]] CompanyJson getJson();
    [[nodiscard]] bool verify() const;
    void saveAction();
    void save();
    void setAllStatus(bool enabled);

    // The directory.
    void showDirectory(bool isShown);
    void initBusinessContinentPopup();
    void initCountrySelectPopup();
    [[nodiscard]] QString getWhereClause() const;
    void initData2();
    void initPagePopUp();
    void loadData();
    void loadData(const QString &index, const QString &step);
    void selectRows(const QString &index, const QString &step);
    void changePageAction();
    void filterAction();
    void reloadTable();
    [[nodiscard]] int numberOfRowsInTableView() const;
    [[nodiscard]] static QString objectValueForTableColumn(const char *identifier,
                                                           const CompanyJson &company);
    void showProfile();
    void openPanel(const CompanyJson &profileJson);
    void setDirectoryStatus(bool enabled);

    std::unique_ptr<Ui::Company> m_ui;
    BLSyncCompany m_blSync;
    BundleUtil m_bundleUtil;
    CompanyJson m_companyJson; // the own one
    CountryPopUps m_filter;
    QList<QVariantMap> m_data; // the rows of the page of the directory
    qint64 m_number = 0;       // rows of a page
    qint64 m_count = 0;        // of the companies that pass the filter, at least those of a page
    qint64 m_totalPages = 0;
    Waiting m_waiting;
    Waiting m_directoryWaiting;
};
