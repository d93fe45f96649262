#include "ColoredBarChart.h"

#include "BarChartGeometry.h"
#include "PlotGallery.h"
#include "PlotPainting.h"

#include <QLocale>
#include <QPainterPath>

#include <array>

namespace {

constexpr float majorOpacity = 0.75F;
constexpr float minorOpacity = 0.25F;
// Behind a bar's label, which is white and may lie on any of the colours and on grid lines.
constexpr QColor labelBackground(0, 0, 0, 130);
constexpr double barCornerRadius = 4.0;
constexpr double legendCornerRadius = 10.0;
const QColor legendFill = QColor::fromRgbF(0.15F, 0.15F, 0.15F);

[[maybe_unused]] const bool isRegistered =
    PlotGallery::instance().registerPlotItem(&ColoredBarChart::make);

QColor white(float opacity)
{
    return QColor::fromRgbF(1, 1, 1, opacity);
}

// From the bar's colour on its left to black on its right, so that it is the same behind the whole
// of the label, however short the bar.
QBrush barFill(const QRectF &bar, int index)
{
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    gradient.setColorAt(0, BarChartModel::barColor(index));
    gradient.setColorAt(1, Qt::black);
    return gradient;
}

// Rounded at its top.
QPainterPath barOutline(const QRectF &bar)
{
    const double radius = std::min({barCornerRadius, bar.width() / 2, bar.height()});
    const QSizeF corner(2 * radius, 2 * radius);
    QPainterPath outline(bar.bottomLeft());
    outline.arcTo(QRectF(bar.topLeft(), corner), 180, -90);
    outline.arcTo(QRectF(bar.topRight() - QPointF(2 * radius, 0), corner), 90, -90);
    outline.lineTo(bar.bottomRight());
    outline.closeSubpath();
    return outline;
}

// As short as the room beside the axis wants it.
QString tickLabel(double value)
{
    constexpr std::array units{"", "k", "M", "G", "T"};
    constexpr double thousand = 1000;
    constexpr int digits = 4;
    std::size_t unit = 0;
    for (; value >= thousand && unit + 1 < units.size(); ++unit)
        value /= thousand;
    return QLocale().toString(value, 'g', digits) + QLatin1StringView(units.at(unit));
}

}

ColoredBarChart::ColoredBarChart()
    : PlotItem(QStringLiteral("Colored Bar Chart"), QStringLiteral("Bar Plots"),
               PlotTheme::darkGradient())
{
}

std::unique_ptr<PlotItem> ColoredBarChart::make()
{
    return std::make_unique<ColoredBarChart>();
}

void ColoredBarChart::setAxisY(const QString &axisY)
{
    m_axisY = axisY;
    update();
}

void ColoredBarChart::setTitleArray(const QStringList &titleArray)
{
    m_titleArray = titleArray;
    m_model = BarChartModel(m_titleArray, m_valueArray);
    update();
}

void ColoredBarChart::setValueArray(const QStringList &valueArray)
{
    m_valueArray = valueArray;
    m_model = BarChartModel(m_titleArray, m_valueArray);
    update();
}

void ColoredBarChart::paintPlot(QPainter &painter, const PlotTheme &theme, double part) const
{
    const BarChartGeometry geometry(m_model, frameSize());
    painter.setRenderHint(QPainter::Antialiasing);
    paintFrame(painter, geometry, theme);
    painter.save();
    painter.setClipRect(geometry.plotArea());
    paintGrid(painter, geometry);
    paintBars(painter, geometry, theme, part);
    painter.restore();
    paintValueAxis(painter, geometry, theme);
    paintLegend(painter, geometry);
}

void ColoredBarChart::paintFrame(QPainter &painter, const BarChartGeometry &geometry,
                                 const PlotTheme &theme) const
{
    PlotPainting::fillGradient(painter, geometry.frame(), theme.frameTop, theme.frameBottom);
    PlotPainting::fillGradient(painter, geometry.plotArea(), theme.plotAreaTop,
                               theme.plotAreaBottom);
    painter.setPen(theme.text);
    const QRectF area = geometry.titleArea();
    PlotPainting::drawText(
        painter, area, title(),
        PlotPainting::fittingSize(painter, {title()}, area.width(), geometry.titleSize()));
}

void ColoredBarChart::paintGrid(QPainter &painter, const BarChartGeometry &geometry) const
{
    const QRectF area = geometry.plotArea();
    for (const BarChartGeometry::Tick &tick : geometry.valueTicks())
        PlotPainting::drawHorizontal(painter, area.left(), area.right(), tick.y,
                                     white(tick.isMajor ? majorOpacity : minorOpacity));
    for (int bar = 0; bar < m_model.barCount(); ++bar)
        PlotPainting::drawVertical(painter, geometry.x(bar), area.top(), area.bottom(),
                                   white(majorOpacity));
}

void ColoredBarChart::paintBars(QPainter &painter, const BarChartGeometry &geometry,
                                const PlotTheme &theme, double part) const
{
    for (int i = 0; i < m_model.barCount(); ++i) {
        const QRectF bar = PlotPainting::aligned(painter, geometry.bar(i, part));
        painter.setPen(PlotPainting::linePen(painter, Qt::white));
        painter.setBrush(barFill(bar, i));
        painter.drawPath(barOutline(bar));
    }
    if (m_model.barCount() == 0)
        return;
    painter.setPen(theme.text);
    const double size = PlotPainting::fittingSize(
        painter, m_titleArray, geometry.barLabelArea(0).height(), geometry.labelSize());
    for (int i = 0; i < m_model.barCount(); ++i)
        PlotPainting::drawRisingText(painter, geometry.barLabelArea(i), m_model.title(i), size,
                                     Qt::AlignLeft, labelBackground);
}

void ColoredBarChart::paintValueAxis(QPainter &painter, const BarChartGeometry &geometry,
                                     const PlotTheme &theme) const
{
    const QRectF area = geometry.plotArea();
    PlotPainting::drawVertical(painter, area.left(), area.top(), area.bottom(), theme.axis);
    PlotPainting::drawHorizontal(painter, area.left(), area.right(), geometry.y(0), theme.axis);
    painter.setPen(theme.text);
    paintTickLabels(painter, geometry);
    const QRectF titleArea = geometry.axisTitleArea();
    PlotPainting::drawRisingText(
        painter, titleArea, m_axisY,
        PlotPainting::fittingSize(painter, {m_axisY}, titleArea.height(), geometry.labelSize()),
        Qt::AlignHCenter);
}

void ColoredBarChart::paintTickLabels(QPainter &painter, const BarChartGeometry &geometry)
{
    QStringList labels;
    QList<QRectF> areas;
    for (const BarChartGeometry::Tick &tick : geometry.valueTicks()) {
        if (tick.isMajor) {
            labels.append(tickLabel(tick.value));
            areas.append(geometry.tickLabelArea(tick));
        }
    }
    if (areas.isEmpty())
        return;
    const double size =
        PlotPainting::fittingSize(painter, labels, areas.first().width(), geometry.labelSize());
    for (int i = 0; i < areas.size(); ++i)
        PlotPainting::drawText(painter, areas.at(i), labels.at(i), size, Qt::AlignRight);
}

void ColoredBarChart::paintLegend(QPainter &painter, const BarChartGeometry &geometry) const
{
    const double line = geometry.labelSize() * 1.5;
    const double margin = geometry.labelSize();
    const QFontMetricsF metrics(PlotPainting::sizedFont(painter, geometry.labelSize()));
    constexpr double widestText = 12; // letters high
    double textWidth = 0;
    for (int i = 0; i < m_model.barCount(); ++i)
        textWidth = std::max(textWidth, metrics.horizontalAdvance(m_model.title(i)));
    textWidth = std::min(textWidth, widestText * geometry.labelSize());
    const QSizeF size(textWidth + line + 2 * margin, m_model.barCount() * line + margin);
    const QRectF box = geometry.legend(size);
    if (box.isNull())
        return;
    painter.setPen(PlotPainting::linePen(painter, Qt::white));
    painter.setBrush(legendFill);
    painter.drawRoundedRect(PlotPainting::aligned(painter, box), legendCornerRadius,
                            legendCornerRadius);
    const double letters =
        PlotPainting::fittingSize(painter, m_titleArray, textWidth, geometry.labelSize());
    for (int i = 0; i < m_model.barCount(); ++i) {
        const QRectF row(box.left() + margin, box.top() + margin / 2 + i * line,
                         size.width() - 2 * margin, line);
        const double swatchSize = geometry.labelSize() * 0.9;
        QRectF swatch(0, 0, swatchSize, swatchSize);
        swatch.moveCenter({row.left() + swatchSize / 2, row.center().y()});
        painter.fillRect(swatch, barFill(swatch, i));
        painter.setPen(Qt::white);
        PlotPainting::drawText(painter, row.adjusted(line, 0, 0, 0), m_model.title(i), letters,
                               Qt::AlignLeft);
    }
}
