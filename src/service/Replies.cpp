#include "Replies.h"

#include <algorithm>
#include <limits>

QString MiscTool::replyText(const std::optional<QByteArray> &reply)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!reply || !std::ranges::all_of(*reply, isAscii))
        return {};
    return QString::fromLatin1(*reply);
}

qint64 MiscTool::leadingNumber(const QString &text)
{
    qint64 number = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            break;
        const int digit = c.unicode() - u'0';
        if (number > (std::numeric_limits<qint64>::max() - digit) / 10)
            return std::numeric_limits<qint64>::max();
        number = number * 10 + digit;
    }
    return number;
}
