#include "NotificationPopUps.h"

#include "Alerts.h"
#include "BLSync.h"
#include "DateTools.h"
#include "Session.h"

namespace {

// False where the notification has been read, or cannot be marked.
bool markRead(const NotificationJson &notification, const UserxJson &user)
{
    BLSyncNotificationReadStatus readStatus;
    if (readStatus.getCount(QStringLiteral("IsRead=1 AND NotificationID=") + notification.ID
                            + QStringLiteral(" AND UserxID=") + user.ID)
        != 0)
        return false;
    NotificationReadStatusJson status;
    status.NotificationID = notification.ID;
    status.UserxID = user.ID;
    status.IsRead = QStringLiteral("1");
    status.ReadTime = MiscTool::getNow();
    return readStatus.insert(status);
}

}

void NotificationPopUps::showNotification()
{
    const std::optional<UserxJson> user = Session::getLoggedUserxJson();
    if (!user || Session::isRoot())
        return;
    const auto companies =
        BLSyncCompany().select(QStringLiteral("Email='") + Session::getLoggerUser() + u'\'');
    if (!companies)
        return;
    const CompanyJson company = CompanyJson::getJson(companies->first());
    const auto notifications = BLSyncNotification().select(
        QStringLiteral("(BusinessContinent='' OR BusinessContinent='") + company.BusinessContinent
        + QStringLiteral("') AND (Country='' OR Country='") + company.Country
        + QStringLiteral("') AND IsEnabled=1 ORDER BY IssuedTime DESC"));
    if (!notifications)
        return;
    for (const QVariantMap &row : *notifications) {
        const NotificationJson notification = NotificationJson::getJson(row);
        if (markRead(notification, *user))
            MiscTool::showAlert(notification.Title, notification.Body);
    }
}
