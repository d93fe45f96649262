#include "ServiceAddress.h"

#include "Preferences.h"
#include "PropertyList.h"

#include <QStandardPaths>

namespace {

struct Files
{
    QString named;
    QString ownService;
};

Files &files()
{
    static Files instance;
    return instance;
}

// In order of precedence.
QStringList configFiles()
{
    QStringList found;
    if (!files().named.isEmpty())
        found.append(files().named);
    found += QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation,
                                       QStringLiteral("maplorn-disc/Config.plist"));
    found.append(QStringLiteral(":/config/Config.plist"));
    return found;
}

QVariantMap merged(const QStringList &paths)
{
    QVariantMap dict;
    for (auto path = paths.crbegin(); path != paths.crend(); ++path)
        dict.insert(PropertyList::readMap(*path));
    return dict;
}

QString value(const QString &key)
{
    const QVariant preferred = Preferences::value(key);
    return preferred.isValid() ? preferred.toString() : MiscTool::getConfigText(key);
}

QUrl operationURL(const QString &serviceName, const char *operation)
{
    return QUrl(MiscTool::serviceURL(serviceName) + QStringLiteral("&operation=")
                + QLatin1StringView(operation));
}

}

void ServiceConfig::setFile(const QString &path)
{
    files().named = path;
}

void ServiceConfig::setOwnService(const QString &path)
{
    files().ownService = path;
}

bool ServiceConfig::namesHost()
{
    for (const QString &path : configFiles())
        if (const Result<QVariant> content = PropertyList::read(path); !content)
            qWarning().noquote() << "a configuration file is left out:" << content.error();
    return !merged(configFiles()).value(QStringLiteral("Host")).toString().isEmpty();
}

QVariantMap MiscTool::getConfigDict()
{
    return merged(configFiles() << files().ownService);
}

QString MiscTool::getConfigText(const QString &key)
{
    return getConfigDict().value(key).toString();
}

QString MiscTool::getProtocol()
{
    return value(QStringLiteral("Protocol"));
}

QString MiscTool::getHost()
{
    return value(QStringLiteral("Host"));
}

QString MiscTool::getPort()
{
    return value(QStringLiteral("Port"));
}

QString MiscTool::getContext()
{
    return value(QStringLiteral("Context"));
}

QString MiscTool::getServicePassword()
{
    return value(QStringLiteral("ServicePassword"));
}

QString MiscTool::getAppURL()
{
    return value(QStringLiteral("AppURL"));
}

QString MiscTool::appendPathComponent(const QString &base, const QString &component)
{
    if (component.isEmpty())
        return base;
    QStringView head(base);
    while (head.endsWith(u'/'))
        head.chop(1);
    QStringView tail(component);
    while (tail.startsWith(u'/'))
        tail = tail.mid(1);
    return head.toString() + u'/' + tail;
}

QString MiscTool::serverURL()
{
    return appendPathComponent(getProtocol() + QStringLiteral("://") + getHost() + u':' + getPort(),
                               getContext());
}

QString MiscTool::serviceURL(const QString &serviceName)
{
    return appendPathComponent(serverURL(), serviceName) + QStringLiteral("?servicePassword=")
           + getServicePassword();
}

QUrl MiscTool::insertURL(const QString &serviceName)
{
    return operationURL(serviceName, "INSERT");
}

QUrl MiscTool::updateURL(const QString &serviceName)
{
    return operationURL(serviceName, "UPDATE");
}

QUrl MiscTool::deleteURL(const QString &serviceName)
{
    return operationURL(serviceName, "DELETE");
}

QUrl MiscTool::selectURL(const QString &serviceName)
{
    return operationURL(serviceName, "SELECT");
}

QUrl MiscTool::getCountURL(const QString &serviceName)
{
    return operationURL(serviceName, "GET_COUNT");
}

bool MiscTool::toBOOL(const QString &text)
{
    return text == QLatin1StringView("true");
}
