#include "AudioInput.h"

#include <algorithm>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

constexpr int ioBufferSize = 64 * 1024; // bytes

int isStopped(void *stop)
{
    return static_cast<const std::stop_token *>(stop)->stop_requested() ? 1 : 0;
}

}

AudioInput::AudioInput(FileBytes bytes, const AudioLayout &layout, std::stop_token stop)
    : m_bytes(std::move(bytes))
    , m_layout(layout)
    , m_stop(std::move(stop))
    , m_packet(av_packet_alloc())
    , m_size(m_layout.end - m_layout.begin)
{
    for (const AudioLayout::Gap &gap : m_layout.gaps)
        m_size -= gap.end - gap.begin;
}

AudioInput::~AudioInput() = default;

Result<std::unique_ptr<AudioInput>> AudioInput::open(FileBytes bytes, const AudioLayout &layout,
                                                     const std::stop_token &stop)
{
    Av::captureLog();
    std::unique_ptr<AudioInput> input(new AudioInput(std::move(bytes), layout, stop));
    if (const Result<> begun = input->begin(); !begun)
        return begun.failure();
    return input;
}

qint64 AudioInput::readShown(void *to, qint64 length)
{
    qint64 offset = m_layout.begin + m_position;
    qint64 end = m_layout.end;
    for (const AudioLayout::Gap &gap : m_layout.gaps) {
        if (offset < gap.begin) {
            end = gap.begin;
            break;
        }
        offset += gap.end - gap.begin;
    }
    const qint64 wanted = std::min(length, end - offset);
    return wanted <= 0 ? 0 : m_bytes.read(offset, to, wanted);
}

int AudioInput::readBytes(void *input, uint8_t *to, int length)
{
    auto &self = *static_cast<AudioInput *>(input);
    if (self.m_stop.stop_requested())
        return AVERROR_EXIT;
    const qint64 got = self.readShown(to, length);
    if (got <= 0)
        return got == 0 ? AVERROR_EOF : AVERROR(EIO);
    self.m_position += got;
    return static_cast<int>(got);
}

int64_t AudioInput::seekBytes(void *input, int64_t offset, int whence)
{
    auto &self = *static_cast<AudioInput *>(input);
    if ((whence & AVSEEK_SIZE) != 0)
        return self.m_size;
    const int from = whence & ~AVSEEK_FORCE;
    const qint64 base = from == SEEK_CUR ? self.m_position : from == SEEK_END ? self.m_size : 0;
    if (offset > self.m_size - base || offset < -base)
        return AVERROR(EINVAL);
    self.m_position = base + offset;
    return self.m_position;
}

Result<> AudioInput::begin()
{
    auto *buffer = static_cast<unsigned char *>(av_malloc(ioBufferSize));
    m_io.reset(avio_alloc_context(buffer, ioBufferSize, 0, this, readBytes, nullptr, seekBytes));
    AVFormatContext *context = avformat_alloc_context();
    context->pb = m_io.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->interrupt_callback = {isStopped, const_cast<std::stop_token *>(&m_stop)};
    const AVInputFormat *kind = av_find_input_format(m_layout.demuxer);
    // Takes the context over, and frees it when it fails.
    if (avformat_open_input(&context, nullptr, kind, nullptr) < 0)
        return failure(AudioLayout::damaged());
    m_format.reset(context);
    if (avformat_find_stream_info(context, nullptr) < 0)
        return failure(AudioLayout::damaged());
    const int index = av_find_best_stream(context, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0)
        return failure(AudioLayout::noAudio());
    for (unsigned i = 0; i < context->nb_streams; ++i)
        if (static_cast<int>(i) != index)
            context->streams[i]->discard = AVDISCARD_ALL;
    m_stream = context->streams[index];
    if (const QString reason = checkStream(); !reason.isEmpty())
        return failure(reason);
    return Done{};
}

QString AudioInput::checkStream() const
{
    const AVCodecParameters &parameters = *m_stream->codecpar;
    const int channels = parameters.ch_layout.nb_channels;
    if (!avcodec_find_decoder(parameters.codec_id))
        return QStringLiteral("there is no decoder for its audio (%1)")
            .arg(QLatin1StringView(avcodec_get_name(parameters.codec_id)));
    // Blocks of an unknown size would be decoded to noise.
    if (qstrcmp(m_layout.demuxer, "wav") == 0 && parameters.block_align <= 0)
        return AudioLayout::damaged();
    if (parameters.sample_rate < Av::lowestRate || parameters.sample_rate > Av::highestRate)
        return QStringLiteral("%1 samples a second cannot be converted")
            .arg(parameters.sample_rate);
    if (channels < 1 || channels > Av::mostChannels)
        return QStringLiteral("%1 channels cannot be converted").arg(channels);
    return {};
}

bool AudioInput::isEndedByFile() const
{
    return m_layout.openEnded && m_position == m_size;
}

Result<const AVPacket *> AudioInput::next()
{
    for (;;) {
        av_packet_unref(m_packet.get());
        if (m_stop.stop_requested())
            return failure({});
        const int got = av_read_frame(m_format.get(), m_packet.get());
        if (got == AVERROR_EOF && m_io->error >= 0)
            return static_cast<const AVPacket *>(nullptr);
        if (got < 0)
            return failure(AudioLayout::truncated());
        if (m_packet->stream_index != m_stream->index)
            continue;
        if (av_packet_get_side_data(m_packet.get(), AV_PKT_DATA_ENCRYPTION_INFO, nullptr))
            return failure(AudioLayout::isProtected());
        // Where the length was not told, the last packet is cut short by the file's end.
        if ((m_packet->flags & AV_PKT_FLAG_CORRUPT) != 0 && !isEndedByFile())
            return failure(AudioLayout::truncated());
        return static_cast<const AVPacket *>(m_packet.get());
    }
}

Failure AudioInput::failure(const QString &reason) const
{
    if (m_stop.stop_requested())
        return Failure{QStringLiteral("The job was cancelled.")};
    const Result<> readable = m_bytes.check();
    return readable ? m_bytes.failure(reason) : readable.failure();
}
