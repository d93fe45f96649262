#include "AudioSource.h"

#include "LengthScan.h"
#include "PcmDecoder.h"

namespace {

Result<qint64> decodedFrames(const QString &path, const AudioLayout &layout,
                             const std::stop_token &stop)
{
    Result<FileBytes> bytes = FileBytes::open(path);
    if (!bytes)
        return bytes.failure();
    auto input = AudioInput::open(std::move(bytes.value()), layout, stop);
    if (!input)
        return input.failure();
    const auto decoder = PcmDecoder::open(std::move(input.value()));
    if (!decoder)
        return decoder.failure();
    qint64 frames = 0;
    QByteArray samples;
    for (;;) {
        const Result<bool> more = decoder.value()->next(samples);
        if (!more)
            return more.failure();
        frames += samples.size() / StereoConverter::frameSize;
        samples.resize(0);
        if (!more.value())
            return frames;
    }
}

}

Result<AudioSource> AudioSource::open(const QString &path, const std::stop_token &stop)
{
    Result<FileBytes> bytes = FileBytes::open(path);
    if (!bytes)
        return bytes.failure();
    AudioSource source;
    source.m_path = path;
    source.m_size = bytes.value().size();
    source.m_modified = bytes.value().modified();
    source.m_layout = AudioLayout::of(bytes.value(), AudioLayout::Depth::Whole, stop);
    if (!stop.stop_requested() && !source.m_layout.fault.isEmpty())
        return bytes.value().failure(source.m_layout.fault);
    const auto input = AudioInput::open(std::move(bytes.value()), source.m_layout, stop);
    if (!input)
        return input.failure();
    const Result<std::optional<qint64>> told = LengthScan::outputFrames(*input.value());
    if (!told)
        return told.failure();
    const Result<qint64> frames =
        told.value() ? *told.value() : decodedFrames(path, source.m_layout, stop);
    if (!frames)
        return frames.failure();
    if (frames.value() <= 0)
        return input.value()->failure(AudioLayout::noAudio());
    source.m_frames = frames.value();
    return source;
}
