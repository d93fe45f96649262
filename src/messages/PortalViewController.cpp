#include "PortalViewController.h"

#include "ColoredBarChart.h"
#include "Form.h"
#include "Localized.h"
#include "ui_Portal.h"

PortalViewController::PortalViewController()
    : m_ui(madeForm<Ui::Portal>(this))
{
}

PortalViewController::~PortalViewController() = default;

PortalViewController *PortalViewController::getViewController()
{
    return new PortalViewController;
}

void PortalViewController::viewWillAppear()
{
    const QStringList titles{localized("Portal", "Last Month"), localized("Portal", "This Month")};
    const QStringList values{QStringLiteral("100"), QStringLiteral("40")};
    m_plotItem = std::make_unique<ColoredBarChart>();
    m_plotItem->setTitle(localized("Portal", "Portal"));
    m_plotItem->setAxisY(localized("Portal", "Amount"));
    m_plotItem->setTitleArray(titles);
    m_plotItem->setValueArray(values);
    m_plotItem->renderInView(m_ui->hostingView, {}, true);
    m_ui->hostingView->setAccessibleDescription(
        QStringLiteral("%1: %2, %3: %4")
            .arg(titles.first(), values.first(), titles.last(), values.last()));
}

// The layout has given the view its size by now.
void PortalViewController::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    if (m_plotItem)
        m_plotItem->setFrameSize(m_ui->hostingView->size());
}
