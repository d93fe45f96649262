#include "FormatTools.h"

#include <QLocale>

QString MiscTool::convertBytes(qint64 bytes)
{
    constexpr float unit = 1000.0F;
    const auto count = static_cast<float>(bytes);
    if (bytes >= 1000 * 1000 * 1000)
        return QString::asprintf("%.2f GB", static_cast<double>(count / (unit * unit * unit)));
    if (bytes >= 1000 * 1000)
        return QString::asprintf("%.1f MB", static_cast<double>(count / (unit * unit)));
    if (bytes >= 1000)
        return QString::asprintf("%.1f KB", static_cast<double>(count / unit));
    return QString::asprintf("%lld Bytes", static_cast<long long>(bytes));
}

QString MiscTool::shortestDecimal(double number)
{
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}
