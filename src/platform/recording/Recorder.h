// The port behind which a recorder's driver stands: what the recorder is, its medium, access to
// it, and its jobs. Descriptions and access: any thread. burn() and erase(): the job thread.
#pragma once

#include "DRCDTextBlock.h"
#include "DRTrack.h"
#include "JobReport.h"

#include <QVariantMap>

#include <atomic>
#include <mutex>

class JobThread;

struct BurnRequest
{
    QList<DRTrack> tracks;
    QList<DRCDTextBlock> cdText; // of audio tracks, one a language; empty: none
    double speed = 0;            // KB (1,000 bytes) per second; 0: the recorder's own choice
    bool appendable = false;
    bool verify = false;
};

enum class EraseType { Quick, Complete };

class Recorder
{
public:
    Recorder() = default;
    virtual ~Recorder() = default;
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;

    [[nodiscard]] virtual QString displayName() const = 0;

    // One that writes into files: it stands behind those that burn discs.
    [[nodiscard]] virtual bool isVirtual() const { return false; }

    // The maps of keys in DRKeys.h: what never changes, and what does.
    [[nodiscard]] virtual QVariantMap info() const = 0;
    [[nodiscard]] virtual QVariantMap status() const = 0;

    // False once the recorder is gone.
    [[nodiscard]] bool isAttached() const { return m_attached; }
    void setAttached(bool attached) { m_attached = attached; }

    // Exclusive access keeps other programs off, a reservation keeps the medium in. Both are
    // counted, so that a page and a job may hold them side by side; a release too many is ignored.
    bool acquireExclusiveAccess();
    void releaseExclusiveAccess();
    bool acquireMediaReservation();
    void releaseMediaReservation();
    [[nodiscard]] bool isReserved() const;

    // Run a whole job, reporting its states but for the last; they return when it has ended.
    [[nodiscard]] virtual Result<> burn(const BurnRequest &request, JobReport &report) = 0;
    [[nodiscard]] virtual Result<> erase(EraseType type, JobReport &report) = 0;

    // Refused while a job runs, here or in another program.
    [[nodiscard]] virtual Result<> eject() = 0;

    // Rises with each change of the medium that the recorder hears of.
    [[nodiscard]] virtual int mediumChanges() const { return 0; }

    // Media that can be inserted by command; empty for a recorder with a real tray.
    [[nodiscard]] virtual QStringList insertableMedia() const { return {}; }

    // Inserts a blank medium of the DRDeviceMediaType given, in place of the present one.
    [[nodiscard]] virtual Result<> insertBlankMedium(const QString &type);

    [[nodiscard]] virtual JobThread &jobs() = 0;

protected:
    // Keeps other programs off; false when one holds the recorder.
    virtual bool lock() = 0;
    virtual void unlock() = 0;

private:
    mutable std::mutex m_accessMutex;
    int m_accessCount = 0;
    int m_reservationCount = 0;
    std::atomic<bool> m_attached = true;
};
