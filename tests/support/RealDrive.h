// The drive of a test that burns with libburn, in the emulated drive. Main thread.
#pragma once

#include "EmulatedDrive.h"
#include "RecorderMonitor.h"
#include "TestDrive.h"

#include <functional>

class RealDrive : public TestDrive
{
public:
    RealDrive(); // with a blank CD-RW
    ~RealDrive() override;

    [[nodiscard]] EmulatedDrive &emulated() { return m_emulated; }
    [[nodiscard]] LibburnRecorder &recorder() const;
    [[nodiscard]] DRDevice device() const override { return m_device; }

    void insert(const QString &type, qint64 capacity = 0) override;
    void detach() override;

    // Does it on the recorder's own thread, after what is done there now, and waits for its end.
    void onItsThread(const std::function<void()> &task) const;
    void attach() override;

    [[nodiscard]] QByteArray burnedData(qint64 bytes) const override;
    [[nodiscard]] QByteArray burnedAudio() const override;

private:
    void awaitDevice();

    EmulatedDrive m_emulated;
    std::unique_ptr<RecorderMonitor> m_monitor;
    DRDevice m_device;
};
