#include "JobReport.h"

#include "DRKeys.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace {

constexpr qint64 showEvery = 50;     // ms between two progress reports
constexpr qint64 measureEvery = 500; // ms over which speed is measured
constexpr double msPerSecond = 1000.0;

// Returns at once when stopped.
void sleepFor(qint64 milliseconds, const std::stop_token &stop)
{
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    wake.wait_for(lock, stop, std::chrono::milliseconds(milliseconds), [] { return false; });
}

}

JobReport::JobReport(Send send, std::stop_token stop)
    : m_send(std::move(send))
    , m_stop(std::move(stop))
    , m_state(DRStatusStateNone)
{
    m_jobTimer.start();
    m_phaseTimer.start();
}

Result<> JobReport::checkStopped() const
{
    if (m_stop.stop_requested())
        return Failure{QStringLiteral("The job was cancelled.")};
    return Done{};
}

void JobReport::setState(QLatin1StringView state)
{
    m_state = state;
    send(false);
}

void JobReport::beginPhase(QLatin1StringView state, double from, double to, qint64 bytes,
                           double singleSpeed)
{
    m_state = state;
    m_from = from;
    m_to = to;
    m_bytes = bytes;
    m_done = 0;
    m_singleSpeed = singleSpeed;
    m_shownAt = m_measuredAt = m_measuredBytes = 0;
    m_speed = 0;
    m_phaseTimer.restart();
    showProgress(0);
}

Result<> JobReport::advance(qint64 bytes, double limit)
{
    m_done += bytes;
    if (Result<> kept = keepTo(limit); !kept)
        return kept;
    if (m_done >= m_bytes || m_phaseTimer.elapsed() - m_shownAt >= showEvery)
        showProgress(m_done);
    return checkStopped();
}

// Blocks are written faster than the limit allows; the wait after them makes up for it, and the
// progress shown is what a recorder of that speed would have written by then.
Result<> JobReport::keepTo(double limit)
{
    if (limit <= 0)
        return checkStopped();
    for (;;) {
        const auto due = static_cast<qint64>(static_cast<double>(m_done) / limit);
        const qint64 rest = due - m_phaseTimer.elapsed();
        if (rest <= 0 || m_stop.stop_requested())
            return checkStopped();
        sleepFor(std::min(rest, showEvery), m_stop);
        const auto allowed =
            static_cast<qint64>(limit * static_cast<double>(m_phaseTimer.elapsed()));
        showProgress(std::min(m_done, allowed));
    }
}

void JobReport::showProgress(qint64 bytes)
{
    m_shownAt = m_phaseTimer.elapsed();
    measureSpeed(bytes);
    const double part = m_bytes > 0 ? static_cast<double>(bytes) / static_cast<double>(m_bytes) : 1;
    m_fraction = std::max(m_fraction, m_from + (m_to - m_from) * std::min(part, 1.0));
    send(true);
}

void JobReport::measureSpeed(qint64 bytes)
{
    const qint64 span = m_phaseTimer.elapsed() - m_measuredAt;
    if (span <= 0 || (span < measureEvery && m_speed > 0))
        return;
    m_speed = static_cast<double>(bytes - m_measuredBytes) / static_cast<double>(span); // KB/s
    if (span >= measureEvery) {
        m_measuredAt += span;
        m_measuredBytes = bytes;
    }
}

void JobReport::finish(QLatin1StringView state)
{
    m_state = state;
    if (state == DRStatusStateDone)
        m_fraction = 1;
    send(false);
}

void JobReport::send(bool withProgress)
{
    const double elapsed = static_cast<double>(m_jobTimer.elapsed()) / msPerSecond;
    const double estimated = m_fraction > 0 ? elapsed / m_fraction : 0;
    QVariantMap info{{DRStatusProgressElapsedTime, elapsed},
                     {DRStatusProgressEstimatedTime, estimated},
                     {DRStatusProgressRemainingTime, std::max(0.0, estimated - elapsed)}};
    if (withProgress) {
        info.insert(DRStatusProgressCurrentKPS, m_speed);
        info.insert(DRStatusProgressCurrentXFactor,
                    m_singleSpeed > 0 ? m_speed / m_singleSpeed : 0);
    }
    m_send({{DRStatusStateKey, QString(m_state)},
            {DRStatusPercentCompleteKey, m_fraction},
            {DRStatusProgressInfoKey, info}});
}
