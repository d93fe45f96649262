// A real drive. What is known of it was read when it came, when its medium changed and after each
// job, and is kept: looking at it never touches the drive. All that does runs on the one thread
// that serves libburn and all real drives.
#pragma once

#include "DeviceFile.h"
#include "JobThread.h"
#include "MediumDescription.h"
#include "Recorder.h"
#include "RecorderLock.h"

#include <functional>
#include <memory>
#include <optional>

class DiscLayout;
class LibburnDrive;

class LibburnRecorder : public Recorder
{
public:
    // devicePath: such as "/dev/sr0"; systemPath: where the system has the device; name: what it
    // is called until it could be asked.
    LibburnRecorder(const QString &devicePath, const QString &systemPath, const QString &name,
                    std::shared_ptr<JobThread> thread);

    // Has it called, on the libburn thread, when what is known has changed by a job.
    void setChanged(const std::function<void()> &changed) { m_changed = changed; }

    // Reads all there is to know, unless the drive is at work or in use by another program. Only on
    // the libburn thread.
    void refresh();

    [[nodiscard]] QString devicePath() const { return m_file.path(); }
    [[nodiscard]] bool isAtWork() const { return m_jobRuns; }

    [[nodiscard]] QString displayName() const override;
    [[nodiscard]] QVariantMap info() const override;
    [[nodiscard]] QVariantMap status() const override;
    [[nodiscard]] Result<> burn(const BurnRequest &request, JobReport &report) override;
    [[nodiscard]] Result<> erase(EraseType type, JobReport &report) override;

    // Refused while a job runs; else it is on its way when this returns.
    [[nodiscard]] Result<> eject() override;
    [[nodiscard]] JobThread &jobs() override { return *m_thread; }

protected:
    bool lock() override;
    void unlock() override { m_lock.release(); }

private:
    class Job;

    struct Known
    {
        QVariantMap info;
        std::optional<MediumDescription> medium;
        DeviceFile::Tray tray = DeviceFile::Tray::Unknown;
        double maximumSpeed = 0; // KB per second
    };

    [[nodiscard]] Known known() const;
    void learn(LibburnDrive &drive, DeviceFile::Tray tray);
    void forgetMedium(DeviceFile::Tray tray);
    [[nodiscard]] Result<> burnOn(LibburnDrive &drive, const BurnRequest &request,
                                  JobReport &report);

    const DeviceFile m_file;
    const QString m_systemPath;
    const std::shared_ptr<JobThread> m_thread;
    std::function<void()> m_changed;
    RecorderLock m_lock; // against other programs of ours
    mutable std::mutex m_mutex;
    Known m_known;
    std::atomic<bool> m_jobRuns = false;
    std::atomic<bool> m_holdsDrive = false;
    std::atomic<double> m_currentSpeed = 0; // KB per second
};
