// The web pages of the service, built in. Any thread.
#pragma once

#include <QByteArray>

#include <optional>

namespace WebPages {

// The HTML of "<language>" or "<language>/NoticeOfPrelogin"; null for any other path.
[[nodiscard]] std::optional<QByteArray> page(const QByteArray &path);

}
