// A recorder that burns into files, so that every page works on a machine without a drive. Its
// medium lies in the folder medium/: medium.plist, and disc.iso once data are burned, or disc.bin
// with disc.cue, disc.toc and disc.cdt (CD-Text packs) once audio is. Written media that are
// ejected are kept in the folder ejected/. Any thread, as the port says.
#pragma once

#include "JobThread.h"
#include "Recorder.h"
#include "RecorderLock.h"
#include "VirtualTray.h"

#include <memory>

class QFile;
class DiscLayout;

class VirtualRecorder : public Recorder
{
public:
    // The recorder kept in a folder; a new one holds a blank CD-RW.
    [[nodiscard]] static Result<std::shared_ptr<VirtualRecorder>> create(const QString &folder);

    // Where the virtual recorder of this user is kept.
    [[nodiscard]] static QString defaultFolder();

    [[nodiscard]] QString folder() const { return m_tray.folder(); }
    [[nodiscard]] QString mediumFolder() const { return m_tray.mediumFolder(); }

    // The medium in it; null where there is none.
    [[nodiscard]] std::optional<VirtualMedium> medium() const { return m_tray.medium(); }

    // What eject() and insertBlankMedium() do, telling where a written disc that was in the
    // recorder is kept now; empty for any other.
    [[nodiscard]] Result<QString> takeOut();
    [[nodiscard]] Result<QString> insertBlank(const MediaType &type);

    [[nodiscard]] bool isVirtual() const override { return true; }
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
    [[nodiscard]] Result<QString> changeMedium(const std::function<Result<QString>()> &change);
    [[nodiscard]] Result<> checkReadyToFinish(const VirtualMedium &medium,
                                              const JobReport &report) const;
    [[nodiscard]] Result<> checkMedium(const VirtualMedium &medium) const;
    [[nodiscard]] Result<DiscLayout> layoutFor(const BurnRequest &request,
                                               const VirtualMedium &medium,
                                               const JobReport &report) const;
    [[nodiscard]] Result<> writeDisc(const DiscLayout &layout, const BurnRequest &request,
                                     VirtualMedium medium, JobReport &report);
    [[nodiscard]] Result<> writeAndVerify(const DiscLayout &layout, const BurnRequest &request,
                                          const VirtualMedium &medium, QFile &file,
                                          JobReport &report);
    template <typename Content>
    [[nodiscard]] Result<> writeAndVerify(Content content, const BurnRequest &request,
                                          const VirtualMedium &medium, QFile &file,
                                          JobReport &report);
    [[nodiscard]] Result<> storeSheets(const DiscLayout &layout) const;
    [[nodiscard]] Advance step(JobReport &report, const VirtualMedium &medium, double limit);
    [[nodiscard]] Result<> overwriteContent(const VirtualMedium &medium, JobReport &report);

    VirtualTray m_tray;
    std::mutex m_changeMutex; // held while the medium changes and while a job takes hold
    RecorderLock m_lock;
    std::atomic<bool> m_jobRuns = false;
    std::atomic<double> m_currentSpeed = 0; // KB per second
    JobThread m_jobs;                       // last: its jobs use all of the above
};
