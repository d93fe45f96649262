// The playing times of audio files, remembered while the program runs, since lists ask for them
// again and again. Any thread, several at once.
#pragma once

#include <QString>

namespace AudioDurations {

// Whole seconds, the fraction dropped; 0 for what cannot be decoded. Remembered by path, size and
// time of modification, so asking again costs no more than a look at the file's state.
[[nodiscard]] int seconds(const QString &path);

}
