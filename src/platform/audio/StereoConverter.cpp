#include "StereoConverter.h"

#include <array>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/mathematics.h>
#include <libswresample/swresample.h>
}

StereoConverter::StereoConverter()
    : m_like(av_frame_alloc())
{
}

StereoConverter::~StereoConverter() = default;

qint64 StereoConverter::framesFor(qint64 samples, int samplesPerSecond)
{
    return av_rescale_rnd(samples, rate, samplesPerSecond, AV_ROUND_UP);
}

bool StereoConverter::isLikeBefore(const AVFrame &frame) const
{
    return frame.sample_rate == m_like->sample_rate && frame.format == m_like->format
           && av_channel_layout_compare(&frame.ch_layout, &m_like->ch_layout) == 0;
}

bool StereoConverter::begin(const AVFrame &frame)
{
    m_swr.reset();
    if (frame.sample_rate < Av::lowestRate || frame.sample_rate > Av::highestRate
        || frame.ch_layout.nb_channels > Av::mostChannels)
        return false;
    m_like->sample_rate = frame.sample_rate;
    m_like->format = frame.format;
    if (av_channel_layout_copy(&m_like->ch_layout, &frame.ch_layout) < 0)
        return false;
    AVChannelLayout from = {};
    AVChannelLayout stereo = {};
    av_channel_layout_default(&stereo, 2);
    // Many files tell how many channels there are and not which: the usual ones, then.
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&from, frame.ch_layout.nb_channels);
    else if (av_channel_layout_copy(&from, &frame.ch_layout) < 0)
        return false;
    SwrContext *swr = nullptr;
    const int made = swr_alloc_set_opts2(&swr, &stereo, AV_SAMPLE_FMT_S16, rate, &from,
                                         static_cast<AVSampleFormat>(frame.format),
                                         frame.sample_rate, 0, nullptr);
    av_channel_layout_uninit(&from);
    m_swr.reset(swr);
    // Left to itself the resampler makes one channel quieter before it gives it out twice.
    constexpr std::array<double, 2> toBoth = {1, 1};
    const bool isMono = frame.ch_layout.nb_channels == 1;
    if (made >= 0 && (!isMono || swr_set_matrix(swr, toBoth.data(), 1) >= 0) && swr_init(swr) >= 0)
        return true;
    m_swr.reset();
    return false;
}

bool StereoConverter::convert(const AVFrame &frame, QByteArray &to)
{
    if (!m_swr || !isLikeBefore(frame))
        if (!finish(to) || !begin(frame))
            return false;
    return run(frame.extended_data, frame.nb_samples, to);
}

bool StereoConverter::finish(QByteArray &to)
{
    return !m_swr || run(nullptr, 0, to);
}

bool StereoConverter::run(const uint8_t *const *samples, int count, QByteArray &to)
{
    const int room = swr_get_out_samples(m_swr.get(), count);
    if (room < 0)
        return false;
    const qsizetype before = to.size();
    to.resize(before + qsizetype(room) * frameSize);
    auto *start = reinterpret_cast<uint8_t *>(to.data() + before);
    // The parameter lacks a const only in this version.
    const int made =
        swr_convert(m_swr.get(), &start, room, const_cast<const uint8_t **>(samples), count);
    to.resize(before + qsizetype(qMax(0, made)) * frameSize);
    return made >= 0;
}
