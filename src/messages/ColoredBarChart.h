// A chart of vertical bars, each in a colour of its own, with a legend. Main thread.
#pragma once

#include "BarChartModel.h"
#include "PlotItem.h"

#include <memory>

class BarChartGeometry;

class ColoredBarChart : public PlotItem
{
public:
    ColoredBarChart();

    [[nodiscard]] static std::unique_ptr<PlotItem> make();

    // The title of the value axis.
    void setAxisY(const QString &axisY);
    // One text a bar: its label, its value.
    void setTitleArray(const QStringList &titleArray);
    void setValueArray(const QStringList &valueArray);

    [[nodiscard]] const QList<double> &plotData() const { return m_model.plotData(); }

protected:
    void paintPlot(QPainter &painter, const PlotTheme &theme, double part) const override;

private:
    void paintFrame(QPainter &painter, const BarChartGeometry &geometry,
                    const PlotTheme &theme) const;
    void paintGrid(QPainter &painter, const BarChartGeometry &geometry) const;
    void paintBars(QPainter &painter, const BarChartGeometry &geometry, const PlotTheme &theme,
                   double part) const;
    void paintValueAxis(QPainter &painter, const BarChartGeometry &geometry,
                        const PlotTheme &theme) const;
    static void paintTickLabels(QPainter &painter, const BarChartGeometry &geometry);
    void paintLegend(QPainter &painter, const BarChartGeometry &geometry) const;

    QString m_axisY;
    QStringList m_titleArray;
    QStringList m_valueArray;
    BarChartModel m_model;
};
