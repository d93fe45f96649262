#include "Page.h"

#include <QShowEvent>

void Page::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    if (!m_loaded) {
        m_loaded = true;
        viewDidLoad();
    }
    viewWillAppear();
}
