// A recorder that burns into files, so that every page works on a machine without a drive. Its
// medium lies in the folder medium/: medium.plist, and disc.iso once data are burned. Written
// media that are ejected are kept in the folder ejected/. Any thread, as the port says.
#pragma once

#include "JobThread.h"
#include "Recorder.h"
#include "RecorderLock.h"
#include "VirtualMedium.h"

#include <memory>

class QFile;
class TrackContent;

class VirtualRecorder : public Recorder
{
public:
    // The recorder kept in a folder; a new one holds a blank CD-RW.
    [[nodiscard]] static Result<std::shared_ptr<VirtualRecorder>> create(const QString &folder);

    // Where the virtual recorder of this user is kept.
    [[nodiscard]] static QString defaultFolder();

    [[nodiscard]] QString folder() const { return m_folder; }
    [[nodiscard]] QString mediumFolder() const;

    [[nodiscard]] QString displayName() const override;
    [[nodiscard]] QVariantMap info() const override;
    [[nodiscard]] QVariantMap status() const override;
    [[nodiscard]] Result<> burn(const BurnRequest &request, JobReport &report) override;
    [[nodiscard]] Result<> erase(EraseType type, JobReport &report) override;
    [[nodiscard]] Result<> eject() override;
    [[nodiscard]] QStringList insertableMedia() const override;
    [[nodiscard]] Result<> insertBlankMedium(const QString &type) override;
    [[nodiscard]] JobThread &jobs() override { return m_jobs; }

protected:
    bool lock() override { return m_lock.acquire(); }
    void unlock() override { m_lock.release(); }

private:
    class Job;

    explicit VirtualRecorder(const QString &folder);

    [[nodiscard]] bool isBusy() const;
    [[nodiscard]] Result<> changeMedium(const std::function<Result<>()> &change);
    [[nodiscard]] Result<> shelve() const;
    [[nodiscard]] Result<> checkMedium(const VirtualMedium &medium) const;
    [[nodiscard]] Result<> writeDisc(const TrackContent &track, const BurnRequest &request,
                                     VirtualMedium medium, JobReport &report);
    [[nodiscard]] Result<> writeAndVerify(const TrackContent &track, const BurnRequest &request,
                                          const VirtualMedium &medium, QFile &file,
                                          JobReport &report);
    [[nodiscard]] Advance step(JobReport &report, const VirtualMedium &medium, double limit);
    [[nodiscard]] Result<> overwriteContent(const VirtualMedium &medium, JobReport &report);
    void removeContent() const;

    QString m_folder;
    RecorderLock m_lock;
    std::atomic<bool> m_jobRuns = false;
    std::atomic<double> m_currentSpeed = 0; // KB per second
    JobThread m_jobs;                       // last: its jobs use all of the above
};
