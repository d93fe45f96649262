// Where the parts of a bar chart lie in a frame of a given size. Everything is measured by the size
// of the title, which grows with the frame. Logical pixels, y downwards. Any thread.
#pragma once

#include "BarChartModel.h"

#include <QRectF>

class BarChartGeometry
{
public:
    struct Tick
    {
        double value = 0;
        double y = 0;
        bool isMajor = true; // labelled
    };

    BarChartGeometry(BarChartModel model, const QSizeF &frameSize);

    // Height of the title's and of the labels' letters.
    [[nodiscard]] double titleSize() const { return m_titleSize; }
    [[nodiscard]] double labelSize() const;

    [[nodiscard]] QRectF frame() const { return m_frame; }
    // Empty where the frame has no room for it.
    [[nodiscard]] QRectF plotArea() const { return m_plotArea; }
    // The room of the title above the plot area.
    [[nodiscard]] QRectF titleArea() const;
    // The room of a tick's label between the value axis and its title.
    [[nodiscard]] QRectF tickLabelArea(const Tick &tick) const;
    // The room of the value axis's title, which is turned by a quarter.
    [[nodiscard]] QRectF axisTitleArea() const;

    [[nodiscard]] double x(double category) const;
    [[nodiscard]] double y(double value) const;

    // The bar when it has grown by this part of its value. It stands on the category axis; a
    // negative one hangs below it, out of the plot area.
    [[nodiscard]] QRectF bar(int bar, double part = 1) const;
    // The room of a bar's label, which is turned by a quarter and rises from the category axis.
    [[nodiscard]] QRectF barLabelArea(int bar) const;

    // From the bottom upwards. A major interval that leaves a label no room of its own is taken
    // two, five, ten … at a time, and minor ticks that would run into each other are left out.
    [[nodiscard]] QList<Tick> valueTicks() const;

    // Of a legend this large: displaced from the frame's upper right corner; null where it would
    // leave the plot area or cover most of it.
    [[nodiscard]] QRectF legend(const QSizeF &size) const;

private:
    [[nodiscard]] double tickInterval() const;

    BarChartModel m_model;
    double m_titleSize;
    QRectF m_frame;
    QRectF m_plotArea;
    PlotRange m_categoryRange;
    PlotRange m_valueRange;
};
