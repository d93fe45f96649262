// What the service's replies mean. Any thread.
#pragma once

#include <QString>

#include <optional>

namespace MiscTool {

// The reply as text; null where none came or where it is not ASCII.
[[nodiscard]] QString replyText(const std::optional<QByteArray> &reply);

// The number that the text begins with, 0 without one; the largest there is where the digits make
// a larger one.
[[nodiscard]] qint64 leadingNumber(const QString &text);

}
