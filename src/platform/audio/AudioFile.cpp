#include "AudioFile.h"

#include "AudioSource.h"
#include "LengthScan.h"
#include "StereoConverter.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

double ratio(qint64 count, qint64 perSecond)
{
    return static_cast<double>(count) / static_cast<double>(perSecond);
}

// Null when it is left to the packets.
std::optional<double> headerSeconds(const AudioInput &input)
{
    const AVStream &stream = input.stream();
    if (stream.duration > 0 && stream.time_base.den > 0) {
        const int rate = stream.codecpar->sample_rate;
        const qint64 samples = av_rescale_q(stream.duration, stream.time_base, {1, rate});
        if (const auto noted = LengthScan::notedSamples(input, samples))
            return ratio(*noted, rate);
        return static_cast<double>(stream.duration) * stream.time_base.num / stream.time_base.den;
    }
    if (input.format().duration > 0)
        return ratio(input.format().duration, AV_TIME_BASE);
    return {};
}

// CAF counts packets, of which the last is seldom full. Null where that makes no difference, or
// the file is not whole.
std::optional<double> decodedSeconds(const AudioInput &input)
{
    if (qstrcmp(input.layout().demuxer, "caf") != 0 || input.stream().codecpar->block_align > 0)
        return {};
    const Result<AudioSource> source = AudioSource::open(input.bytes().path(), input.stop());
    return source ? std::optional(ratio(source.value().frameCount(), StereoConverter::rate))
                  : std::nullopt;
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
    std::optional<double> seconds = layout.ticks > 0
                                        ? ratio(layout.ticks, AudioLayout::ticksPerSecond)
                                        : decodedSeconds(*input.value());
    if (!seconds)
        seconds = headerSeconds(*input.value());
    if (!seconds) {
        const Result<std::optional<qint64>> frames = LengthScan::outputFrames(*input.value());
        if (!frames)
            return frames.failure();
        seconds = ratio(frames.value().value_or(0), StereoConverter::rate);
    }
    if (!(*seconds > 0 && *seconds < static_cast<double>(Av::longest)))
        return input.value()->failure(AudioLayout::damaged());
    return *seconds;
}
