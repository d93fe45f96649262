#include "LibburnRecorder.h"

#include "DRKeys.h"
#include "DiscLayout.h"
#include "DriveDescription.h"
#include "LibburnBurn.h"
#include "LibburnErase.h"
#include "RecordingService.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

QString lockPath(const QString &devicePath)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return QDir(folder.isEmpty() ? QDir::tempPath() : folder)
        .filePath(QStringLiteral("maplorn-disc-%1.lock").arg(QFileInfo(devicePath).fileName()));
}

}

// As long as this lives this program has the device file open, or is about to: probing it from
// another thread would either fail or keep libburn from it.
class LibburnRecorder::Hold
{
public:
    explicit Hold(LibburnRecorder &recorder)
        : m_recorder(recorder)
    {
        set(true);
    }
    ~Hold() { set(false); }
    Hold(const Hold &) = delete;
    Hold &operator=(const Hold &) = delete;

private:
    void set(bool holds)
    {
        const std::lock_guard guard(m_recorder.m_probeMutex);
        m_recorder.m_holdsDrive = holds;
    }

    LibburnRecorder &m_recorder;
};

// A job's hold on the recorder and on its drive. What is known is brought up to date in the end,
// whatever the end was.
class LibburnRecorder::Job
{
public:
    explicit Job(LibburnRecorder &recorder)
        : m_recorder(recorder)
        , m_hold(std::make_unique<Hold>(recorder))
    {
        recorder.m_jobRuns = true;
        m_granted = recorder.acquireExclusiveAccess();
    }
    ~Job()
    {
        const bool answers = m_drive && !m_drive->isAbandoned() && m_drive->file().exists();
        if (answers && m_drive->assessAgain())
            m_recorder.learn(*m_drive, DeviceFile::Tray::Closed);
        else
            m_recorder.m_toBeAskedAgain = true; // changes were not heard meanwhile
        if (m_drive && m_recorder.m_toBeAskedAgain)
            m_recorder.forgetMedium(DeviceFile::Tray::Unknown);
        m_drive.reset();
        m_hold.reset();
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
        constexpr std::chrono::seconds patience(3);
        Result<> ready = LibburnDrive::checkUsable(m_recorder.m_file, patience);
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
    std::unique_ptr<Hold> m_hold;
    bool m_granted = false;
    std::shared_ptr<LibburnDrive> m_drive;
};

LibburnRecorder::LibburnRecorder(const QString &devicePath, const UdevDescription &told,
                                 std::shared_ptr<JobThread> thread)
    : m_file(devicePath)
    , m_thread(std::move(thread))
    , m_lock(lockPath(devicePath))
    , m_told(told)
    , m_known{told.info, told.medium}
{
}

bool LibburnRecorder::setTold(const UdevDescription &told)
{
    const std::lock_guard guard(m_mutex);
    m_told = told;
    m_isToldLatest = true;
    m_failedOpenings = 0;
    ++m_mediumChanges;
    const auto essence = [](const std::optional<MediumDescription> &medium) {
        return medium ? std::pair(medium->type, medium->blank) : std::pair(QString(), false);
    };
    return essence(m_known.medium) != essence(told.medium);
}

void LibburnRecorder::takeForTold()
{
    const std::lock_guard guard(m_mutex);
    if (!m_isToldLatest)
        return;
    m_known.medium = m_told.medium;
    m_known.tray = DeviceFile::Tray::Unknown;
}

bool LibburnRecorder::lock()
{
    if (!m_lock.acquire())
        return false;
    if (probe())
        return true;
    m_lock.release();
    return false;
}

Result<> LibburnRecorder::probe()
{
    const std::lock_guard guard(m_probeMutex);
    return m_holdsDrive ? Result<>(Done{}) : m_file.checkUsable();
}

LibburnRecorder::Known LibburnRecorder::known() const
{
    const std::lock_guard guard(m_mutex);
    return m_known;
}

void LibburnRecorder::learn(LibburnDrive &drive, DeviceFile::Tray tray)
{
    const QString systemPath = known().info.value(DRDeviceIORegistryEntryPathKey).toString();
    Known known{DriveDescription::info(drive, systemPath), DriveDescription::medium(drive), tray,
                DriveDescription::maximumSpeed(drive)};
    m_toBeAskedAgain = false;
    const std::lock_guard guard(m_mutex);
    m_isToldLatest = false;
    m_failedOpenings = 0;
    m_known = std::move(known);
}

void LibburnRecorder::forgetMedium(DeviceFile::Tray tray)
{
    const std::lock_guard guard(m_mutex);
    m_known.medium.reset();
    m_known.tray = tray;
}

void LibburnRecorder::fallBack(const Failure &reason)
{
    if (!m_toBeAskedAgain.exchange(true))
        qCWarning(recordingLog) << m_file.path() << "cannot be asked:" << reason.text;
    takeForTold();
    const std::lock_guard guard(m_mutex);
    m_known.isKeptFromUs = true;
}

// Of a drive that answers the system, but not libburn: mostly of one that cannot read its medium.
// Starting it up again and again would help nobody.
void LibburnRecorder::giveUp(const Failure &reason)
{
    constexpr int mostOpenings = 3;
    qCWarning(recordingLog) << m_file.path() << "cannot be asked:" << reason.text;
    takeForTold();
    const std::lock_guard guard(m_mutex);
    m_known.isKeptFromUs = false;
    m_toBeAskedAgain = ++m_failedOpenings < mostOpenings;
}

// Not even its tray is looked at while another program uses it: that might be burning.
void LibburnRecorder::refresh()
{
    const Hold hold(*this);
    if (const Result<> usable = LibburnDrive::checkUsable(m_file); !usable)
        return fallBack(usable.failure());
    const DeviceFile::Tray tray = m_file.tray();
    if (tray == DeviceFile::Tray::SpinningUp) {
        m_toBeAskedAgain = true;
        return forgetMedium(tray);
    }
    const Result<std::shared_ptr<LibburnDrive>> drive = LibburnDrive::open(m_file);
    if (!drive)
        return giveUp(drive.failure());
    learn(*drive.value(), tray);
    if (tray == DeviceFile::Tray::Open || tray == DeviceFile::Tray::Empty)
        forgetMedium(tray);
}

QString LibburnRecorder::displayName() const
{
    const QString name = modelName();
    return m_oneOfSeveral ? QStringLiteral("%1 (%2)").arg(name, QFileInfo(devicePath()).fileName())
                          : name;
}

QString LibburnRecorder::modelName() const
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
        {DRDeviceIsBusyKey, m_jobRuns || known.isKeptFromUs},
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
    if (const Result<> going = report.checkStopped(); !going)
        return going;
    if (Result<> erased = LibburnErase(*drive.value(), report).run(type); !erased)
        return erased;
    report.setState(DRStatusStateFinishing);
    return report.checkStopped();
}

Result<> LibburnRecorder::eject()
{
    if (m_jobRuns || isReserved())
        return Failure{QStringLiteral("A job is running on the recorder.")};
    if (m_thread->hasJobsBeside(this))
        return Failure{QStringLiteral("A job is running on another recorder, for which this would "
                                      "wait.")};
    if (const Result<> usable = probe(); !usable)
        return usable;
    forgetMedium(DeviceFile::Tray::SpinningUp);
    m_thread->post([this](const std::stop_token &stop) {
        if (const Result<> ejected = ejectNow(stop); !ejected) {
            qCWarning(recordingLog) << m_file.path() << "did not eject:" << ejected.error();
            m_toBeAskedAgain = true;
        }
        if (m_changed)
            m_changed();
    });
    return Done{};
}

Result<> LibburnRecorder::ejectNow(const std::stop_token &stop)
{
    const Hold hold(*this);
    if (Result<> usable = LibburnDrive::checkUsable(m_file); !usable)
        return usable;
    // A medium that cannot be read comes out all the same.
    Result<> ready = m_file.waitUntilReady(stop);
    Result<std::shared_ptr<LibburnDrive>> drive =
        ready ? LibburnDrive::open(m_file) : Result<std::shared_ptr<LibburnDrive>>(ready.failure());
    if (drive)
        drive.value()->ejectOnRelease();
    else if (stop.stop_requested() || !m_file.eject())
        return drive.failure();
    ++m_mediumChanges;
    drive = Failure{}; // lets go of it
    const DeviceFile::Tray tray = m_file.tray();
    forgetMedium(tray);
    if (tray != DeviceFile::Tray::Open && tray != DeviceFile::Tray::Empty)
        return Failure{QStringLiteral("The drive keeps its medium.")};
    return Done{};
}
