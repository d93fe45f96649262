#include "BarChartGeometry.h"

#include <algorithm>
#include <cmath>

namespace {

// In title sizes.
constexpr QMarginsF padding(2.5, 1.25, 1.0, 1.0);
constexpr double axisTitleOffset = 1.25;
constexpr double barLabelOffset = 0.375;
constexpr double legendDisplacement = 2.625;
constexpr double labelPart = 0.6;
constexpr double tickLabelGap = 0.2;

constexpr double labelPitch = 1.3;     // label sizes from a tick's label to the next
constexpr double leastMinorPitch = 12; // pixels
constexpr double legendPart = 0.6;     // of the plot area, at most

// 16 pixels in a frame of 300 by 200, 28 in one of 1200 by 800.
double titleSizeIn(const QSizeF &frame)
{
    constexpr double widthToHeight = 1.5;
    const double height = std::min(frame.height(), frame.width() / widthToHeight);
    return std::clamp(12 + height / 50, 12.0, 40.0);
}

QRectF inside(const QRectF &frame, const QMarginsF &margins)
{
    const QRectF area = frame.marginsRemoved(margins);
    return area.isValid() ? area : QRectF();
}

}

BarChartGeometry::BarChartGeometry(BarChartModel model, const QSizeF &frameSize)
    : m_model(std::move(model))
    , m_titleSize(titleSizeIn(frameSize))
    , m_frame({}, frameSize)
    , m_plotArea(inside(m_frame, padding * m_titleSize))
    , m_categoryRange(m_model.categoryRange())
    , m_valueRange(m_model.valueRange())
{
}

double BarChartGeometry::labelSize() const
{
    return labelPart * m_titleSize;
}

QRectF BarChartGeometry::titleArea() const
{
    return {0, 0, m_frame.width(), m_plotArea.top()};
}

QRectF BarChartGeometry::tickLabelArea(const Tick &tick) const
{
    const double height = labelPitch * labelSize();
    return {m_plotArea.left() - axisTitleOffset * m_titleSize, tick.y - height / 2,
            (axisTitleOffset - tickLabelGap) * m_titleSize, height};
}

QRectF BarChartGeometry::axisTitleArea() const
{
    const double right = m_plotArea.left() - axisTitleOffset * m_titleSize;
    return {right - m_titleSize, m_plotArea.top(), m_titleSize, m_plotArea.height()};
}

double BarChartGeometry::x(double category) const
{
    return m_plotArea.left()
           + (category - m_categoryRange.location) / m_categoryRange.length * m_plotArea.width();
}

double BarChartGeometry::y(double value) const
{
    return m_plotArea.bottom()
           - (value - m_valueRange.location) / m_valueRange.length * m_plotArea.height();
}

QRectF BarChartGeometry::bar(int bar, double part) const
{
    constexpr double half = BarChartModel::barWidth / 2;
    const double value = m_model.plotData().at(bar) * part;
    return QRectF(QPointF(x(bar - half), y(value)), QPointF(x(bar + half), y(0))).normalized();
}

QRectF BarChartGeometry::barLabelArea(int bar) const
{
    const double height = labelPitch * labelSize();
    return {x(bar) - height / 2, m_plotArea.top(), height,
            m_plotArea.height() - barLabelOffset * m_titleSize};
}

double BarChartGeometry::tickInterval() const
{
    const double wanted =
        labelPitch * labelSize() / std::max(m_plotArea.height(), 1.0) * m_valueRange.length;
    double interval = BarChartModel::majorInterval;
    while (true) {
        for (const double times : {1.0, 2.0, 5.0})
            if (interval * times >= wanted)
                return interval * times;
        interval *= 10;
    }
}

QList<BarChartGeometry::Tick> BarChartGeometry::valueTicks() const
{
    QList<Tick> ticks;
    if (m_plotArea.isEmpty())
        return ticks;
    const double interval = tickInterval();
    const bool hasMinor = y(0) - y(interval / 2) >= leastMinorPitch;
    for (int half = 0;; ++half) {
        const double value = half * interval / 2;
        if (value > m_valueRange.end() * (1 + 1e-9)) // whatever rounding did
            return ticks;
        const bool isMajor = half % 2 == 0;
        if (isMajor || hasMinor)
            ticks.append({value, y(value), isMajor});
    }
}

QRectF BarChartGeometry::legend(const QSizeF &size) const
{
    const double displacement = legendDisplacement * m_titleSize;
    const QRectF box(m_frame.right() - displacement - size.width(), displacement, size.width(),
                     size.height());
    const bool isTooLarge = box.width() > legendPart * m_plotArea.width()
                            || box.height() > legendPart * m_plotArea.height();
    return m_plotArea.contains(box) && !isTooLarge ? box : QRectF();
}
