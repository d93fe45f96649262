// Lines and texts of charts, sharp at any scale of the screen. Main thread.
#pragma once

#include <QPainter>

namespace PlotPainting {

void fillGradient(QPainter &painter, const QRectF &area, const QColor &top, const QColor &bottom);

// A pen one logical pixel wide, in whole pixels of the screen.
[[nodiscard]] QPen linePen(const QPainter &painter, const QColor &color);
// Where a line of that width falls on whole pixels of the screen.
[[nodiscard]] QRectF aligned(const QPainter &painter, const QRectF &area);

void drawHorizontal(QPainter &painter, double left, double right, double y, const QColor &color);
void drawVertical(QPainter &painter, double x, double top, double bottom, const QColor &color);

// The painter's font with letters this high.
[[nodiscard]] QFont sizedFont(const QPainter &painter, double pixels);

// How high the letters are with which each of the texts fits into the width: this high, or lower
// where that is too wide, but never too low to be read.
[[nodiscard]] double fittingSize(const QPainter &painter, const QStringList &texts, double width,
                                 double pixels);

// One line, cut off where the area is too narrow; on a background of its own where one is given.
void drawText(QPainter &painter, const QRectF &area, const QString &text, double pixels,
              Qt::Alignment alignment = Qt::AlignHCenter, const QColor &background = {});
// The same turned by a quarter, so that it reads upwards; the area is as it is on the screen, and
// its left is at the bottom.
void drawRisingText(QPainter &painter, const QRectF &area, const QString &text, double pixels,
                    Qt::Alignment alignment, const QColor &background = {});

}
