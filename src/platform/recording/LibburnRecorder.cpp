#include "LibburnRecorder.h"

#include "DRKeys.h"
#include "DiscLayout.h"
#include "DriveDescription.h"
#include "LibburnBurn.h"
#include "LibburnErase.h"
#include "RecordingService.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStandardPaths>

namespace {

QString lockPath(const QString &devicePath)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return QDir(folder.isEmpty() ? QDir::tempPath() : folder)
        .filePath(QStringLiteral("maplorn-disc-%1.lock").arg(QFileInfo(devicePath).fileName()));
}

}

// A job's hold on the recorder and on its drive. What is known is brought up to date in the end,
// whatever the end was.
class LibburnRecorder::Job
{
public:
    explicit Job(LibburnRecorder &recorder)
        : m_recorder(recorder)
    {
        recorder.m_jobRuns = true;
        recorder.m_holdsDrive = true;
        m_granted = recorder.acquireExclusiveAccess();
    }
    ~Job()
    {
        const bool answers = m_drive && !m_drive->isAbandoned() && m_drive->file().exists();
        if (answers && m_drive->assessAgain())
            m_recorder.learn(*m_drive, DeviceFile::Tray::Closed);
        else if (m_drive)
            m_recorder.forgetMedium(DeviceFile::Tray::Unknown);
        m_drive.reset();
        m_recorder.m_holdsDrive = false;
        m_recorder.m_jobRuns = false;
        m_recorder.m_currentSpeed = 0;
        if (m_granted)
            m_recorder.releaseExclusiveAccess();
        if (m_recorder.m_changed)
            m_recorder.m_changed();
    }
    Job(const Job &) = delete;
    Job &operator=(const Job &) = delete;

    // The drive with a medium in it.
    [[nodiscard]] Result<std::shared_ptr<LibburnDrive>> drive(const std::stop_token &stop)
    {
        if (!m_granted)
            return Failure{QStringLiteral("The recorder is in use by another program.")};
        // Why it cannot be used says more than that it is not ready.
        Result<> ready = m_recorder.m_file.checkUsable();
        if (ready)
            ready = m_recorder.m_file.waitUntilReady(stop);
        if (!ready)
            return ready.failure();
        const Result<std::shared_ptr<LibburnDrive>> opened = LibburnDrive::open(m_recorder.m_file);
        if (!opened)
            return opened.failure();
        m_drive = opened.value();
        m_recorder.learn(*m_drive, DeviceFile::Tray::Closed);
        if (!m_recorder.known().medium)
            return Failure{QStringLiteral("There is no medium in the recorder.")};
        return m_drive;
    }

private:
    LibburnRecorder &m_recorder;
    bool m_granted = false;
    std::shared_ptr<LibburnDrive> m_drive;
};

LibburnRecorder::LibburnRecorder(const QString &devicePath, const QString &systemPath,
                                 const QString &name, std::shared_ptr<JobThread> thread)
    : m_file(devicePath)
    , m_systemPath(systemPath)
    , m_thread(std::move(thread))
    , m_lock(lockPath(devicePath))
{
    m_known.info = {{DRDeviceProductNameKey, name},
                    {DRDeviceIORegistryEntryPathKey, systemPath},
                    {DRDeviceProfilePathKey, devicePath}};
}

bool LibburnRecorder::lock()
{
    if (!m_lock.acquire())
        return false;
    const bool usable = m_holdsDrive || m_file.checkUsable();
    if (!usable)
        m_lock.release();
    return usable;
}

LibburnRecorder::Known LibburnRecorder::known() const
{
    const std::lock_guard guard(m_mutex);
    return m_known;
}

void LibburnRecorder::learn(LibburnDrive &drive, DeviceFile::Tray tray)
{
    Known known{DriveDescription::info(drive, m_systemPath), DriveDescription::medium(drive), tray,
                DriveDescription::maximumSpeed(drive)};
    const std::lock_guard guard(m_mutex);
    m_known = std::move(known);
}

void LibburnRecorder::forgetMedium(DeviceFile::Tray tray)
{
    const std::lock_guard guard(m_mutex);
    m_known.medium.reset();
    m_known.tray = tray;
}

void LibburnRecorder::refresh()
{
    m_holdsDrive = true;
    const auto done = qScopeGuard([this] { m_holdsDrive = false; });
    const DeviceFile::Tray tray = m_file.tray();
    if (tray == DeviceFile::Tray::SpinningUp)
        return forgetMedium(tray); // it is asked when it is ready
    const Result<std::shared_ptr<LibburnDrive>> drive = LibburnDrive::open(m_file);
    if (drive)
        learn(*drive.value(), tray);
    else
        qCWarning(recordingLog) << m_file.path() << "cannot be asked:" << drive.error();
    if (tray == DeviceFile::Tray::Open || tray == DeviceFile::Tray::Empty)
        forgetMedium(tray);
}

QString LibburnRecorder::displayName() const
{
    const QVariantMap info = known().info;
    return QString(info.value(DRDeviceVendorNameKey).toString() + QLatin1Char(' ')
                   + info.value(DRDeviceProductNameKey).toString())
        .trimmed();
}

QVariantMap LibburnRecorder::info() const
{
    return known().info;
}

QVariantMap LibburnRecorder::status() const
{
    const Known known = this->known();
    const double current = m_currentSpeed;
    const bool changing = !known.medium && known.tray == DeviceFile::Tray::SpinningUp;
    const QLatin1StringView state = known.medium ? DRDeviceMediaStateMediaPresent
                                    : changing   ? DRDeviceMediaStateInTransition
                                                 : DRDeviceMediaStateNone;
    QVariantMap status{
        {DRDeviceCurrentWriteSpeedKey, current > 0 ? current : known.maximumSpeed},
        {DRDeviceIsBusyKey, m_jobRuns.load()},
        {DRDeviceIsTrayOpenKey, !known.medium && known.tray == DeviceFile::Tray::Open},
        {DRDeviceMaximumWriteSpeedKey, known.maximumSpeed},
        {DRDeviceMediaStateKey, QString(state)}};
    if (known.medium)
        status.insert(DRDeviceMediaInfoKey, known.medium->status(isReserved()));
    return status;
}

Result<> LibburnRecorder::burn(const BurnRequest &request, JobReport &report)
{
    Job job(*this);
    const Result<std::shared_ptr<LibburnDrive>> drive = job.drive(report.stopToken());
    return drive ? burnOn(*drive.value(), request, report) : drive.failure();
}

Result<> LibburnRecorder::burnOn(LibburnDrive &drive, const BurnRequest &request, JobReport &report)
{
    const MediumDescription medium = known().medium.value_or(MediumDescription());
    if (!medium.blank)
        return Failure{QStringLiteral("The medium is not blank.")};
    const Result<DiscLayout> layout = DiscLayout::prepare(request, report.stopToken());
    if (!layout)
        return layout.failure();
    if (const Result<> fits = layout.value().checkFits(medium.mediaClass, medium.freeBlocks); !fits)
        return fits;
    if (const Result<> going = report.checkStopped(); !going)
        return going;
    return LibburnBurn(drive, request, layout.value(), report, m_currentSpeed).run();
}

Result<> LibburnRecorder::erase(EraseType type, JobReport &report)
{
    Job job(*this);
    const Result<std::shared_ptr<LibburnDrive>> drive = job.drive(report.stopToken());
    if (!drive)
        return drive.failure();
    if (!known().medium.value_or(MediumDescription()).erasable)
        return Failure{QStringLiteral("The medium cannot be erased.")};
    if (Result<> erased = LibburnErase(*drive.value(), report).run(type); !erased)
        return erased;
    report.setState(DRStatusStateFinishing);
    return report.checkStopped();
}

Result<> LibburnRecorder::eject()
{
    if (m_jobRuns || isReserved())
        return Failure{QStringLiteral("A job is running on the recorder.")};
    if (const Result<> usable = m_file.checkUsable(); !m_holdsDrive && !usable)
        return usable;
    m_thread->post([this](const std::stop_token &) {
        const Result<std::shared_ptr<LibburnDrive>> drive = LibburnDrive::open(m_file);
        if (drive)
            drive.value()->ejectOnRelease();
        else
            qCWarning(recordingLog) << m_file.path() << "did not eject:" << drive.error();
        if (drive)
            forgetMedium(DeviceFile::Tray::Open);
        if (m_changed)
            m_changed();
    });
    return Done{};
}
