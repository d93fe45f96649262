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
constexpr double halfFull = 0.5;

}

LevelIndicator::LevelIndicator(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LevelIndicator::setValue(quint64 value)
{
    m_value = value;
    tellLevel();
}

void LevelIndicator::setMaximum(quint64 maximum)
{
    m_maximum = maximum;
    tellLevel();
}

void LevelIndicator::setFullIsGood(bool fullIsGood)
{
    m_fullIsGood = fullIsGood;
    update();
}

void LevelIndicator::tellLevel()
{
    constexpr quint64 percent = 100;
    setAccessibleDescription(tr("%1 %").arg(m_maximum > 0 ? m_value * percent / m_maximum : 0));
    update();
}

double LevelIndicator::part() const
{
    return m_maximum > 0
               ? static_cast<double>(std::min(m_value, m_maximum)) / static_cast<double>(m_maximum)
               : 0;
}

QColor LevelIndicator::colour() const
{
    if (m_fullIsGood)
        return part() >= nearlyFullFrom ? roomLeft : part() >= halfFull ? nearlyFull : tooMuch;
    return m_value > m_maximum ? tooMuch : part() >= nearlyFullFrom ? nearlyFull : roomLeft;
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

    QRectF filled = bar;
    filled.setWidth(bar.width() * part());
    QPainterPath level;
    level.addRect(filled);
    painter.fillPath(outline.intersected(level), colour());
}
