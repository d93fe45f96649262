// What a burn and an erase have in common: one run on the recorder's job thread, its
// notifications, its end, its cancelling. Main thread, but for what the job itself calls.
#pragma once

#include "DRDevice.h"
#include "JobReport.h"

#include <functional>
#include <memory>
#include <mutex>

class DRJob
{
public:
    explicit DRJob(DRDevice device)
        : m_device(std::move(device))
    {
    }

    [[nodiscard]] const DRDevice &device() const { return m_device; }

    // Why the job failed; empty while it runs and after success.
    [[nodiscard]] QString errorText() const;

    // Cancels the job; its end is still reported.
    void abort() { m_stop.request_stop(); }

    // True while another job of the recorder runs or waits that nobody has stopped.
    [[nodiscard]] bool isRecorderBusy() const;

    // Queues run on the recorder's job thread. What it reports is posted as notifications of that
    // name about the object; the last one is Done or Failed, whatever happens.
    // A refusal that is not empty is why the job fails without a run.
    using Run = std::function<Result<>(Recorder &, JobReport &)>;
    static void start(const std::shared_ptr<DRJob> &job, const QVariant &object,
                      const QString &notification, const QString &refusal, const Run &run);

private:
    [[nodiscard]] Result<> runGuarded(const Run &run, JobReport &report) const;

    DRDevice m_device;
    std::stop_source m_stop;
    mutable std::mutex m_mutex;
    QString m_errorText;
};
