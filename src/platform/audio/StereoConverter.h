// Converts decoded audio of any rate, format and number of channels to what a CD holds, and begins
// anew where these change in the middle of a file. One thread at a time.
#pragma once

#include "AvHandles.h"

#include <QByteArray>

class StereoConverter
{
public:
    static constexpr int rate = 44'100; // frames a second
    static constexpr int frameSize = 4; // bytes

    StereoConverter();
    ~StereoConverter();

    // Appends what a frame becomes; false when it cannot be converted.
    [[nodiscard]] bool convert(const AVFrame &frame, QByteArray &to);

    // Appends what the resampler still holds back.
    [[nodiscard]] bool finish(QByteArray &to);

    // How many frames so many samples of another rate become, the last one begun counted whole.
    [[nodiscard]] static qint64 framesFor(qint64 samples, int samplesPerSecond);

private:
    [[nodiscard]] bool isLikeBefore(const AVFrame &frame) const;
    [[nodiscard]] bool begin(const AVFrame &frame);
    [[nodiscard]] bool run(const uint8_t *const *samples, int count, QByteArray &to);

    AvHandle<SwrContext> m_swr;
    AvHandle<AVFrame> m_like; // without samples: the rate, format and channels converted from
};
