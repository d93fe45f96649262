#include "PlotItem.h"

#include "PlotView.h"

PlotItem::PlotItem(QString title, QString section, PlotTheme theme)
    : m_title(std::move(title))
    , m_section(std::move(section))
    , m_ownTheme(std::move(theme))
    , m_theme(m_ownTheme)
{
}

PlotItem::~PlotItem()
{
    leaveView();
}

void PlotItem::setTitle(const QString &title)
{
    m_title = title;
    update();
}

void PlotItem::renderInView(PlotView *view, const std::optional<PlotTheme> &theme, bool animated)
{
    if (m_view != view)
        leaveView();
    m_view = view;
    m_theme = theme.value_or(m_ownTheme);
    m_frameSize = view->size();
    view->setPlotItem(this, animated);
}

void PlotItem::setFrameSize(const QSizeF &size)
{
    m_frameSize = size;
    update();
}

void PlotItem::paint(QPainter &painter, double part) const
{
    paintPlot(painter, m_theme, part);
}

void PlotItem::leaveView()
{
    if (m_view && m_view->plotItem() == this)
        m_view->setPlotItem(nullptr, false);
}

void PlotItem::update()
{
    if (m_view)
        m_view->update();
}
