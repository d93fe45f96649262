#include "NotificationPanel.h"

#include "Alerts.h"
#include "Checks.h"
#include "DateTools.h"
#include "Fields.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_NotificationPanel.h"

namespace {

const QString insertOperation = QStringLiteral("INSERT");
const QString updateOperation = QStringLiteral("UPDATE");

}

NotificationPanel::NotificationPanel(QWidget *parent)
    : QDialog(parent)
    , m_ui(madeForm<Ui::NotificationPanel>(this))
    , m_waiting(this, m_ui->loadingView2)
    , m_countryPopUps(m_bundleUtil, {m_ui->businessContinentPopup, m_ui->countryPopup})
{
    m_countryPopUps.initBusinessContinentPopup();
    connect(m_ui->cancelButton, &QAbstractButton::clicked, this, &NotificationPanel::cancelAction);
    connect(m_ui->saveButton, &QAbstractButton::clicked, this, &NotificationPanel::saveAction);
}

NotificationPanel::~NotificationPanel() = default;

void NotificationPanel::presentNew()
{
    m_operation = insertOperation;
    NotificationJson notification;
    notification.IsEnabled = QStringLiteral("1");
    setWindowTitle(localized("Notification", "Insert"));
    fill(notification);
}

void NotificationPanel::present(const NotificationJson &notification)
{
    m_operation = updateOperation;
    setWindowTitle(Session::isRoot() ? localized("Notification", "Update")
                                     : localized("Notification", "Notification"));
    fill(notification);
}

void NotificationPanel::fill(const NotificationJson &notification)
{
    const bool isRoot = Session::isRoot();
    m_notification = notification;
    m_ui->titleField->setText(notification.Title);
    m_ui->bodyField->setPlainText(notification.Body);
    chooseTarget(notification.BusinessContinent, notification.Country);
    m_ui->enabledCB->setChecked(notification.IsEnabled.toInt() != 0);
    // Whom it is for concerns nobody else.
    for (QWidget *control : std::initializer_list<QWidget *>{m_ui->businessContinentPopup,
                                                             m_ui->countryPopup, m_ui->enabledCB})
        m_ui->panelBoxLayout->setRowVisible(control, isRoot);
    m_ui->saveButton->setVisible(isRoot);
    m_ui->cancelButton->setText(isRoot ? localized("Notification", "&Cancel")
                                       : localized("Notification", "&Close"));
    setAllStatus(true);
    if (isRoot)
        m_ui->titleField->setFocus();
    else
        m_ui->cancelButton->setFocus();
    open();
}

// An empty target is the line for nothing chosen; one that is not in the lists is none of them.
void NotificationPanel::chooseTarget(const QString &businessContinent, const QString &country)
{
    m_countryPopUps.select(businessContinent, country);
    if (!country.isEmpty())
        return;
    m_ui->countryPopup->setCurrentIndex(0);
    if (businessContinent.isEmpty())
        m_ui->businessContinentPopup->setCurrentIndex(0);
}

// What is not in the lists stays until something else is chosen.
void NotificationPanel::readTarget(NotificationJson &notification) const
{
    const int continent = m_ui->businessContinentPopup->currentIndex();
    if (continent < 0)
        return;
    notification.BusinessContinent = m_countryPopUps.businessContinent();
    if (continent == 0 || m_ui->countryPopup->currentIndex() >= 0)
        notification.Country = m_countryPopUps.country();
}

void NotificationPanel::setAllStatus(bool enabled)
{
    const bool isEditable = enabled && Session::isRoot();
    Fields::setEditable(m_ui->titleField, isEditable);
    Fields::setEditable(m_ui->bodyField, isEditable);
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->businessContinentPopup, m_ui->countryPopup, m_ui->enabledCB, m_ui->saveButton})
        control->setEnabled(isEditable);
    m_ui->cancelButton->setEnabled(enabled);
}

bool NotificationPanel::verify()
{
    return runChecks({
        {[this] { return m_ui->titleField->text().isEmpty(); },
         localized("Notification", "Title can not be null."),
         localized("Notification", "Please enter the title."), m_ui->titleField},
        {[this] { return m_ui->bodyField->toPlainText().isEmpty(); },
         localized("Notification", "Body can not be null."),
         localized("Notification", "Please enter the body."), m_ui->bodyField},
    });
}

NotificationJson NotificationPanel::getJson() const
{
    NotificationJson notification = m_notification;
    if (m_operation == insertOperation)
        notification.IssuedTime = MiscTool::getNow();
    notification.Title = m_ui->titleField->text();
    notification.Body = m_ui->bodyField->toPlainText();
    readTarget(notification);
    notification.IsEnabled = QString::number(int(m_ui->enabledCB->isChecked()));
    return notification;
}

void NotificationPanel::saveAction()
{
    if (!verify())
        return;
    m_waiting.run([this](bool enabled) { setAllStatus(enabled); }, [this] { save(); });
}

void NotificationPanel::save()
{
    NotificationJson notification = getJson();
    const bool isSaved = m_operation == insertOperation ? m_blSyncNotification.insert(notification)
                                                        : m_blSyncNotification.update(notification);
    m_waiting.end();
    if (isSaved) {
        accept();
        Q_EMIT saved();
    } else {
        MiscTool::showAlert(localized("Notification", "Failed to save."),
                            localized("Notification", "Please try again later."));
    }
}

void NotificationPanel::cancelAction()
{
    reject();
}

void NotificationPanel::reject()
{
    if (m_ui->cancelButton->isEnabled())
        QDialog::reject();
}
