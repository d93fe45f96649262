#include "LengthScan.h"

#include "MpegHeader.h"
#include "StereoConverter.h"

#include <QMap>
#include <QtEndian>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
}

namespace {

class Count
{
public:
    explicit Count(const AudioInput &input)
        : m_input(input)
        , m_stream(input.stream())
    {
    }

    // False for a packet that is not what it should be.
    [[nodiscard]] bool add(const AVPacket &packet)
    {
        ++m_packets;
        return m_input.layout().isMpeg ? addMpeg(packet) : addOther(packet);
    }

    [[nodiscard]] bool isKnown() const { return m_isKnown; }

    // Whether as much came as was announced.
    [[nodiscard]] bool isComplete() const
    {
        const AudioLayout &layout = m_input.layout();
        if (layout.isMpeg && m_packets != layout.frames)
            return false;
        // An AIFF file tells its length in another place than the size of its audio.
        return qstrcmp(layout.demuxer, "aiff") != 0 || m_ticks >= m_stream.duration;
    }

    [[nodiscard]] qint64 outputFrames() const
    {
        if (!m_input.layout().isMpeg)
            return StereoConverter::framesFor(trueSamples(), rate());
        qint64 frames = 0;
        for (auto part = m_mpegSamples.cbegin(); part != m_mpegSamples.cend(); ++part)
            frames += StereoConverter::framesFor(qMax<qint64>(0, part.value()), part.key());
        return frames;
    }

private:
    [[nodiscard]] int rate() const { return m_stream.codecpar->sample_rate; }

    [[nodiscard]] bool addMpeg(const AVPacket &packet)
    {
        const auto header = packet.size >= 4 ? MpegHeader::parse(packet.data) : std::nullopt;
        if (!header || header->size != packet.size)
            return false;
        m_mpegSamples[header->rate] += header->samples - leftOut(packet, header->samples);
        return true;
    }

    [[nodiscard]] bool addOther(const AVPacket &packet)
    {
        qint64 ticks = packet.duration;
        if (ticks <= 0) {
            const int samples = av_get_audio_frame_duration2(m_stream.codecpar, packet.size);
            ticks = av_rescale_q(samples, {1, rate()}, m_stream.time_base);
        }
        m_isKnown = m_isKnown && ticks > 0;
        const qint64 most = Av::longest * m_stream.time_base.den / m_stream.time_base.num;
        if (ticks < 0 || ticks > most || m_ticks > most)
            return false;
        m_leftOut += leftOut(packet, toSamples(ticks));
        m_ticks += ticks;
        return true;
    }

    // The samples of a packet that FFmpeg's decoders do not give out, as they reckon: what to skip
    // reaches into the packets that follow, and one that is discarded whole counts towards it.
    [[nodiscard]] qint64 leftOut(const AVPacket &packet, qint64 samples)
    {
        size_t size = 0;
        const uint8_t *skip = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
        qint64 atEnd = 0;
        if (skip && size >= 10) {
            m_toSkip = qFromLittleEndian<quint32>(skip);
            atEnd = qFromLittleEndian<quint32>(skip + 4);
        }
        const qint64 atStart = qMin(m_toSkip, samples);
        m_toSkip -= atStart;
        const bool isDiscarded = (packet.flags & AV_PKT_FLAG_DISCARD) != 0;
        return isDiscarded ? samples : atStart + qMin(atEnd, samples - atStart);
    }

    [[nodiscard]] qint64 toSamples(qint64 ticks) const
    {
        return av_rescale_q(ticks, m_stream.time_base, {1, rate()});
    }

    // Encoders of AAC fill up the last packet. What is true is told by one of two notes.
    [[nodiscard]] qint64 trueSamples() const
    {
        const qint64 samples = toSamples(m_ticks) - m_leftOut;
        if (const std::optional<qint64> noted = LengthScan::notedSamples(m_input, samples))
            return *noted;
        // The edit list counts in coarser units, so it is not let cut off less than they measure.
        const qint64 edited = toSamples(qMax<qint64>(0, m_stream.duration));
        const bool isMp4 = qstrcmp(m_input.layout().demuxer, "mov") == 0;
        return isMp4 && edited > 0 && samples - edited > rate() / 500 ? edited : samples;
    }

    const AudioInput &m_input;
    const AVStream &m_stream;
    bool m_isKnown = true;
    qint64 m_packets = 0;
    qint64 m_ticks = 0;              // of the stream's time base
    qint64 m_leftOut = 0;            // samples
    qint64 m_toSkip = 0;             // samples that the packets to come are short of
    QMap<int, qint64> m_mpegSamples; // by rate
};

}

std::optional<qint64> LengthScan::notedSamples(const AudioInput &input, qint64 inPackets)
{
    const AVDictionaryEntry *note = av_dict_get(input.format().metadata, "iTunSMPB", nullptr, 0);
    const QByteArray words = QByteArray(note ? note->value : "").simplified();
    const qint64 noted = words.split(' ').value(3).toLongLong(nullptr, 16);
    constexpr int mostPadding = 4096; // samples
    const bool isLikely = noted > 0 && noted <= inPackets && inPackets - noted <= mostPadding;
    return isLikely ? std::optional(noted) : std::nullopt;
}

Result<std::optional<qint64>> LengthScan::outputFrames(AudioInput &input)
{
    Count count(input);
    for (;;) {
        const Result<const AVPacket *> packet = input.next();
        if (!packet)
            return packet.failure();
        if (!packet.value())
            break;
        if (!count.add(*packet.value()))
            return input.failure(AudioLayout::damaged());
    }
    if (const Result<> readable = input.bytes().check(); !readable)
        return readable.failure();
    if (!count.isKnown())
        return std::optional<qint64>();
    if (!count.isComplete())
        return input.failure(AudioLayout::truncated());
    return std::optional(count.outputFrames());
}
