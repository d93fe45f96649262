// A recording service with a virtual recorder in a temporary folder, as every test of a page
// needs them. Main thread.
#pragma once

#include "RecordingService.h"
#include "VirtualRecorder.h"
#include "VirtualRecorderWatch.h"

#include <QTemporaryDir>

class VirtualDrive
{
public:
    VirtualDrive();

    [[nodiscard]] VirtualRecorder &recorder() { return *m_recorder; }
    [[nodiscard]] DRDevice device() const { return DRDevice(m_recorder); }
    [[nodiscard]] RecordingService &service() { return m_service; }

    // Path of a file of the medium in the recorder.
    [[nodiscard]] QString mediumFile(const QString &name) const;

    // Puts in a blank medium of that type that holds that many blocks (0: the real number).
    void insert(const QString &type, qint64 capacity = 0);

    // Drops the recorder, as when its cable is pulled.
    void detach() { m_service.detach(m_recorder); }

private:
    QTemporaryDir m_folder;
    RecordingService m_service;
    std::shared_ptr<VirtualRecorder> m_recorder;
    std::unique_ptr<VirtualRecorderWatch> m_watch;
};
