#include "PcmStream.h"

#include "PcmDecoder.h"

#include <algorithm>
#include <cstring>

PcmStream::PcmStream(const AudioSource &source)
    : m_frames(source.m_frames)
    , m_total(source.byteCount())
{
}

PcmStream::PcmStream(PcmStream &&other) noexcept = default;
PcmStream &PcmStream::operator=(PcmStream &&other) noexcept = default;
PcmStream::~PcmStream() = default;

Result<PcmStream> PcmStream::open(const AudioSource &source)
{
    Result<FileBytes> bytes = FileBytes::open(source.m_path);
    if (!bytes)
        return bytes.failure();
    if (bytes.value().size() != source.m_size || bytes.value().modified() != source.m_modified)
        return bytes.value().failure(QStringLiteral("the file has changed meanwhile"));
    auto input = AudioInput::open(std::move(bytes.value()), source.m_layout, {});
    if (!input)
        return input.failure();
    auto decoder = PcmDecoder::open(std::move(input.value()));
    if (!decoder)
        return decoder.failure();
    PcmStream stream(source);
    stream.m_decoder = std::move(decoder.value());
    return stream;
}

Result<qint64> PcmStream::read(char *buffer, qint64 size)
{
    const qint64 wanted = std::min(size, m_total - m_given);
    for (qint64 done = 0; done < wanted;) {
        const qint64 piece = std::min<qint64>(wanted - done, m_ready.size() - m_readyStart);
        if (piece > 0) {
            std::memcpy(buffer + done, m_ready.constData() + m_readyStart,
                        static_cast<size_t>(piece));
            m_readyStart += piece;
            done += piece;
        } else if (const Result<> more = decodeMore(); !more) {
            return more.failure();
        }
    }
    m_given += wanted;
    while (m_given == m_total && !m_isEnded)
        if (const Result<> more = decodeMore(); !more)
            return more.failure();
    return wanted;
}

Result<> PcmStream::decodeMore()
{
    // Keeps its memory, so that decoding does not allocate.
    m_ready.resize(0);
    m_readyStart = 0;
    const Result<bool> more = m_decoder->next(m_ready);
    if (!more)
        return more.failure();
    const qint64 room = std::max<qint64>(0, m_frames - m_decoded) * StereoConverter::frameSize;
    m_decoded += m_ready.size() / StereoConverter::frameSize;
    m_ready.truncate(std::min<qint64>(room, m_ready.size()));
    return more.value() ? Result<>(Done{}) : finish();
}

Result<> PcmStream::finish()
{
    const AudioInput &input = m_decoder->input();
    if (const Result<> same = input.bytes().check(); !same)
        return same;
    // The resampler's own rounding is made good; a packet that was lost is not.
    if (m_frames - m_decoded > AudioSource::sectorFrames)
        return input.failure(AudioLayout::truncated());
    if (m_decoded - m_frames > AudioSource::sectorFrames + m_decoder->surplus())
        return input.failure(AudioLayout::damaged());
    m_isEnded = true;
    const qint64 decodedBytes = std::min(m_decoded, m_frames) * StereoConverter::frameSize;
    m_ready.append(m_total - decodedBytes, '\0');
    return Done{};
}
