#include "BarChartModel.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double categoryRoom = 1.05;
constexpr double valueRoom = 1.1;

double number(const QString &text)
{
    const double value = text.toDouble();
    constexpr double largest = 1e300; // from which the axis can still be computed
    return std::isfinite(value) ? std::clamp(value, -largest, largest) : 0;
}

}

PlotRange PlotRange::expanded(double factor) const
{
    return {location - length * (factor - 1) / 2, length * factor};
}

BarChartModel::BarChartModel(QStringList titleArray, const QStringList &valueArray)
    : m_titleArray(std::move(titleArray))
{
    std::ranges::transform(valueArray, std::back_inserter(m_plotData), &number);
}

PlotRange BarChartModel::categoryRange() const
{
    const int last = std::max(barCount() - 1, 0);
    return PlotRange{-barWidth / 2, last + barWidth}.expanded(categoryRoom);
}

PlotRange BarChartModel::valueRange() const
{
    const double largest = m_plotData.isEmpty() ? 0 : std::ranges::max(m_plotData);
    return {0, largest > 0 ? largest * valueRoom : majorInterval};
}

QColor BarChartModel::barColor(int bar)
{
    static const std::array colors{
        QColor(Qt::red),     QColor(Qt::green),   QColor(Qt::blue),
        QColor(Qt::yellow),  QColor(128, 0, 128), QColor(Qt::cyan),
        QColor(255, 128, 0), QColor(Qt::magenta), QColor(Qt::black),
    };
    return colors.at(static_cast<std::size_t>(bar) % colors.size());
}
