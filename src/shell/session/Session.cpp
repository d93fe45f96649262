#include "Session.h"

#include "Preferences.h"
#include "ServiceAddress.h"

namespace {

const QString isWorkingKey = QStringLiteral("IsWorking");
const QString userKey = QStringLiteral("User");
const QString userDictKey = QStringLiteral("UserDict");
const QString permissionKey = QStringLiteral("Permission");

QString text(const QString &key)
{
    return Preferences::value(key).toString();
}

bool isSignedInAs(const QString &userx)
{
    const std::optional<UserxJson> user = Session::getLoggedUserxJson();
    return user && !userx.isNull() && user->Userx == userx;
}

}

void Session::setWorking(bool working)
{
    Preferences::setValue(isWorkingKey, working);
}

bool Session::isWorking()
{
    return Preferences::value(isWorkingKey).toBool();
}

void Session::setLoggedUserx(const QString &userx)
{
    Preferences::setValue(userKey, userx);
}

QString Session::getLoggerUser()
{
    return text(userKey);
}

void Session::setLoggedUserDict(const QVariantMap &dict)
{
    Preferences::setValue(userDictKey, dict);
    setLoggedUserx(UserxJson::getJson(dict).Userx);
}

std::optional<UserxJson> Session::getLoggedUserxJson()
{
    const QVariant dict = Preferences::value(userDictKey);
    if (!dict.isValid())
        return std::nullopt;
    return UserxJson::getJson(dict.toMap());
}

void Session::setPermission(const QString &permission)
{
    Preferences::setValue(permissionKey, permission);
}

QString Session::getPermission()
{
    return text(permissionKey);
}

bool Session::hasPermission(const QString &permission)
{
    const QString stored = getPermission();
    if (stored.isNull())
        return false;
    return stored == QLatin1StringView("0") || stored.contains(permission);
}

bool Session::isRoot()
{
    return isSignedInAs(QStringLiteral("root"));
}

bool Session::isDemo()
{
    return isSignedInAs(MiscTool::getConfigText(QStringLiteral("DemoAccount")));
}

void Session::clear()
{
    Preferences::remove(userDictKey);
    Preferences::remove(permissionKey);
}
