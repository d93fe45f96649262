// A recorder that is what its maps say: for what is shown of devices in states that no virtual
// recorder can be brought into. It takes no jobs. Main thread.
#pragma once

#include "DRDevice.h"
#include "JobThread.h"
#include "Recorder.h"

class DescribedRecorder : public Recorder
{
public:
    explicit DescribedRecorder(QVariantMap status, QVariantMap info = {})
        : m_status(std::move(status))
        , m_info(std::move(info))
    {
    }

    [[nodiscard]] static DRDevice device(const QVariantMap &status, const QVariantMap &info = {})
    {
        return DRDevice(std::make_shared<DescribedRecorder>(status, info));
    }

    [[nodiscard]] QString displayName() const override { return QStringLiteral("Described"); }
    [[nodiscard]] QVariantMap info() const override { return m_info; }
    [[nodiscard]] QVariantMap status() const override { return m_status; }
    [[nodiscard]] Result<> burn(const BurnRequest &, JobReport &) override { return refusal(); }
    [[nodiscard]] Result<> erase(EraseType, JobReport &) override { return refusal(); }
    [[nodiscard]] Result<> eject() override { return refusal(); }
    [[nodiscard]] JobThread &jobs() override { return m_jobs; }

    // What status() tells from now on.
    void setStatus(const QVariantMap &status) { m_status = status; }

protected:
    bool lock() override { return true; }
    void unlock() override {}

private:
    [[nodiscard]] static Failure refusal()
    {
        return {QStringLiteral("The described recorder takes no jobs.")};
    }

    QVariantMap m_status;
    QVariantMap m_info;
    JobThread m_jobs;
};
