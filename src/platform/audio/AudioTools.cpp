#include "AudioTools.h"

#include "AudioDurations.h"

qint32 MiscTool::getAudioFileDuration(const QUrl &url)
{
    return AudioDurations::seconds(url.toLocalFile());
}
