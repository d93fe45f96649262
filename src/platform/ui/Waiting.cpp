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
    MainQueue::async(m_page, [this, work, run = ++m_runs] {
        m_loadingView->show();
        work();
        if (run == m_runs)
            end();
    });
}

bool Waiting::passes(const QList<Check> &checks)
{
    const Check *failure = firstFailure(checks);
    if (!failure)
        return true;
    end();
    tell(*failure);
    return false;
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
