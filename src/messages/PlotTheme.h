// The colours of a chart apart from those of its data. Any thread.
#pragma once

#include <QColor>

struct PlotTheme
{
    QColor frameTop;
    QColor frameBottom;
    QColor plotAreaTop;
    QColor plotAreaBottom;
    QColor axis;
    QColor text;

    [[nodiscard]] static PlotTheme darkGradient()
    {
        const QColor light = QColor::fromRgbF(0.3F, 0.3F, 0.3F);
        const QColor dark = QColor::fromRgbF(0.1F, 0.1F, 0.1F);
        return {light, dark, light.darker(130), dark.darker(150), Qt::white, Qt::white};
    }
};
