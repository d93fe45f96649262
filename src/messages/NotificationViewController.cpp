#include "NotificationViewController.h"

#include "Alerts.h"
#include "Form.h"
#include "Localized.h"
#include "NotificationPanel.h"
#include "Session.h"
#include "ui_Notification.h"

namespace {

enum Column { titleColumn, issuedTimeColumn };

// Of what the user may see. One whose name is no company's address may see everything, as root.
QString visibleClause()
{
    const QString everything = QStringLiteral("1=1");
    if (Session::isRoot())
        return everything;
    const UserxJson user = Session::getLoggedUserxJson().value_or(UserxJson());
    const auto companies = BLSyncCompany().select(QStringLiteral("Email='") + user.Userx + u'\'');
    if (!companies)
        return everything;
    const CompanyJson company = CompanyJson::getJson(companies->first());
    return QStringLiteral("(BusinessContinent='' OR BusinessContinent='")
           + company.BusinessContinent + QStringLiteral("') AND (Country='' OR Country='")
           + company.Country + QStringLiteral("') AND IsEnabled=1");
}

}

NotificationViewController::NotificationViewController()
    : m_ui(madeForm<Ui::Notification>(this))
    , m_waiting(this, m_ui->loadingView)
    , m_panel(new NotificationPanel(this))
{
    m_ui->tableView->setIdentifiers({QStringLiteral("Title"), QStringLiteral("IssuedTime")});
    QHeaderView *header = m_ui->tableView->horizontalHeader();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(titleColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(issuedTimeColumn, QHeaderView::ResizeToContents);
}

NotificationViewController::~NotificationViewController() = default;

NotificationViewController *NotificationViewController::getViewController()
{
    return new NotificationViewController;
}

void NotificationViewController::viewDidLoad()
{
    inits();
}

void NotificationViewController::viewWillAppear()
{
    loadData();
}

void NotificationViewController::inits()
{
    using Self = NotificationViewController;
    m_ui->addButton->setVisible(Session::isRoot());
    m_ui->deleteButton->setVisible(Session::isRoot());
    connect(m_ui->addButton, &QAbstractButton::clicked, this, &Self::addAction);
    connect(m_ui->deleteButton, &QAbstractButton::clicked, this, &Self::deleteAction);
    connect(m_ui->tableView, &RecordTable::openRequested, this, &Self::updateAction);
    connect(m_panel, &NotificationPanel::saved, this, &Self::loadData);
}

// A load that is queued already shows what is chosen by then.
void NotificationViewController::wait(const std::function<void()> &work)
{
    m_waiting.run([](bool) {}, work);
}

void NotificationViewController::loadData()
{
    wait([this] { load(); });
}

void NotificationViewController::load()
{
    const auto rows =
        m_blSyncNotification.select(visibleClause() + QStringLiteral(" ORDER BY IssuedTime DESC"));
    m_data.clear();
    QList<QStringList> texts;
    for (const QVariantMap &row : rows.value_or(QList<QVariantMap>())) {
        m_data.append(NotificationJson::getJson(row));
        texts.append({m_data.last().Title, m_data.last().IssuedTime});
    }
    m_ui->tableView->setRows(texts);
}

void NotificationViewController::addAction()
{
    m_panel->presentNew();
}

void NotificationViewController::updateAction()
{
    const int row = m_ui->tableView->selectedRow();
    if (row >= 0)
        m_panel->present(m_data.at(row));
}

void NotificationViewController::deleteAction()
{
    const int row = m_ui->tableView->selectedRow();
    if (row < 0)
        return;
    Alerts::confirmOnWindow(
        this, localized("Notification", "Are you sure to delete?"),
        localized("Notification", "The operation is irreversible."),
        [this, id = m_data.at(row).ID] { wait([this, id] { remove(id); }); }, "Notification");
}

// The marks of those who have read it go with it.
void NotificationViewController::remove(const QString &id)
{
    const bool isRemoved = m_blSyncNotification.deleteByID(id);
    if (isRemoved && !BLSyncNotificationReadStatus().remove(QStringLiteral("NotificationID=") + id))
        qWarning("the read marks of notification %s are left behind", qUtf8Printable(id));
    m_waiting.end();
    if (!isRemoved)
        MiscTool::showAlert(localized("Notification", "Failed to delete."),
                            localized("Notification", "Please try again later."));
    loadData();
}
