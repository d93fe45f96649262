// Addresses of the web pages that the service shows to people. Any thread.
#pragma once

#include <QLocale>
#include <QUrl>

namespace ServicePages {

// The language that the pages of the service are shown in: "zh_CN", "zh_TW" or else "en_US".
[[nodiscard]] QString getLanguageWithCountry(const QLocale &locale = QLocale::system());

// <base>/<language code>[/<page>]; the base is the service's address without its password.
[[nodiscard]] QUrl url(const QString &page = {});

}
