#include "ServicePages.h"

#include "ServiceAddress.h"

QString ServicePages::getLanguageWithCountry(const QLocale &locale)
{
    const QString name = QLocale::languageToCode(locale.language()) + u'_'
                         + QLocale::territoryToCode(locale.territory());
    const bool isOwn = name == QLatin1StringView("zh_TW") || name == QLatin1StringView("zh_CN");
    return isOwn ? name : QStringLiteral("en_US");
}

QUrl ServicePages::url(const QString &page)
{
    const QString address = MiscTool::serviceURL({});
    const QString base = address.left(address.indexOf(QLatin1StringView("?servicePassword=")));
    return QUrl(MiscTool::appendPathComponent(
        MiscTool::appendPathComponent(base, getLanguageWithCountry()), page));
}
