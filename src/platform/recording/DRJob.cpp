#include "DRJob.h"

#include "DRKeys.h"
#include "JobThread.h"
#include "RecordingService.h"
#include "RunningJobs.h"

#include <exception>

QString DRJob::errorText() const
{
    const std::lock_guard lock(m_mutex);
    return m_errorText;
}

Result<> DRJob::runGuarded(const Run &run, JobReport &report) const
{
    try {
        if (!m_device.isValid())
            return Failure{QStringLiteral("The recorder is not attached any more.")};
        report.setState(DRStatusStatePreparing);
        if (Result<> running = report.checkStopped(); !running)
            return running;
        return run(*m_device.recorder(), report);
    } catch (const std::exception &exception) {
        return Failure{QString::fromLocal8Bit(exception.what())};
    }
}

bool DRJob::isRecorderBusy() const
{
    Recorder *recorder = m_device.recorder().get();
    return recorder && recorder->jobs().isBusy(recorder);
}

void DRJob::start(const std::shared_ptr<DRJob> &job, const QVariant &object,
                  const QString &notification, const QString &refusal, const Run &run)
{
    DRNotificationCenter &center = DRNotificationCenter::currentRunLoop();
    const auto send = [&center, object, notification](const QVariantMap &status) {
        center.postNotification({notification, object, status});
    };
    if (job->m_device.isNull() || !refusal.isEmpty()) {
        job->m_errorText = refusal.isEmpty() ? QStringLiteral("There is no recorder.") : refusal;
        qCWarning(recordingLog) << job->m_device.displayName() << "failed:" << job->m_errorText;
        JobReport(send, {}).finish(DRStatusStateFailed);
        return;
    }
    const RunningJobs::Mark mark = RunningJobs::instance().add([job] { job->abort(); });
    Recorder *const recorder = job->m_device.recorder().get();
    const auto work = [=](const std::stop_token &stop) {
        Q_UNUSED(mark) // held until the job is done
        JobReport report(send, stop);
        const Result<> result = job->runGuarded(run, report);
        if (!result) {
            const std::lock_guard lock(job->m_mutex);
            job->m_errorText = result.error();
            qCWarning(recordingLog) << job->m_device.displayName() << "failed:" << result.error();
        }
        report.finish(result ? DRStatusStateDone : DRStatusStateFailed);
    };
    if (recorder->jobs().hasJobsBeside(recorder)) // it waits for those of others
        JobReport(send, {}).setState(DRStatusStatePreparing);
    job->m_stop = recorder->jobs().post(work, recorder);
}
