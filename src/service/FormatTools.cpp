#include "FormatTools.h"

#include <QLocale>

QString MiscTool::convertBytes(qint64 bytes)
{
    constexpr qint64 kilo = 1000;
    constexpr auto unit = static_cast<float>(kilo);
    const auto count = static_cast<float>(bytes);
    if (bytes >= kilo * kilo * kilo)
        return QString::asprintf("%.2f GB", static_cast<double>(count / (unit * unit * unit)));
    if (bytes >= kilo * kilo)
        return QString::asprintf("%.1f MB", static_cast<double>(count / (unit * unit)));
    if (bytes >= kilo)
        return QString::asprintf("%.1f KB", static_cast<double>(count / unit));
    return QString::asprintf("%lld Bytes", static_cast<long long>(bytes));
}

QString MiscTool::shortestDecimal(double number)
{
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}
