#include "VirtualRecorder.h"

#include "DRKeys.h"
#include "DiscLayout.h"
#include "MediaTypes.h"
#include "Overwriting.h"
#include "PcmDisc.h"
#include "TrackSheets.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

const QString lockName = QStringLiteral("/lock");

constexpr qint64 lookEvery = 50; // ms between two looks at the medium

// Of the burn's percentage, where verifying begins.
constexpr double verifyShare = 0.5;

Failure withReason(const QString &what)
{
    return Failure{QStringLiteral("%1: %2").arg(what, qt_error_string(errno))};
}

// Whether one of the tracks is made of a folder in which the path lies.
bool contains(const QList<DRTrack> &tracks, const QString &path)
{
    const QString inner = QFileInfo(path).canonicalFilePath();
    return std::ranges::any_of(tracks, [&](const DRTrack &track) {
        const QString outer = QFileInfo(track.folder()).canonicalFilePath();
        return !outer.isEmpty()
               && (outer == inner || inner.startsWith(QDir(outer).filePath(QString())));
    });
}

double singleSpeedOf(const VirtualMedium &medium)
{
    const MediaType *type = MediaTypes::find(medium.type);
    return type ? type->singleSpeed : 0;
}

}

// A job's hold on the recorder: exclusive access and the mark that it is busy.
class VirtualRecorder::Job
{
public:
    explicit Job(VirtualRecorder &recorder)
        : m_recorder(recorder)
    {
        const std::lock_guard guard(recorder.m_changeMutex);
        m_granted = recorder.acquireExclusiveAccess();
        if (m_granted)
            recorder.m_jobRuns = true;
    }
    ~Job()
    {
        if (!m_granted)
            return;
        m_recorder.m_jobRuns = false;
        m_recorder.m_currentSpeed = 0;
        m_recorder.releaseExclusiveAccess();
    }
    Job(const Job &) = delete;
    Job &operator=(const Job &) = delete;

    // The medium in the recorder, once the recorder is ours.
    [[nodiscard]] Result<VirtualMedium> medium() const
    {
        if (!m_granted)
            return Failure{QStringLiteral("The recorder is in use by another program.")};
        const std::optional<VirtualMedium> medium = m_recorder.m_tray.medium();
        if (!medium)
            return Failure{QStringLiteral("There is no medium in the recorder.")};
        return *medium;
    }

private:
    VirtualRecorder &m_recorder;
    bool m_granted = false;
};

Result<std::shared_ptr<VirtualRecorder>> VirtualRecorder::create(const QString &folder)
{
    const bool isNew = !QDir(folder).exists();
    if (!QDir().mkpath(folder))
        return Failure{QStringLiteral("The folder %1 cannot be made.").arg(folder)};
    const std::shared_ptr<VirtualRecorder> recorder(new VirtualRecorder(folder));
    if (isNew) {
        if (const Result<> inserted = recorder->insertBlankMedium(DRDeviceMediaTypeCDRW); !inserted)
            return inserted.failure();
    }
    return recorder;
}

QString VirtualRecorder::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + QStringLiteral("/maplorn-disc/recorders/virtual");
}

VirtualRecorder::VirtualRecorder(const QString &folder)
    : m_tray(folder)
    , m_lock(folder + lockName)
{
}

QString VirtualRecorder::displayName() const
{
    return QStringLiteral("Virtual Recorder");
}

QVariantMap VirtualRecorder::info() const
{
    return {{DRDeviceFirmwareRevisionKey, QStringLiteral(MAPLORN_VERSION)},
            {DRDeviceIORegistryEntryPathKey, folder()},
            {DRDeviceLoadingMechanismCanEjectKey, true},
            {DRDeviceLoadingMechanismCanInjectKey, true},
            {DRDeviceLoadingMechanismCanOpenKey, true},
            {DRDevicePhysicalInterconnectKey, QStringLiteral("Files")},
            {DRDevicePhysicalInterconnectLocationKey,
             QString(DRDevicePhysicalInterconnectLocationInternal)},
            {DRDeviceProductNameKey, displayName()},
            {DRDeviceProfilePathKey, folder()},
            {DRDeviceSerialNumberKey, QStringLiteral("1")},
            {DRDeviceSupportLevelKey, QString(DRDeviceSupportLevelSupported)},
            {DRDeviceVendorNameKey, QStringLiteral("Maplorn")},
            {DRDeviceWriteBufferSizeKey, 1024},
            {DRDeviceWriteCapabilitiesKey, MediaTypes::writeCapabilities()}};
}

QVariantMap VirtualRecorder::status() const
{
    const std::optional<VirtualMedium> medium = m_tray.medium();
    double fastest = 0;
    for (const MediaType &type : MediaTypes::all())
        if (!medium || medium->type == type.type)
            fastest = std::max(fastest, type.speeds().last());
    const double current = m_currentSpeed;
    QVariantMap status{{DRDeviceCurrentWriteSpeedKey, current > 0 ? current : fastest},
                       {DRDeviceIsBusyKey, isBusy()},
                       {DRDeviceIsTrayOpenKey, !medium},
                       {DRDeviceMaximumWriteSpeedKey, fastest},
                       {DRDeviceMediaStateKey,
                        QString(medium ? DRDeviceMediaStateMediaPresent : DRDeviceMediaStateNone)}};
    if (medium)
        status.insert(DRDeviceMediaInfoKey, medium->status(isReserved()));
    return status;
}

bool VirtualRecorder::isBusy() const
{
    return m_jobRuns || RecorderLock::isHeldElsewhere(folder() + lockName);
}

Result<> VirtualRecorder::checkMedium(const VirtualMedium &medium) const
{
    const std::optional<VirtualMedium> present = m_tray.medium();
    if (!present || present->identifier != medium.identifier)
        return Failure{QStringLiteral("The medium was taken out of the recorder.")};
    return Done{};
}

// What is done after each piece: the pace is kept, and medium and cancelling are looked after.
Advance VirtualRecorder::step(JobReport &report, const VirtualMedium &medium, double limit)
{
    QElapsedTimer sinceLook;
    sinceLook.start();
    return [this, &report, &medium, limit, sinceLook](qint64 bytes) mutable -> Result<> {
        Result<> going = report.advance(bytes, limit);
        m_currentSpeed = report.currentSpeed();
        if (!going || sinceLook.elapsed() < lookEvery)
            return going;
        sinceLook.restart();
        return checkMedium(medium);
    };
}

// The last moment at which a job can still be cancelled.
Result<> VirtualRecorder::checkReadyToFinish(const VirtualMedium &medium,
                                             const JobReport &report) const
{
    const Result<> going = report.checkStopped();
    return going ? checkMedium(medium) : going;
}

Result<> VirtualRecorder::burn(const BurnRequest &request, JobReport &report)
{
    const Job job(*this);
    Result<VirtualMedium> medium = job.medium();
    if (!medium)
        return medium.failure();
    if (!medium.value().isBlank())
        return Failure{QStringLiteral("The medium is not blank.")};
    const Result<DiscLayout> layout = layoutFor(request, medium.value(), report);
    if (!layout)
        return layout.failure();
    if (const Result<> going = report.checkStopped(); !going)
        return going;
    Result<> written = writeDisc(layout.value(), request, medium.value(), report);
    if (!written && checkMedium(medium.value()))
        m_tray.removeContent();
    return written;
}

Result<DiscLayout> VirtualRecorder::layoutFor(const BurnRequest &request,
                                              const VirtualMedium &medium,
                                              const JobReport &report) const
{
    if (contains(request.tracks, mediumFolder()))
        return Failure{QStringLiteral("The folder holds the files of the medium in the recorder, "
                                      "which change while it is burned.")};
    Result<DiscLayout> layout = DiscLayout::prepare(request, report.stopToken());
    if (!layout)
        return layout;
    const MediaType *type = MediaTypes::find(medium.type);
    const QString mediaClass = type ? type->mediaClass : DRDeviceMediaClassUnknown;
    if (const Result<> fits = layout.value().checkFits(mediaClass, medium.capacity); !fits)
        return fits.failure();
    return layout;
}

Result<> VirtualRecorder::writeDisc(const DiscLayout &layout, const BurnRequest &request,
                                    VirtualMedium medium, JobReport &report)
{
    report.setState(DRStatusStateSessionOpen);
    medium.state = VirtualMedium::State::Incomplete;
    medium.audio = layout.isAudio();
    medium.tracks = layout.trackLengths();
    if (const Result<> marked = medium.store(mediumFolder()); !marked)
        return marked;

    QFile file(m_tray.unfinishedPath(medium));
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered))
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    if (const Result<> done = writeAndVerify(layout, request, medium, file, report); !done)
        return done;

    report.setState(DRStatusStateFinishing);
    if (const Result<> ready = checkReadyToFinish(medium, report); !ready)
        return ready;
    if (const Result<> stored = storeSheets(layout); !stored)
        return stored;
    if (!file.rename(m_tray.contentPath(medium)))
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    medium.state = VirtualMedium::State::Complete;
    medium.appendable = request.appendable;
    return medium.store(mediumFolder());
}

Result<> VirtualRecorder::writeAndVerify(const DiscLayout &layout, const BurnRequest &request,
                                         const VirtualMedium &medium, QFile &file,
                                         JobReport &report)
{
    if (layout.isAudio())
        return writeAndVerify(PcmDisc(layout.audioTracks(), report.stopToken()), request, medium,
                              file, report);
    return writeAndVerify(layout.tracks().first(), request, medium, file, report);
}

template <typename Content>
Result<> VirtualRecorder::writeAndVerify(Content content, const BurnRequest &request,
                                         const VirtualMedium &medium, QFile &file,
                                         JobReport &report)
{
    const double singleSpeed = singleSpeedOf(medium);
    report.setState(DRStatusStateTrackOpen);
    report.beginPhase(DRStatusStateTrackWrite, 0, request.verify ? verifyShare : 1,
                      content.byteCount(), singleSpeed);
    if (Result<> done = content.writeTo(file.handle(), step(report, medium, request.speed)); !done)
        return done;
    report.setState(DRStatusStateTrackClose);
    // On the disk before it counts as written; and then out of the cache, so that verifying reads
    // the disk.
    if (::fdatasync(file.handle()) != 0)
        return withReason(file.fileName());
    report.setState(DRStatusStateSessionClose);
    if (Result<> going = report.checkStopped(); !going || !request.verify)
        return going;
    ::posix_fadvise(file.handle(), 0, 0, POSIX_FADV_DONTNEED);
    report.beginPhase(DRStatusStateVerifying, verifyShare, 1, content.byteCount(), singleSpeed);
    return content.compareWith(file.handle(), step(report, medium, 0));
}

// The packs end with a zero byte: readers of such files tell them by their odd length.
Result<> VirtualRecorder::storeSheets(const DiscLayout &layout) const
{
    if (!layout.isAudio())
        return Done{};
    const QByteArray &packs = layout.cdTextPacks();
    const QList<qint64> lengths = layout.trackLengths();
    if (!packs.isEmpty())
        if (Result<> stored = m_tray.storeSheet(QStringLiteral("cdt"), packs + '\0'); !stored)
            return stored;
    const QByteArray cue = TrackSheets::cueSheet(lengths, !packs.isEmpty());
    if (Result<> stored = m_tray.storeSheet(QStringLiteral("cue"), cue); !stored)
        return stored;
    return m_tray.storeSheet(QStringLiteral("toc"), TrackSheets::tocFile(lengths, layout.cdText()));
}

Result<> VirtualRecorder::erase(EraseType type, JobReport &report)
{
    const Job job(*this);
    Result<VirtualMedium> loaded = job.medium();
    if (!loaded)
        return loaded.failure();
    VirtualMedium &medium = loaded.value();
    if (!medium.isErasable())
        return Failure{QStringLiteral("The medium cannot be erased.")};
    medium.state = VirtualMedium::State::Incomplete;
    if (const Result<> marked = medium.store(mediumFolder()); !marked)
        return marked;
    // What is being erased is no disc to be read. A burn that was cut off left its content there.
    const QString content = m_tray.contentPath(medium);
    if (QFile::exists(content) && !QFile::rename(content, m_tray.unfinishedPath(medium)))
        return Failure{QStringLiteral("%1 cannot be renamed.").arg(content)};
    m_tray.removeSheets();
    if (type == EraseType::Complete) {
        if (const Result<> done = overwriteContent(medium, report); !done)
            return done;
    } else {
        report.beginPhase(DRStatusStateErasing, 0, 1, 0, singleSpeedOf(medium));
    }
    report.setState(DRStatusStateFinishing);
    if (const Result<> ready = checkReadyToFinish(medium, report); !ready)
        return ready;
    m_tray.removeContent();
    medium.clear();
    return medium.store(mediumFolder());
}

Result<> VirtualRecorder::overwriteContent(const VirtualMedium &medium, JobReport &report)
{
    QFile file(m_tray.unfinishedPath(medium));
    report.beginPhase(DRStatusStateErasing, 0, 1, file.size(), singleSpeedOf(medium));
    if (!file.exists())
        return Done{};
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    return Overwriting::withZeros(file, step(report, medium, 0));
}

// Changes what lies in the tray while nobody else uses the recorder, and no job begins.
Result<QString> VirtualRecorder::changeMedium(const std::function<Result<QString>()> &change)
{
    const std::lock_guard guard(m_changeMutex);
    if (m_jobRuns || isReserved())
        return Failure{QStringLiteral("A job is running on the recorder.")};
    if (!acquireExclusiveAccess())
        return Failure{QStringLiteral("The recorder is in use by another program.")};
    const Result<QString> changed = change();
    releaseExclusiveAccess();
    return changed;
}

Result<QString> VirtualRecorder::takeOut()
{
    return changeMedium([this]() -> Result<QString> {
        if (!m_tray.medium())
            return Failure{QStringLiteral("There is no medium in the recorder.")};
        return m_tray.takeOut();
    });
}

Result<QString> VirtualRecorder::insertBlank(const MediaType &type)
{
    return changeMedium([this, &type] { return m_tray.insertBlank(type); });
}

Result<> VirtualRecorder::eject()
{
    const Result<QString> place = takeOut();
    return place ? Result<>(Done{}) : place.failure();
}

QStringList VirtualRecorder::insertableMedia() const
{
    QStringList types;
    for (const MediaType &type : MediaTypes::all())
        types.append(type.type);
    return types;
}

Result<> VirtualRecorder::insertBlankMedium(const QString &type)
{
    const MediaType *known = MediaTypes::find(type);
    if (!known)
        return Failure{QStringLiteral("%1 is no medium that can be written.").arg(type)};
    const Result<QString> place = insertBlank(*known);
    return place ? Result<>(Done{}) : place.failure();
}
