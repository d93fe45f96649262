#include "WebPages.h"

#include <QFile>
#include <QHash>

namespace {

QByteArray content(const QString &name)
{
    QFile file(QStringLiteral(":/web/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QHash<QByteArray, QByteArray> allPages()
{
    const QByteArray style = content(QStringLiteral("style.css"));
    QHash<QByteArray, QByteArray> pages;
    for (const char *language : {"en_US", "zh_CN", "zh_TW"})
        for (const char *page : {"home", "notice"}) {
            const QByteArray path = page == QByteArrayView("home")
                                        ? QByteArray(language)
                                        : QByteArray(language) + "/NoticeOfPrelogin";
            pages.insert(path, content(QLatin1StringView(language) + u'-' + QLatin1StringView(page)
                                       + QStringLiteral(".html"))
                                   .replace("/*style*/", style));
        }
    return pages;
}

}

std::optional<QByteArray> WebPages::page(const QByteArray &path)
{
    static const QHash<QByteArray, QByteArray> pages = allPages();
    const auto found = pages.find(path);
    return found == pages.end() ? std::nullopt : std::optional(*found);
}
