// How a job tells what it does: its state, how far it is, how fast, and how long it takes. The
// fraction done never goes backwards, and speed is that of the last half second. The job's thread.
#pragma once

#include "Result.h"

#include <QElapsedTimer>
#include <QLatin1StringView>
#include <QVariantMap>

#include <functional>
#include <stop_token>

class JobReport
{
public:
    // Sends one status map (DRStatus… keys) to the observers; called on the job's thread.
    using Send = std::function<void(const QVariantMap &status)>;

    JobReport(Send send, std::stop_token stop);

    [[nodiscard]] const std::stop_token &stopToken() const { return m_stop; }

    // Failure once the job is cancelled.
    [[nodiscard]] Result<> checkStopped() const;

    // Enters a state that is no measured phase.
    void setState(QLatin1StringView state);

    // Enters a measured phase of that many bytes, which is the given part of the whole job
    // (0.0 to 1.0). singleSpeed: KB per second at 1x, for the factor shown.
    void beginPhase(QLatin1StringView state, double from, double to, qint64 bytes,
                    double singleSpeed);

    // More of the phase's bytes are done. Keeps to limit KB per second by waiting (0: no limit);
    // fails once the job is cancelled.
    [[nodiscard]] Result<> advance(qint64 bytes, double limit = 0);

    // Speed of the last half second, KB per second.
    [[nodiscard]] double currentSpeed() const { return m_speed; }

    // Sends the job's last state, DRStatusStateDone or DRStatusStateFailed.
    void finish(QLatin1StringView state);

private:
    [[nodiscard]] Result<> keepTo(double limit);
    void showProgress(qint64 bytes);
    void measureSpeed(qint64 bytes);
    void send(bool withProgress);

    Send m_send;
    std::stop_token m_stop;
    QElapsedTimer m_jobTimer;
    QLatin1StringView m_state;
    double m_fraction = 0;

    QElapsedTimer m_phaseTimer;
    double m_from = 0;
    double m_to = 0;
    qint64 m_bytes = 0;
    qint64 m_done = 0;
    double m_singleSpeed = 0;

    qint64 m_shownAt = 0;    // ms of the phase
    qint64 m_measuredAt = 0; // ms of the phase
    qint64 m_measuredBytes = 0;
    double m_speed = 0;
};
