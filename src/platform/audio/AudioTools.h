// What the pages ask about audio files. Any thread.
#pragma once

#include <QUrl>

namespace MiscTool {

// Whole seconds of playing time, the fraction dropped; 0 for what cannot be decoded.
[[nodiscard]] qint32 getAudioFileDuration(const QUrl &url);

}
