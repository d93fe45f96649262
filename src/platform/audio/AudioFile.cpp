#include "AudioFile.h"

#include "LengthScan.h"
#include "StereoConverter.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

// Null when it is left to the packets.
std::optional<double> headerSeconds(const AudioInput &input)
{
    const AVStream &stream = input.stream();
    if (stream.duration > 0 && stream.time_base.den > 0)
        return static_cast<double>(stream.duration) * stream.time_base.num / stream.time_base.den;
    if (input.format().duration > 0)
        return static_cast<double>(input.format().duration) / AV_TIME_BASE;
    return {};
}

}

Result<double> AudioFile::duration(const QString &path, const std::stop_token &stop)
{
    Result<FileBytes> bytes = FileBytes::open(path);
    if (!bytes)
        return bytes.failure();
    const AudioLayout layout = AudioLayout::of(bytes.value(), AudioLayout::Depth::Header, stop);
    // What is truncated has a length too; only what cannot be played at all has none.
    if (!layout.demuxer || layout.fault == AudioLayout::isProtected())
        return bytes.value().failure(layout.fault);
    const auto input = AudioInput::open(std::move(bytes.value()), layout, stop);
    if (!input)
        return input.failure();
    std::optional<double> seconds =
        layout.ticks > 0 ? static_cast<double>(layout.ticks) / AudioLayout::ticksPerSecond
                         : headerSeconds(*input.value());
    if (!seconds) {
        const Result<std::optional<qint64>> frames = LengthScan::outputFrames(*input.value());
        if (!frames)
            return frames.failure();
        seconds = static_cast<double>(frames.value().value_or(0)) / StereoConverter::rate;
    }
    if (!(*seconds > 0 && *seconds < static_cast<double>(Av::longest)))
        return input.value()->failure(AudioLayout::damaged());
    return *seconds;
}
