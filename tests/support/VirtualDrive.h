// The drive of a test that burns into the files of a virtual recorder in a temporary folder. Main
// thread.
#pragma once

#include "TestDrive.h"
#include "VirtualRecorder.h"
#include "VirtualRecorderWatch.h"

class VirtualDrive : public TestDrive
{
public:
    VirtualDrive();

    [[nodiscard]] VirtualRecorder &recorder() { return *m_recorder; }
    [[nodiscard]] DRDevice device() const override { return DRDevice(m_recorder); }

    // A program that has this as its XDG_DATA_HOME has the same recorder.
    [[nodiscard]] QString dataHome() const { return folder(); }

    // Path of a file of the medium in the recorder; and the names of all of them.
    [[nodiscard]] QString mediumFile(const QString &name) const;
    [[nodiscard]] QStringList mediumFiles() const;

    // Whether a medium can be erased, by what people call it.
    [[nodiscard]] static bool isRewritable(const MediaType &medium);

    void insert(const QString &type, qint64 capacity = 0) override;

    // Gives the medium in the recorder another capacity, in blocks.
    void setCapacity(qint64 capacity);

    [[nodiscard]] bool takes(const QString &) const override { return true; }
    void holdElsewhere(bool held) override;
    [[nodiscard]] bool isHeld() const override;
    void detach() override { service().detach(m_recorder); }
    void attach() override { service().attach(m_recorder); }

    [[nodiscard]] QByteArray burnedData(qint64 bytes) const override;
    [[nodiscard]] QByteArray burnedAudio() const override;
    [[nodiscard]] QByteArray burnedPacks() const override;

private:
    std::shared_ptr<VirtualRecorder> m_recorder;
    std::unique_ptr<VirtualRecorderWatch> m_watch;
    std::unique_ptr<RecorderLock> m_otherProgram;
};
