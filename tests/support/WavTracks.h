// Sounds for audio discs, made sample by sample: what is to be burned, and what a disc then holds.
// Any thread.
#pragma once

#include <QByteArray>

namespace WavTracks {

// Stereo samples of 16 bits that are not silent anywhere; another seed, another sound.
[[nodiscard]] QByteArray noise(qint64 frames, uint seed);

// The samples as a file.
[[nodiscard]] QByteArray wav(const QByteArray &samples);

// The samples as a track: whole sectors, filled up with silence.
[[nodiscard]] QByteArray sectors(const QByteArray &samples);

}
