// What a bar chart shows, without how big: one bar a category, the ranges of its axes and the
// colours of its bars. Any thread.
#pragma once

#include <QColor>
#include <QStringList>

struct PlotRange
{
    double location = 0;
    double length = 0;

    [[nodiscard]] double end() const { return location + length; }
    // The range of the same centre and factor times the length.
    [[nodiscard]] PlotRange expanded(double factor) const;
};

class BarChartModel
{
public:
    static constexpr double barWidth = 0.75; // categories are 1 apart
    static constexpr double majorInterval = 10.0;

    BarChartModel() = default;
    // Values as texts, one a bar; what is no finite number counts as 0. Titles may be fewer.
    BarChartModel(QStringList titleArray, const QStringList &valueArray);

    [[nodiscard]] int barCount() const { return static_cast<int>(m_plotData.size()); }
    [[nodiscard]] QString title(int bar) const { return m_titleArray.value(bar); }
    [[nodiscard]] const QList<double> &plotData() const { return m_plotData; }

    // All bars, a little wider.
    [[nodiscard]] PlotRange categoryRange() const;
    // From 0 to a little above the largest value; never empty.
    [[nodiscard]] PlotRange valueRange() const;

    // Nine colours, over again from the tenth bar on.
    [[nodiscard]] static QColor barColor(int bar);

private:
    QStringList m_titleArray;
    QList<double> m_plotData;
};
