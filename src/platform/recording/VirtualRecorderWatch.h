// Attaches the virtual recorder to the recording service and reports every change of its medium,
// whichever program made it. Main thread.
#pragma once

#include "VirtualRecorder.h"

#include <QFileSystemWatcher>

class RecordingService;

class VirtualRecorderWatch : public QObject
{
    Q_OBJECT

public:
    VirtualRecorderWatch(RecordingService &service, std::shared_ptr<VirtualRecorder> recorder);

private:
    void watchFolders();

    std::shared_ptr<VirtualRecorder> m_recorder;
    QFileSystemWatcher m_watcher; // folders: a watched file is lost when it is replaced
};
