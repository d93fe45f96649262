// Decodes an audio file from its start to its end into 44,100 Hz, 16-bit little-endian, stereo,
// without the samples that an encoder added at either end where FFmpeg leaves them out. One thread
// at a time.
#pragma once

#include "AudioInput.h"
#include "StereoConverter.h"

class PcmDecoder
{
public:
    [[nodiscard]] static Result<std::unique_ptr<PcmDecoder>>
    open(std::unique_ptr<AudioInput> input);

    // Appends the next samples, possibly none; false at the end. Fails for what is damaged.
    [[nodiscard]] Result<bool> next(QByteArray &to);

    [[nodiscard]] const AudioInput &input() const { return *m_input; }

    // How much more than its true length the last frame of the file may hold, in output frames.
    [[nodiscard]] qint64 surplus() const;

private:
    explicit PcmDecoder(std::unique_ptr<AudioInput> input);
    [[nodiscard]] bool begin();
    [[nodiscard]] Result<> feed(QByteArray &to);
    [[nodiscard]] bool isPause(const AVPacket &packet) const;
    [[nodiscard]] bool addPause(QByteArray &to);

    std::unique_ptr<AudioInput> m_input;
    AvHandle<AVCodecContext> m_codec;
    AvHandle<AVFrame> m_frame;
    StereoConverter m_converter;
};
