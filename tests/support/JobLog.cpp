#include "JobLog.h"

#include "DRKeys.h"
#include "DRNotificationCenter.h"

#include <QTest>

namespace {

constexpr int patience = 60000; // ms; only a job that never ends takes so long

}

JobLog::JobLog(const DRBurn &burn)
{
    observe(DRBurnStatusChangedNotification, QVariant::fromValue(burn));
}

JobLog::JobLog(const DRErase &erase)
{
    observe(DREraseStatusChangedNotification, QVariant::fromValue(erase));
}

void JobLog::observe(const QString &notification, const QVariant &job)
{
    DRNotificationCenter::currentRunLoop().addObserver(
        this,
        [this](const DRNotification &reported) {
            const QString state = reported.userInfo.value(DRStatusStateKey).toString();
            if (m_states.isEmpty() || m_states.last() != state)
                m_states.append(state);
            m_fractions.append(reported.userInfo.value(DRStatusPercentCompleteKey).toDouble());
        },
        notification, job);
}

bool JobLog::waitForEnd() const
{
    return QTest::qWaitFor(
        [this] {
            return m_states.contains(DRStatusStateDone) || m_states.contains(DRStatusStateFailed);
        },
        patience);
}

bool JobLog::waitForState(const QString &state) const
{
    return QTest::qWaitFor([&] { return m_states.contains(state); }, patience);
}
