// The sheet to publish a notification or to change one; for others than the root user, to read it.
// Main thread; the service calls block it.
#pragma once

#include "BLSync.h"
#include "BundleUtil.h"
#include "CountryPopUps.h"
#include "Waiting.h"

#include <QDialog>

#include <memory>

namespace Ui {
class NotificationPanel;
}

class NotificationPanel : public QDialog
{
    Q_OBJECT

public:
    explicit NotificationPanel(QWidget *parent);
    ~NotificationPanel() override;

    // Opens the sheet for a new notification, to everybody and enabled.
    void presentNew();
    void present(const NotificationJson &notification);

    // Not while it is being saved.
    void reject() override;

Q_SIGNALS:
    // The service has taken what was entered; the sheet has gone.
    void saved();

private:
    void fill(const NotificationJson &notification);
    void chooseTarget(const QString &businessContinent, const QString &country);
    void readTarget(NotificationJson &notification) const;
    void setAllStatus(bool enabled);
    [[nodiscard]] bool verify();
    [[nodiscard]] NotificationJson getJson() const;
    void saveAction();
    void save();
    void cancelAction();

    std::unique_ptr<Ui::NotificationPanel> m_ui;
    Waiting m_waiting;
    BundleUtil m_bundleUtil;
    CountryPopUps m_countryPopUps;
    BLSyncNotification m_blSyncNotification;
    QString m_operation;             // "INSERT" or "UPDATE"
    NotificationJson m_notification; // that is updated
};
