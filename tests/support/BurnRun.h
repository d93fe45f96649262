// A burn or an erase run to its end on the caller's thread, so that a test can step in at an
// exact moment. What is to happen at a state happens before the recorder goes on.
#pragma once

#include "DRKeys.h"
#include "Recorder.h"

#include <QMap>

class BurnRun
{
public:
    // When the job first reports that state.
    void at(const QString &state, const std::function<void()> &action)
    {
        m_actions.insert(state, action);
    }

    // Cancels the job.
    void stop() { m_stop.request_stop(); }

    [[nodiscard]] Result<> burn(Recorder &recorder, const BurnRequest &request)
    {
        JobReport report = makeReport();
        return recorder.burn(request, report);
    }
    [[nodiscard]] Result<> erase(Recorder &recorder, EraseType type)
    {
        JobReport report = makeReport();
        return recorder.erase(type, report);
    }

    // The states in the order in which they were entered, and the part done as reported each time.
    [[nodiscard]] const QStringList &states() const { return m_states; }
    [[nodiscard]] const QList<double> &fractions() const { return m_fractions; }

    // The states of a burn that ends well.
    [[nodiscard]] static QStringList wholeBurn(bool verified)
    {
        QStringList states{DRStatusStateSessionOpen, DRStatusStateTrackOpen,
                           DRStatusStateTrackWrite, DRStatusStateTrackClose,
                           DRStatusStateSessionClose};
        if (verified)
            states.append(DRStatusStateVerifying);
        return states << DRStatusStateFinishing;
    }

private:
    [[nodiscard]] JobReport makeReport()
    {
        return JobReport([this](const QVariantMap &status) { note(status); }, m_stop.get_token());
    }

    void note(const QVariantMap &status)
    {
        const QString state = status.value(DRStatusStateKey).toString();
        m_fractions.append(status.value(DRStatusPercentCompleteKey).toDouble());
        if (!m_states.isEmpty() && m_states.last() == state)
            return;
        m_states.append(state);
        if (const auto action = m_actions.value(state))
            action();
    }

    std::stop_source m_stop;
    QMap<QString, std::function<void()>> m_actions;
    QStringList m_states;
    QList<double> m_fractions;
};
