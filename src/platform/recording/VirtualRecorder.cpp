#include "VirtualRecorder.h"

#include "DRKeys.h"
#include "DiscLayout.h"
#include "MediaTypes.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

const QString mediumName = QStringLiteral("medium");
const QString contentName = QStringLiteral("disc.iso");
const QString unfinishedName = QStringLiteral("disc.iso.part");
const QString ejectedName = QStringLiteral("ejected");
const QString lockName = QStringLiteral("/lock");

// Of the burn's percentage, where verifying begins.
constexpr double verifyShare = 0.5;

Failure withReason(const QString &what)
{
    return Failure{QStringLiteral("%1: %2").arg(what, QString::fromLocal8Bit(strerror(errno)))};
}

QVariantMap writeCapabilities()
{
    QVariantMap capabilities;
    for (const QLatin1StringView key : {DRDeviceCanWriteKey,
                                        DRDeviceCanWriteCDKey,
                                        DRDeviceCanWriteCDRKey,
                                        DRDeviceCanWriteCDRWKey,
                                        DRDeviceCanWriteDVDKey,
                                        DRDeviceCanWriteDVDRKey,
                                        DRDeviceCanWriteDVDRDualLayerKey,
                                        DRDeviceCanWriteDVDRWKey,
                                        DRDeviceCanWriteDVDRWDualLayerKey,
                                        DRDeviceCanWriteDVDRAMKey,
                                        DRDeviceCanWriteDVDPlusRKey,
                                        DRDeviceCanWriteDVDPlusRDoubleLayerKey,
                                        DRDeviceCanWriteDVDPlusRWKey,
                                        DRDeviceCanWriteDVDPlusRWDoubleLayerKey,
                                        DRDeviceCanWriteBDKey,
                                        DRDeviceCanWriteBDRKey,
                                        DRDeviceCanWriteBDREKey,
                                        DRDeviceCanWriteHDDVDKey,
                                        DRDeviceCanWriteHDDVDRKey,
                                        DRDeviceCanWriteHDDVDRDualLayerKey,
                                        DRDeviceCanWriteHDDVDRAMKey,
                                        DRDeviceCanWriteHDDVDRWKey,
                                        DRDeviceCanWriteHDDVDRWDualLayerKey})
        capabilities.insert(key, true);
    return capabilities;
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
        , m_granted(recorder.acquireExclusiveAccess())
    {
        if (m_granted)
            m_recorder.m_jobRuns = true;
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
        const std::optional<VirtualMedium> medium = VirtualMedium::load(m_recorder.mediumFolder());
        if (!medium)
            return Failure{QStringLiteral("There is no medium in the recorder.")};
        return *medium;
    }

private:
    VirtualRecorder &m_recorder;
    bool m_granted;
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
    : m_folder(folder)
    , m_lock(folder + lockName)
{
}

QString VirtualRecorder::mediumFolder() const
{
    return m_folder + QLatin1Char('/') + mediumName;
}

QString VirtualRecorder::displayName() const
{
    return QStringLiteral("Virtual Recorder");
}

QVariantMap VirtualRecorder::info() const
{
    return {{DRDeviceFirmwareRevisionKey, QStringLiteral(MAPLORN_VERSION)},
            {DRDeviceIORegistryEntryPathKey, m_folder},
            {DRDeviceLoadingMechanismCanEjectKey, true},
            {DRDeviceLoadingMechanismCanInjectKey, true},
            {DRDeviceLoadingMechanismCanOpenKey, true},
            {DRDevicePhysicalInterconnectKey, QStringLiteral("Files")},
            {DRDevicePhysicalInterconnectLocationKey,
             QString(DRDevicePhysicalInterconnectLocationInternal)},
            {DRDeviceProductNameKey, displayName()},
            {DRDeviceProfilePathKey, m_folder},
            {DRDeviceSerialNumberKey, QStringLiteral("1")},
            {DRDeviceSupportLevelKey, QString(DRDeviceSupportLevelSupported)},
            {DRDeviceVendorNameKey, QStringLiteral("Maplorn")},
            {DRDeviceWriteBufferSizeKey, 1024},
            {DRDeviceWriteCapabilitiesKey, writeCapabilities()}};
}

QVariantMap VirtualRecorder::status() const
{
    const std::optional<VirtualMedium> medium = VirtualMedium::load(mediumFolder());
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
    return m_jobRuns || RecorderLock::isHeldElsewhere(m_folder + lockName);
}

Result<> VirtualRecorder::checkMedium(const VirtualMedium &medium) const
{
    const std::optional<VirtualMedium> present = VirtualMedium::load(mediumFolder());
    if (!present || present->identifier != medium.identifier)
        return Failure{QStringLiteral("The medium was taken out of the recorder.")};
    return Done{};
}

// What is done after each piece: the pace is kept, and medium and cancelling are looked after.
Advance VirtualRecorder::step(JobReport &report, const VirtualMedium &medium, double limit)
{
    return [this, &report, &medium, limit](qint64 bytes) {
        const Result<> going = report.advance(bytes, limit);
        m_currentSpeed = report.currentSpeed();
        return going ? checkMedium(medium) : going;
    };
}

Result<> VirtualRecorder::burn(const BurnRequest &request, JobReport &report)
{
    const Job job(*this);
    Result<VirtualMedium> medium = job.medium();
    if (!medium)
        return medium.failure();
    if (!medium.value().isBlank())
        return Failure{QStringLiteral("The medium is not blank.")};
    const Result<DiscLayout> layout = DiscLayout::prepare(request.tracks, report.stopToken());
    if (!layout)
        return layout.failure();
    if (layout.value().tracks().size() != 1)
        return Failure{QStringLiteral("A data disc has one track.")};
    if (layout.value().blockCount() > medium.value().capacity)
        return Failure{QStringLiteral("The source needs %1 blocks, the medium holds %2.")
                           .arg(layout.value().blockCount())
                           .arg(medium.value().capacity)};
    if (const Result<> going = report.checkStopped(); !going)
        return going;
    Result<> written = writeDisc(layout.value().tracks().first(), request, medium.value(), report);
    if (!written && checkMedium(medium.value()))
        removeContent();
    return written;
}

Result<> VirtualRecorder::writeDisc(const TrackContent &track, const BurnRequest &request,
                                    VirtualMedium medium, JobReport &report)
{
    report.setState(DRStatusStateSessionOpen);
    medium.state = VirtualMedium::State::Incomplete;
    medium.tracks = {track.blockCount()};
    if (const Result<> marked = medium.store(mediumFolder()); !marked)
        return marked;

    QFile file(mediumFolder() + QLatin1Char('/') + unfinishedName);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered))
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    if (const Result<> done = writeAndVerify(track, request, medium, file, report); !done)
        return done;

    report.setState(DRStatusStateFinishing);
    if (const Result<> present = checkMedium(medium); !present)
        return present;
    if (!file.rename(mediumFolder() + QLatin1Char('/') + contentName))
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    medium.state = VirtualMedium::State::Complete;
    medium.appendable = request.appendable;
    return medium.store(mediumFolder());
}

Result<> VirtualRecorder::writeAndVerify(const TrackContent &track, const BurnRequest &request,
                                         const VirtualMedium &medium, QFile &file,
                                         JobReport &report)
{
    const double singleSpeed = singleSpeedOf(medium);
    report.setState(DRStatusStateTrackOpen);
    report.beginPhase(DRStatusStateTrackWrite, 0, request.verify ? verifyShare : 1,
                      track.byteCount(), singleSpeed);
    if (Result<> done = track.writeTo(file.handle(), step(report, medium, request.speed)); !done)
        return done;
    report.setState(DRStatusStateTrackClose);
    // On the disk before it counts as written; and then out of the cache, so that verifying reads
    // the disk.
    if (::fdatasync(file.handle()) != 0)
        return withReason(file.fileName());
    report.setState(DRStatusStateSessionClose);
    if (!request.verify)
        return Done{};
    ::posix_fadvise(file.handle(), 0, 0, POSIX_FADV_DONTNEED);
    report.beginPhase(DRStatusStateVerifying, verifyShare, 1, track.byteCount(), singleSpeed);
    return track.compareWith(file.handle(), step(report, medium, 0));
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
    if (type == EraseType::Complete) {
        if (const Result<> done = overwriteContent(medium, report); !done)
            return done;
    } else {
        report.beginPhase(DRStatusStateErasing, 0, 1, 0, singleSpeedOf(medium));
    }
    report.setState(DRStatusStateFinishing);
    if (const Result<> present = checkMedium(medium); !present)
        return present;
    removeContent();
    medium.clear();
    return medium.store(mediumFolder());
}

Result<> VirtualRecorder::overwriteContent(const VirtualMedium &medium, JobReport &report)
{
    QFile file(mediumFolder() + QLatin1Char('/') + contentName);
    const qint64 size = file.size();
    report.beginPhase(DRStatusStateErasing, 0, 1, size, singleSpeedOf(medium));
    if (!file.exists())
        return Done{};
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
    const QByteArray zeros(1 << 20, '\0');
    const Advance advance = step(report, medium, 0);
    for (qint64 done = 0; done < size;) {
        const qint64 written =
            file.write(zeros.constData(), std::min<qint64>(zeros.size(), size - done));
        if (written <= 0)
            return Failure{QStringLiteral("%1: %2").arg(file.fileName(), file.errorString())};
        done += written;
        if (Result<> going = advance(written); !going)
            return going;
    }
    if (::fdatasync(file.handle()) != 0)
        return withReason(file.fileName());
    return Done{};
}

void VirtualRecorder::removeContent() const
{
    for (const QString &name : {contentName, unfinishedName})
        QFile::remove(mediumFolder() + QLatin1Char('/') + name);
}

// Changes what lies in the tray while nobody else uses the recorder.
Result<> VirtualRecorder::changeMedium(const std::function<Result<>()> &change)
{
    if (m_jobRuns || isReserved())
        return Failure{QStringLiteral("A job is running on the recorder.")};
    if (!acquireExclusiveAccess())
        return Failure{QStringLiteral("The recorder is in use by another program.")};
    const Result<> changed = change();
    releaseExclusiveAccess();
    return changed;
}

// Takes the medium out. What was burned is kept; there is nothing to keep of any other.
Result<> VirtualRecorder::shelve() const
{
    const std::optional<VirtualMedium> medium = VirtualMedium::load(mediumFolder());
    if (!medium)
        return Done{};
    const MediaType *type = MediaTypes::find(medium->type);
    if (type && medium->state != VirtualMedium::State::Complete) {
        if (!QDir(mediumFolder()).removeRecursively())
            return Failure{QStringLiteral("%1 cannot be removed.").arg(mediumFolder())};
        return Done{};
    }
    QDir shelf(m_folder + QLatin1Char('/') + ejectedName);
    const QString name =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh-mm-ss "))
        + (type ? QString(type->name) : QStringLiteral("disc"));
    QString free = name;
    for (int i = 2; shelf.exists(free); ++i)
        free = QStringLiteral("%1 (%2)").arg(name).arg(i);
    if (!shelf.mkpath(QStringLiteral(".")) || !QDir().rename(mediumFolder(), shelf.filePath(free)))
        return Failure{QStringLiteral("The medium cannot be moved to %1.").arg(shelf.path())};
    return Done{};
}

Result<> VirtualRecorder::eject()
{
    return changeMedium([this]() -> Result<> {
        if (!QDir(mediumFolder()).exists())
            return Failure{QStringLiteral("There is no medium in the recorder.")};
        return shelve();
    });
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
    return changeMedium([this, known]() -> Result<> {
        // Made aside and moved in whole, so that nobody sees half a medium.
        QTemporaryDir fresh(m_folder + QStringLiteral("/new-XXXXXX"));
        if (!fresh.isValid())
            return Failure{fresh.errorString()};
        if (const Result<> stored = VirtualMedium::blank(*known).store(fresh.path()); !stored)
            return stored;
        if (const Result<> removed = shelve(); !removed)
            return removed;
        if (!QDir().rename(fresh.path(), mediumFolder()))
            return Failure{QStringLiteral("The medium cannot be put into %1.").arg(m_folder)};
        fresh.setAutoRemove(false);
        return Done{};
    });
}
