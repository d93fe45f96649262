#include "VirtualRecorderWatch.h"

#include "RecordingService.h"

#include <QFileInfo>

VirtualRecorderWatch::VirtualRecorderWatch(RecordingService &service,
                                           std::shared_ptr<VirtualRecorder> recorder)
    : m_recorder(std::move(recorder))
{
    service.attach(m_recorder);
    watchFolders();
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this, &service] {
        watchFolders();
        service.statusChanged(m_recorder);
    });
}

void VirtualRecorderWatch::watchFolders()
{
    for (const QString &folder : {m_recorder->folder(), m_recorder->mediumFolder()})
        if (QFileInfo::exists(folder))
            m_watcher.addPath(folder); // one that is watched already is left as it is
}
