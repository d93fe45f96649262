// An audio file as a track of a CD, its exact length settled before anything is decoded. A value;
// any thread.
#pragma once

#include "AudioLayout.h"
#include "Result.h"

#include <stop_token>

class AudioSource
{
public:
    static constexpr int sectorSize = 2352; // bytes; 588 frames of 44.1 kHz 16-bit stereo
    static constexpr int sectorFrames = 588;

    AudioSource() = default;

    // Reads the file through, packets and not samples where these tell its length. Fails, naming
    // the file, for what cannot be decoded, is truncated or damaged, holds no audio, or is
    // protected; "The job was cancelled." when it was stopped.
    [[nodiscard]] static Result<AudioSource> open(const QString &path, const std::stop_token &stop);

    [[nodiscard]] QString path() const { return m_path; }

    // Frames of 44.1 kHz, without the silence that fills up the last sector.
    [[nodiscard]] qint64 frameCount() const { return m_frames; }

    // Sectors; the last one is filled up with silence.
    [[nodiscard]] qint64 blockCount() const { return (m_frames + sectorFrames - 1) / sectorFrames; }
    [[nodiscard]] qint64 byteCount() const { return blockCount() * sectorSize; }

private:
    friend class PcmStream;

    QString m_path;
    AudioLayout m_layout;
    qint64 m_size = 0;     // bytes of the file
    qint64 m_modified = 0; // nanoseconds since 1970
    qint64 m_frames = 0;   // of 44.1 kHz, without the silence at the end
};
