#include "PlotView.h"

#include "PlotItem.h"

#include <QPainter>

PlotView::PlotView(QWidget *parent)
    : QWidget(parent)
{
    constexpr int growthTime = 500; // ms
    m_growth.setStartValue(0.0);
    m_growth.setEndValue(1.0);
    m_growth.setDuration(growthTime);
    m_growth.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_growth, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void PlotView::setPlotItem(const PlotItem *item, bool animated)
{
    m_plotItem = item;
    m_growth.stop();
    m_growth.setCurrentTime(animated ? 0 : m_growth.duration());
    if (item && animated)
        m_growth.start();
    update();
}

void PlotView::paintEvent(QPaintEvent *)
{
    if (!m_plotItem)
        return;
    QPainter painter(this);
    m_plotItem->paint(painter, m_growth.currentValue().toDouble());
}
