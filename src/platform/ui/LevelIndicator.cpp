#include "LevelIndicator.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int barHeight = 14;
constexpr QColor roomLeft(0x1f, 0x9f, 0x8e);
constexpr QColor nearlyFull(0xe9, 0x9a, 0x2c);
constexpr QColor tooMuch(0xe2, 0x59, 0x4b);
constexpr double nearlyFullFrom = 0.9;

}

LevelIndicator::LevelIndicator(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LevelIndicator::setValue(quint64 value)
{
    m_value = value;
    setAccessibleDescription(tr("%1 %").arg(value));
    update();
}

void LevelIndicator::setMaximum(quint64 maximum)
{
    m_maximum = maximum;
    update();
}

QSize LevelIndicator::sizeHint() const
{
    return {160, barHeight};
}

QSize LevelIndicator::minimumSizeHint() const
{
    return {60, barHeight};
}

void LevelIndicator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bar = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = bar.height() / 2;
    QPainterPath outline;
    outline.addRoundedRect(bar, radius, radius);
    painter.fillPath(outline, palette().color(QPalette::Mid));

    const double part = m_maximum > 0 ? static_cast<double>(std::min(m_value, m_maximum))
                                            / static_cast<double>(m_maximum)
                                      : 0;
    QRectF filled = bar;
    filled.setWidth(bar.width() * part);
    QPainterPath level;
    level.addRect(filled);
    const QColor colour = m_value > m_maximum      ? tooMuch
                          : part >= nearlyFullFrom ? nearlyFull
                                                   : roomLeft;
    painter.fillPath(outline.intersected(level), colour);
}
