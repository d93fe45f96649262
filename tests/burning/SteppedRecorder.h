// A recorder with a blank CD whose burn does what the test says, when it says it, and does not heed
// an abort. Every burn that was started must be ended. Main thread.
#pragma once

#include "DRKeys.h"
#include "DescribedRecorder.h"

#include <QSemaphore>

#include <atomic>
#include <mutex>

class SteppedRecorder : public DescribedRecorder
{
public:
    SteppedRecorder()
        : DescribedRecorder(medium(), {{DRDeviceWriteCapabilitiesKey,
                                        QVariantMap{{DRDeviceCanWriteCDKey, true},
                                                    {DRDeviceCanWriteCDTextKey, true}}}})
    {
    }

    // The state of a recorder that holds a medium.
    [[nodiscard]] static QVariantMap medium(QLatin1StringView mediaClass = DRDeviceMediaClassCD,
                                            bool isBlank = true, qint64 capacity = 10000)
    {
        return {{DRDeviceMediaStateKey, QString(DRDeviceMediaStateMediaPresent)},
                {DRDeviceMediaInfoKey,
                 QVariantMap{{DRDeviceMediaClassKey, QString(mediaClass)},
                             {DRDeviceMediaIsBlankKey, isBlank},
                             {DRDeviceMediaFreeSpaceKey, QVariant::fromValue(DRMSF(capacity))},
                             {DRDeviceBurnSpeedsKey, QVariantList{705.6, 1411.2}}}}};
    }

    [[nodiscard]] Result<> burn(const BurnRequest &request, JobReport &report) override
    {
        m_request = request;
        m_begun = true;
        constexpr int patience = 60000; // ms
        while (m_ready.tryAcquire(1, patience)) {
            const Step step = next();
            if (!step.error.isEmpty())
                return Failure{step.error};
            if (step.state.isEmpty())
                return Done{};
            report.setState(step.state);
        }
        return Failure{QStringLiteral("The test did not end its burn.")};
    }

    [[nodiscard]] bool hasBegun() const { return m_begun; }

    // What the page asked for; once the burn has begun.
    [[nodiscard]] const BurnRequest &request() const { return m_request; }

    void enter(QLatin1StringView state) { add({state, {}}); }
    void end() { add({}); }
    void fail(const QString &error) { add({{}, error}); }

private:
    struct Step
    {
        QLatin1StringView state;
        QString error;
    };

    void add(const Step &step)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_steps.append(step);
        }
        m_ready.release();
    }

    Step next()
    {
        const std::lock_guard lock(m_mutex);
        return m_steps.takeFirst();
    }

    std::mutex m_mutex;
    QList<Step> m_steps;
    QSemaphore m_ready;
    BurnRequest m_request;
    std::atomic_bool m_begun = false;
};
