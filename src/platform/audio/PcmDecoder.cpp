#include "PcmDecoder.h"

#include "AmrFrame.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/samplefmt.h>
}

namespace {

QString cannotConvert()
{
    return QStringLiteral("the audio cannot be converted");
}

}

PcmDecoder::PcmDecoder(std::unique_ptr<AudioInput> input)
    : m_input(std::move(input))
    , m_frame(av_frame_alloc())
{
}

Result<std::unique_ptr<PcmDecoder>> PcmDecoder::open(std::unique_ptr<AudioInput> input)
{
    std::unique_ptr<PcmDecoder> decoder(new PcmDecoder(std::move(input)));
    if (!decoder->begin())
        return decoder->m_input->failure(QStringLiteral("the audio cannot be decoded"));
    return decoder;
}

bool PcmDecoder::begin()
{
    const AVStream &stream = m_input->stream();
    const AVCodec *codec = avcodec_find_decoder(stream.codecpar->codec_id);
    m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec || avcodec_parameters_to_context(m_codec.get(), stream.codecpar) < 0)
        return false;
    // Without it the decoder does not leave out the samples that an encoder added.
    m_codec->pkt_timebase = stream.time_base;
    m_codec->thread_count = 1; // several files are decoded at once instead
    m_codec->err_recognition = AV_EF_CRCCHECK | AV_EF_EXPLODE;
    return avcodec_open2(m_codec.get(), codec, nullptr) >= 0;
}

qint64 PcmDecoder::surplus() const
{
    const AVCodecParameters &parameters = *m_input->stream().codecpar;
    return StereoConverter::framesFor(qMax(0, parameters.frame_size), parameters.sample_rate);
}

// FFmpeg's decoders of AMR know no pauses, which phones write by the dozen.
bool PcmDecoder::isPause(const AVPacket &packet) const
{
    const bool isWide = m_codec->codec_id == AV_CODEC_ID_AMR_WB;
    return (isWide || m_codec->codec_id == AV_CODEC_ID_AMR_NB) && packet.size > 0
           && packet.size == AmrFrame::size(*packet.data, isWide)
           && AmrFrame::isPause(*packet.data, isWide);
}

bool PcmDecoder::addPause(QByteArray &to)
{
    av_frame_unref(m_frame.get());
    m_frame->sample_rate = m_codec->sample_rate;
    m_frame->format = m_codec->sample_fmt;
    m_frame->nb_samples = m_codec->sample_rate / AmrFrame::perSecond;
    return av_channel_layout_copy(&m_frame->ch_layout, &m_codec->ch_layout) >= 0
           && av_frame_get_buffer(m_frame.get(), 0) >= 0
           && av_samples_set_silence(m_frame->extended_data, 0, m_frame->nb_samples,
                                     m_codec->ch_layout.nb_channels, m_codec->sample_fmt)
                  >= 0
           && m_converter.convert(*m_frame, to);
}

Result<> PcmDecoder::feed(QByteArray &to)
{
    const Result<const AVPacket *> packet = m_input->next();
    if (!packet)
        return packet.failure();
    if (packet.value() && isPause(*packet.value()))
        return addPause(to) ? Result<>(Done{}) : m_input->failure(cannotConvert());
    if (avcodec_send_packet(m_codec.get(), packet.value()) < 0)
        return m_input->failure(AudioLayout::damaged());
    return Done{};
}

Result<bool> PcmDecoder::next(QByteArray &to)
{
    for (;;) {
        const int got = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (got == AVERROR(EAGAIN)) {
            if (const Result<> fed = feed(to); !fed)
                return fed.failure();
            continue;
        }
        const bool isEnd = got == AVERROR_EOF;
        const bool isSpoilt =
            m_frame->decode_error_flags != 0 || (m_frame->flags & AV_FRAME_FLAG_CORRUPT) != 0;
        if (!isEnd && (got < 0 || isSpoilt))
            return m_input->failure(AudioLayout::damaged());
        if (!(isEnd ? m_converter.finish(to) : m_converter.convert(*m_frame, to)))
            return m_input->failure(cannotConvert());
        return !isEnd;
    }
}
