#include "PlotPainting.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double roundingError = 0.01; // of widths that are sums

// Pixels of the screen in one of the painter's, which is turned for texts only.
double scaleOf(const QPainter &painter)
{
    return painter.deviceTransform().m22();
}

// In pixels of the screen.
double lineWidth(const QPainter &painter)
{
    return std::max(1.0, std::round(scaleOf(painter)));
}

// The view may begin anywhere between the pixels of the screen.
double alignedAt(const QPainter &painter, double position, double origin)
{
    const double scale = scaleOf(painter);
    const double half = lineWidth(painter) / 2;
    return (std::round(position * scale + origin - half) + half - origin) / scale;
}

double alignedX(const QPainter &painter, double x)
{
    return alignedAt(painter, x, painter.deviceTransform().dx());
}

double alignedY(const QPainter &painter, double y)
{
    return alignedAt(painter, y, painter.deviceTransform().dy());
}

void drawBackground(QPainter &painter, const QRectF &text, const QColor &color)
{
    constexpr double margin = 2;
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(text.adjusted(-margin, 0, margin, 0), margin, margin);
    painter.restore();
}

}

void PlotPainting::fillGradient(QPainter &painter, const QRectF &area, const QColor &top,
                                const QColor &bottom)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(area, gradient);
}

QPen PlotPainting::linePen(const QPainter &painter, const QColor &color)
{
    return QPen(color, lineWidth(painter) / scaleOf(painter));
}

QRectF PlotPainting::aligned(const QPainter &painter, const QRectF &area)
{
    return QRectF(QPointF(alignedX(painter, area.left()), alignedY(painter, area.top())),
                  QPointF(alignedX(painter, area.right()), alignedY(painter, area.bottom())));
}

void PlotPainting::drawHorizontal(QPainter &painter, double left, double right, double y,
                                  const QColor &color)
{
    painter.setPen(linePen(painter, color));
    const double at = alignedY(painter, y);
    painter.drawLine(QPointF(left, at), QPointF(right, at));
}

void PlotPainting::drawVertical(QPainter &painter, double x, double top, double bottom,
                                const QColor &color)
{
    painter.setPen(linePen(painter, color));
    const double at = alignedX(painter, x);
    painter.drawLine(QPointF(at, top), QPointF(at, bottom));
}

QFont PlotPainting::sizedFont(const QPainter &painter, double pixels)
{
    QFont font = painter.font();
    font.setPixelSize(std::max(1, qRound(pixels)));
    return font;
}

double PlotPainting::fittingSize(const QPainter &painter, const QStringList &texts, double width,
                                 double pixels)
{
    constexpr double leastPart = 0.6;
    const auto fits = [&](double size) {
        const QFontMetricsF metrics(sizedFont(painter, size));
        return std::ranges::all_of(texts, [&](const QString &text) {
            return metrics.horizontalAdvance(text) <= width + roundingError;
        });
    };
    double size = std::round(pixels);
    while (size - 1 >= leastPart * pixels && !fits(size))
        --size;
    return size;
}

void PlotPainting::drawText(QPainter &painter, const QRectF &area, const QString &text,
                            double pixels, Qt::Alignment alignment, const QColor &background)
{
    painter.save();
    painter.setFont(sizedFont(painter, pixels));
    const QString shown = QFontMetricsF(painter.font())
                              .elidedText(text, Qt::ElideRight, area.width() + roundingError);
    const int flags = int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine | Qt::TextDontClip;
    if (background.isValid() && !shown.isEmpty())
        drawBackground(painter, painter.boundingRect(area, flags, shown), background);
    painter.drawText(area, flags, shown);
    painter.restore();
}

void PlotPainting::drawRisingText(QPainter &painter, const QRectF &area, const QString &text,
                                  double pixels, Qt::Alignment alignment, const QColor &background)
{
    painter.save();
    painter.translate(area.bottomLeft());
    painter.rotate(-90);
    drawText(painter, {0, 0, area.height(), area.width()}, text, pixels, alignment, background);
    painter.restore();
}
