// A real drive. What is known of it was read when it came, when its medium changed and after each
// job, and is kept: looking at it never touches the drive. All that does runs on the one thread
// that serves libburn and all real drives.
#pragma once

#include "DeviceFile.h"
#include "JobThread.h"
#include "MediumDescription.h"
#include "Recorder.h"
#include "RecorderLock.h"
#include "UdevDescription.h"

#include <functional>
#include <memory>
#include <optional>

class DiscLayout;
class LibburnDrive;

class LibburnRecorder : public Recorder
{
public:
    // devicePath: such as "/dev/sr0". Until the drive could be asked, it is what the system says.
    LibburnRecorder(const QString &devicePath, const UdevDescription &told,
                    std::shared_ptr<JobThread> thread);

    // The system has found out something else. True where its medium is another one than that which
    // is known. Any thread.
    bool setTold(const UdevDescription &told);

    // Goes by what the system says of the medium, where that is newer than what the drive has said,
    // until the drive is asked. Any thread.
    void takeForTold();

    // There is another recorder of this name. Any thread.
    void setOneOfSeveral(bool oneOfSeveral) { m_oneOfSeveral = oneOfSeveral; }
    [[nodiscard]] QString modelName() const;

    // Has it called, on the libburn thread, when what is known has changed by a job or an ejection.
    void setChanged(const std::function<void()> &changed) { m_changed = changed; }

    // Reads all there is to know. Of a drive that may not be asked now only what the system says is
    // known then. Only on the libburn thread.
    void refresh();

    // Whether the drive is to be asked again: it could not be, or its medium was being spun up.
    [[nodiscard]] bool isToBeAskedAgain() const { return m_toBeAskedAgain; }

    [[nodiscard]] QString devicePath() const { return m_file.path(); }
    [[nodiscard]] bool isAtWork() const { return m_jobRuns; }

    [[nodiscard]] QString displayName() const override;
    [[nodiscard]] QVariantMap info() const override;
    [[nodiscard]] QVariantMap status() const override;
    [[nodiscard]] int mediumChanges() const override { return m_mediumChanges; }
    [[nodiscard]] Result<> burn(const BurnRequest &request, JobReport &report) override;
    [[nodiscard]] Result<> erase(EraseType type, JobReport &report) override;

    // Refused while the drive cannot be used, and while a job runs on any real drive; else it is on
    // its way when this returns.
    [[nodiscard]] Result<> eject() override;
    [[nodiscard]] JobThread &jobs() override { return *m_thread; }

protected:
    bool lock() override;
    void unlock() override { m_lock.release(); }

private:
    class Hold;
    class Job;

    struct Known
    {
        QVariantMap info;
        std::optional<MediumDescription> medium;
        DeviceFile::Tray tray = DeviceFile::Tray::Unknown;
        double maximumSpeed = 0; // KB per second
        bool isKeptFromUs = false;
    };

    [[nodiscard]] Known known() const;
    void learn(LibburnDrive &drive, DeviceFile::Tray tray);
    void forgetMedium(DeviceFile::Tray tray);
    void fallBack(const Failure &reason);
    void giveUp(const Failure &reason);
    [[nodiscard]] Result<> probe(); // any thread
    [[nodiscard]] Result<> ejectNow(const std::stop_token &stop);
    [[nodiscard]] Result<> burnOn(LibburnDrive &drive, const BurnRequest &request,
                                  JobReport &report);

    const DeviceFile m_file;
    const std::shared_ptr<JobThread> m_thread;
    std::function<void()> m_changed;
    RecorderLock m_lock; // against other programs of ours
    mutable std::mutex m_mutex;
    UdevDescription m_told;
    bool m_isToldLatest = true; // it is newer than what was learned from the drive
    Known m_known;
    int m_failedOpenings = 0; // since the system last said something
    std::mutex m_probeMutex;  // guards m_holdsDrive and the probing of the device file
    bool m_holdsDrive = false;
    std::atomic<bool> m_oneOfSeveral = false;
    std::atomic<bool> m_jobRuns = false;
    std::atomic<bool> m_toBeAskedAgain = false;
    std::atomic<int> m_mediumChanges = 0;
    std::atomic<double> m_currentSpeed = 0; // KB per second
};
