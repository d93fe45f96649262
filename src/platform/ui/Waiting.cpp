#include "Waiting.h"

#include "Fields.h"
#include "MainQueue.h"

#include <QWidget>

#include <utility>

Waiting::Waiting(QWidget *page, QWidget *loadingView)
    : m_page(page)
    , m_loadingView(loadingView)
{
    Fields::keepPlaceWhenHidden(loadingView);
    loadingView->hide();
}

void Waiting::run(const SetAllStatus &setAllStatus, const std::function<void()> &work)
{
    if (isOn())
        return;
    m_setAllStatus = setAllStatus;
    m_focus = m_page->window()->focusWidget();
    m_setAllStatus(false);
    MainQueue::async(m_page, [this, work] {
        m_loadingView->show();
        work();
        end();
    });
}

bool Waiting::passes(const QList<Check> &checks)
{
    const Check *failure = firstFailure(checks);
    end();
    if (failure)
        tell(*failure);
    return !failure;
}

void Waiting::end()
{
    if (!isOn())
        return;
    m_loadingView->hide();
    std::exchange(m_setAllStatus, nullptr)(true);
    if (m_focus && m_focus->isVisible())
        m_focus->setFocus();
}
