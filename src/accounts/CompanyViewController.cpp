#include "CompanyViewController.h"

#include "Alerts.h"
#include "CompanyPanel.h"
#include "FileStore.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_Company.h"

#include <array>

namespace {

constexpr qint64 rowsOfPage = 16;

// Of the table's columns, in their order.
constexpr std::array identifiers{"Enabled", "Company", "Contact", "RegisterTime", "Country"};
constexpr int enabledColumn = 0;
constexpr int timeColumn = 3;

QString ownCompanyID()
{
    return Session::getLoggedUserxJson().value_or(UserxJson()).CompanyID;
}

}

CompanyViewController::CompanyViewController()
    : m_ui(madeForm<Ui::Company>(this))
    , m_filter(m_bundleUtil, {.businessContinentPopUp = m_ui->businessContinentPopUp,
                              .countryPopUp = m_ui->countrySelectPopUp})
    , m_waiting(this, m_ui->loadingView1)
    , m_directoryWaiting(this, m_ui->loadingView2)
{
    QHeaderView *header = m_ui->table->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Stretch);
    for (const int column : {enabledColumn, timeColumn})
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    showDirectory(false);
    connectControls();
}

CompanyViewController::~CompanyViewController() = default;

CompanyViewController *CompanyViewController::getViewController()
{
    return new CompanyViewController;
}

void CompanyViewController::connectControls()
{
    using Self = CompanyViewController;
    connect(m_ui->tabView, &QTabWidget::currentChanged, this, &Self::tabViewDidSelectTabViewItem);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &Self::saveAction);
    for (const QComboBox *popUp : {m_ui->businessContinentPopUp, m_ui->countrySelectPopUp})
        connect(popUp, &QComboBox::activated, this, &Self::filterAction);
    connect(m_ui->pagePopUp, &QComboBox::activated, this, &Self::changePageAction);
    connect(m_ui->profileButton, &QPushButton::clicked, this, &Self::showProfile);
    connect(m_ui->table, &RecordTable::openRequested, this, &Self::showProfile);
    connect(m_ui->table, &RecordTable::itemSelectionChanged, this,
            [this] { m_ui->profileButton->setEnabled(m_ui->table->selectedRow() >= 0); });
}

void CompanyViewController::viewDidLoad()
{
    initBusinessContinentPopup();
    initCountrySelectPopup();
}

// A page outlives sessions: nothing of another user's may stay.
void CompanyViewController::viewWillAppear()
{
    showDirectory(Session::isRoot());
    if (m_companyJson.ID.isEmpty() || m_companyJson.ID != ownCompanyID())
        tabViewDidSelectTabViewItem();
}

void CompanyViewController::tabViewDidSelectTabViewItem()
{
    if (m_ui->tabView->currentWidget() == m_ui->allCompaniesItem)
        loadData();
    else
        m_waiting.run([this](bool enabled) { setAllStatus(enabled); }, [this] { initData(); });
}

void CompanyViewController::initData()
{
    const auto companies = m_blSync.select(QStringLiteral("ID=") + ownCompanyID());
    m_companyJson = companies ? CompanyJson::getJson(companies->first()) : CompanyJson();
    m_ui->form->fill(m_companyJson);
}

CompanyJson CompanyViewController::getJson()
{
    m_ui->form->store(m_companyJson);
    return m_companyJson;
}

bool CompanyViewController::verify() const
{
    return runChecks(m_ui->form->checks());
}

void CompanyViewController::saveAction()
{
    if (verify())
        m_waiting.run([this](bool enabled) { setAllStatus(enabled); }, [this] { save(); });
}

void CompanyViewController::save()
{
    // What the form does not show may have changed since it was loaded: the security questions.
    m_companyJson = m_blSync.getJson(m_companyJson.ID).value_or(m_companyJson);
    CompanyJson company = getJson();
    if (m_blSync.update(company))
        MiscTool::showAlert(localized("Company", "Saved Successfully."),
                            localized("Company", "Succeed to update company profile."));
    else
        MiscTool::showAlert(localized("Company", "Failed to save."),
                            localized("Company", "Please try again later."));
}

void CompanyViewController::setAllStatus(bool enabled)
{
    m_ui->form->setEnabled(enabled);
    m_ui->saveButton->setEnabled(enabled);
}

void CompanyViewController::showDirectory(bool isShown)
{
    QTabWidget *tabView = m_ui->tabView;
    const int place = tabView->indexOf(m_ui->allCompaniesItem);
    if (isShown == (place >= 0))
        return;
    if (isShown) {
        tabView->addTab(m_ui->allCompaniesItem, localized("Company", "All Companies"));
        return;
    }
    tabView->removeTab(place);
    m_data.clear();
    reloadTable();
}

void CompanyViewController::initBusinessContinentPopup()
{
    m_filter.initBusinessContinentPopup();
}

void CompanyViewController::initCountrySelectPopup()
{
    m_filter.initCountryPopup();
}

QString CompanyViewController::getWhereClause() const
{
    QString clause = QStringLiteral("Email!='root'");
    if (m_ui->businessContinentPopUp->currentIndex() > 0)
        clause += QStringLiteral(" AND BusinessContinent='") + m_filter.businessContinent() + u'\'';
    if (m_ui->countrySelectPopUp->currentIndex() >= 1)
        clause += QStringLiteral(" AND Country='") + m_filter.country() + u'\'';
    return clause + QStringLiteral(" ORDER BY RegisterTime DESC");
}

void CompanyViewController::initData2()
{
    m_number = rowsOfPage;
    m_count = m_blSync.getCount(getWhereClause());
    m_ui->pageLabel->setText(QString::number(m_count));
    if (m_number <= m_count) {
        m_totalPages = m_count / m_number + (m_count % m_number == 0 ? 0 : 1);
    } else {
        m_count = m_number;
        m_totalPages = 1;
    }
    initPagePopUp();
}

void CompanyViewController::initPagePopUp()
{
    m_ui->pagePopUp->clear();
    for (qint64 page = 0; page < m_totalPages; ++page)
        m_ui->pagePopUp->addItem(QString::number(page + 1), page);
}

void CompanyViewController::loadData()
{
    m_directoryWaiting.run([this](bool enabled) { setDirectoryStatus(enabled); },
                           [this] {
                               initData2();
                               selectRows(QStringLiteral("1"), QString::number(m_number));
                           });
}

void CompanyViewController::loadData(const QString &index, const QString &step)
{
    m_directoryWaiting.run([this](bool enabled) { setDirectoryStatus(enabled); },
                           [=, this] { selectRows(index, step); });
}

void CompanyViewController::selectRows(const QString &index, const QString &step)
{
    m_data = m_blSync.select(getWhereClause(), index, step).value_or(QList<QVariantMap>());
    reloadTable();
}

void CompanyViewController::changePageAction()
{
    const qint64 first = m_ui->pagePopUp->currentData().toLongLong() * m_number;
    loadData(QString::number(first == 0 ? 1 : first), QString::number(m_number));
}

// The countries have followed the continent already.
void CompanyViewController::filterAction()
{
    loadData();
}

int CompanyViewController::numberOfRowsInTableView() const
{
    return static_cast<int>(m_data.size());
}

QString CompanyViewController::objectValueForTableColumn(const char *identifier,
                                                         const CompanyJson &company)
{
    const QLatin1StringView column(identifier);
    if (column == QLatin1StringView("Enabled"))
        return company.IsEnabled.toInt() == 1 ? QStringLiteral("✔︎") : QStringLiteral("✘");
    if (column == QLatin1StringView("Company"))
        return company.Namex;
    if (column == QLatin1StringView("Contact"))
        return company.FirstName + u' ' + company.LastName;
    if (column == QLatin1StringView("RegisterTime"))
        return company.RegisterTime;
    return localized(company.Country);
}

void CompanyViewController::reloadTable()
{
    QList<QStringList> rows;
    for (int row = 0; row < numberOfRowsInTableView(); ++row) {
        const CompanyJson company = CompanyJson::getJson(m_data.at(row));
        QStringList values;
        for (const char *identifier : identifiers)
            values.append(objectValueForTableColumn(identifier, company));
        rows.append(values);
    }
    m_ui->table->setRows(rows);
    for (int row = 0; row < rows.size(); ++row)
        m_ui->table->item(row, enabledColumn)->setTextAlignment(Qt::AlignCenter);
    m_ui->table->scrollToTop();
}

void CompanyViewController::showProfile()
{
    const int row = m_ui->table->selectedRow();
    if (row < 0)
        return;
    m_directoryWaiting.run(
        [this](bool enabled) { setDirectoryStatus(enabled); },
        [this, profileJson = CompanyJson::getJson(m_data.at(row))] { openPanel(profileJson); });
}

void CompanyViewController::openPanel(const CompanyJson &profileJson)
{
    const QImage picture = MiscTool::getImage({}, profileJson.ID, {}, {}, 0, true);
    auto *panel = new CompanyPanel(this, profileJson, picture);
    connect(panel, &CompanyPanel::sent, this, qOverload<>(&CompanyViewController::loadData));
    m_directoryWaiting.end();
    panel->open();
}

void CompanyViewController::setDirectoryStatus(bool enabled)
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->businessContinentPopUp, m_ui->countrySelectPopUp, m_ui->table, m_ui->pagePopUp})
        control->setEnabled(enabled);
    m_ui->profileButton->setEnabled(enabled && m_ui->table->selectedRow() >= 0);
}
