#include "RealDrive.h"

#include "DRKeys.h"
#include "MediaTypes.h"
#include "VirtualDrive.h"

#include <QTest>

#include <future>

namespace {

constexpr int patience = 20000; // ms
constexpr qint64 blockSize = 2048;

}

RealDrive::RealDrive(const QString &faults)
{
    m_emulated.insert(QStringLiteral("cd-rw"));
    m_emulated.setFaults(faults);
    m_monitor = std::make_unique<RecorderMonitor>(service());
    awaitDevice();
}

RealDrive::~RealDrive()
{
    m_monitor.reset();
}

void RealDrive::awaitDevice()
{
    if (!QTest::qWaitFor([this] { return !service().devices().isEmpty(); }, patience))
        qFatal("the emulated drive does not appear");
    m_device = service().devices().first();
}

LibburnRecorder &RealDrive::recorder() const
{
    return static_cast<LibburnRecorder &>(*m_device.recorder());
}

void RealDrive::onItsThread(const std::function<void()> &task) const
{
    std::promise<void> done;
    recorder().jobs().post([&](const std::stop_token &) {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

Result<> RealDrive::burn(const BurnRequest &request) const
{
    BurnRun run;
    return burn(run, request);
}

Result<> RealDrive::burn(BurnRun &run, const BurnRequest &request) const
{
    Result<> result = Done{};
    onItsThread([&] { result = run.burn(recorder(), request); });
    return result;
}

Result<> RealDrive::erase(BurnRun &run, EraseType type) const
{
    Result<> result = Done{};
    onItsThread([&] { result = run.erase(recorder(), type); });
    return result;
}

BurnRequest RealDrive::imageOf(qint64 bytes) const
{
    BurnRequest request;
    request.tracks = {DRTrack::trackForImageFile(makeSource(QStringLiteral("image.iso"), bytes))};
    return request;
}

QVariantMap RealDrive::medium() const
{
    return m_device.status().value(DRDeviceMediaInfoKey).toMap();
}

void RealDrive::insert(const QString &type, qint64 capacity)
{
    const MediaType *known = MediaTypes::find(type);
    const QString name = known ? known->commandName() : QStringLiteral("none");
    m_emulated.insert(QStringLiteral("%1 %2").arg(name).arg(capacity));
    const auto isSeen = [&] {
        return !m_emulated.isInserting() && m_device.mediaIsPresent() == (known != nullptr)
               && (!known || (m_device.mediaType() == type && m_device.mediaIsBlank()))
               && (capacity == 0 || m_device.mediaSpaceFree() == DRMSF(capacity));
    };
    if (!QTest::qWaitFor(isSeen, patience))
        qFatal("the medium %s is not seen", qPrintable(name));
    onItsThread([] {}); // the drive is let go of
}

void RealDrive::detach()
{
    m_emulated.setFaults(QStringLiteral("gone"));
    if (!QTest::qWaitFor([this] { return service().devices().isEmpty(); }, patience))
        qFatal("the emulated drive does not go");
}

void RealDrive::attach()
{
    m_emulated.setFaults({});
    awaitDevice();
}

QByteArray RealDrive::burnedData(qint64 bytes) const
{
    const bool isCd = medium().value(DRDeviceMediaClassKey) == DRDeviceMediaClassCD;
    return m_emulated.data(0, (bytes + blockSize - 1) / blockSize, isCd).first(bytes);
}

QByteArray RealDrive::burnedAudio() const
{
    return m_emulated.sectors(0, m_device.mediaSpaceUsed().value_or(DRMSF()).blocks());
}

bool RealDrive::takes(const QString &type) const
{
    return type == DRDeviceMediaTypeCDR || type == DRDeviceMediaTypeCDRW
           || type == DRDeviceMediaTypeDVDPlusRW || type == DRDeviceMediaTypeBDRE;
}

void RealDrive::holdElsewhere(bool held)
{
    m_emulated.setFaults(held ? QStringLiteral("busy") : QString());
}

bool RealDrive::isHeld() const
{
    return !DeviceFile(recorder().devicePath()).checkUsable();
}

std::unique_ptr<TestDrive> makeTestDrive()
{
    if (qgetenv("MAPLORN_TEST_DRIVE") == "real")
        return std::make_unique<RealDrive>();
    return std::make_unique<VirtualDrive>();
}
