// The page of the notifications. The root user sees all and publishes, changes and deletes them;
// others see and read the enabled ones for the continent and country of their company. Main thread;
// the service calls block it.
#pragma once

#include "BLSync.h"
#include "Page.h"
#include "Waiting.h"

#include <memory>

class NotificationPanel;

namespace Ui {
class Notification;
}

class NotificationViewController : public Page
{
    Q_OBJECT

public:
    ~NotificationViewController() override;

    [[nodiscard]] static NotificationViewController *getViewController();

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;

private:
    NotificationViewController();

    void inits();
    void wait(const std::function<void()> &work);
    void loadData();
    void load();
    void addAction();
    void updateAction();
    void deleteAction();
    void remove(const QString &id);

    std::unique_ptr<Ui::Notification> m_ui;
    Waiting m_waiting;
    BLSyncNotification m_blSyncNotification;
    QList<NotificationJson> m_data;
    NotificationPanel *m_panel; // owned by the page
};
