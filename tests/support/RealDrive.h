// The drive of a test that burns with libburn, in the emulated drive. Main thread.
#pragma once

#include "BurnRun.h"
#include "EmulatedDrive.h"
#include "RecorderMonitor.h"
#include "TestDrive.h"

#include <functional>

class RealDrive : public TestDrive
{
public:
    explicit RealDrive(const QString &faults = {}); // with a blank CD-RW
    ~RealDrive() override;

    [[nodiscard]] EmulatedDrive &emulated() { return m_emulated; }
    [[nodiscard]] LibburnRecorder &recorder() const;
    [[nodiscard]] DRDevice device() const override { return m_device; }

    void insert(const QString &type, qint64 capacity = 0) override;
    [[nodiscard]] bool takes(const QString &type) const override;
    void keepToSpeed() override { m_emulated.setFaults(QStringLiteral("pace 0")); }
    void holdElsewhere(bool held) override;
    [[nodiscard]] bool isHeld() const override;
    void detach() override;

    void attach() override;

    // Run a job on the recorder's own thread, after what is done there now, and wait for its end.
    [[nodiscard]] Result<> burn(const BurnRequest &request) const;
    [[nodiscard]] Result<> burn(BurnRun &run, const BurnRequest &request) const;
    [[nodiscard]] Result<> erase(BurnRun &run, EraseType type) const;

    // The burn of an image of that many bytes.
    [[nodiscard]] BurnRequest imageOf(qint64 bytes) const;

    // The medium's part of the device status.
    [[nodiscard]] QVariantMap medium() const;

    [[nodiscard]] QByteArray burnedData(qint64 bytes) const override;
    [[nodiscard]] QByteArray burnedAudio() const override;
    [[nodiscard]] QByteArray burnedPacks() const override { return m_emulated.packs(); }

private:
    void awaitDevice();
    void onItsThread(const std::function<void()> &task) const;

    EmulatedDrive m_emulated;
    std::unique_ptr<RecorderMonitor> m_monitor;
    DRDevice m_device;
};

// The drive of the tests that run with either kind: real where MAPLORN_TEST_DRIVE says so.
[[nodiscard]] std::unique_ptr<TestDrive> makeTestDrive();
