// A page that waits for the service: its controls are disabled at once, its indicator runs, and the
// work begins when that has been drawn. At the end the controls come back, and the focus with them.
// Main thread.
#pragma once

#include "Checks.h"

#include <QPointer>

class Waiting
{
public:
    using SetAllStatus = std::function<void(bool enabled)>;

    // Work is dropped where the page has gone; the indicator is hidden but while it runs, and keeps
    // its place.
    Waiting(QWidget *page, QWidget *loadingView);

    // Does nothing while it is on.
    void run(const SetAllStatus &setAllStatus, const std::function<void()> &work);
    [[nodiscard]] bool isOn() const { return m_setAllStatus != nullptr; }

    // Within the work: runs the checks; the waiting ends before one that fails is told.
    [[nodiscard]] bool passes(const QList<Check> &checks);

    // Before the end of the work, which ends it anyway; the work may then run more.
    void end();

private:
    QWidget *m_page;
    QWidget *m_loadingView;
    SetAllStatus m_setAllStatus; // null while it is off
    QPointer<QWidget> m_focus;   // that had the focus before
    int m_runs = 0;
};
