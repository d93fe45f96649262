// Settles how long an audio file becomes on a CD by reading its packets, without decoding. One
// thread at a time.
#pragma once

#include "AudioInput.h"

#include <optional>

namespace LengthScan {

// Frames of 44.1 kHz. Null where the packets do not tell their lengths: only decoding will.
[[nodiscard]] Result<std::optional<qint64>> outputFrames(AudioInput &input);

// The true number of samples where an encoder noted it down: close to as many as the packets hold.
[[nodiscard]] std::optional<qint64> notedSamples(const AudioInput &input, qint64 inPackets);

}
