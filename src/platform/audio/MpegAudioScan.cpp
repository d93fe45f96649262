#include "FileBytes.h"
#include "LayoutScans.h"
#include "MpegHeader.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr qint64 largestFrame = 1441; // bytes; 320 kbit/s at 32 kHz

qint64 syncSafe(const uchar *bytes)
{
    return (bytes[0] & 0x7F) << 21 | (bytes[1] & 0x7F) << 14 | (bytes[2] & 0x7F) << 7
           | (bytes[3] & 0x7F);
}

// The position behind the tags at a file's start.
qint64 behindTags(FileBytes &bytes)
{
    qint64 offset = 0;
    while (const uchar *head = bytes.at(offset, 10)) {
        if (QByteArrayView(head, 3) != "ID3")
            break;
        constexpr int hasFooter = 0x10;
        offset += 10 + syncSafe(head + 6) + ((head[5] & hasFooter) ? 10 : 0);
    }
    return offset;
}

// The length of one tag that ends at a position; 0 when there is none.
qint64 tagBefore(FileBytes &bytes, qint64 end)
{
    const auto holds = [&](qint64 offset, QByteArrayView text) {
        const uchar *found = bytes.at(offset, text.size());
        return found && offset + text.size() <= end && QByteArrayView(found, text.size()) == text;
    };
    if (holds(end - 128, "TAG"))
        return 128;
    if (holds(end - 227, "TAG+"))
        return 227;
    if (holds(end - 32, "APETAGEX")) {
        const qint64 size = qFromLittleEndian<quint32>(bytes.at(end - 20, 4));
        const bool hasHeader = (*bytes.at(end - 9, 1) & 0x80) != 0;
        return size + (hasHeader ? 32 : 0);
    }
    if (holds(end - 9, "LYRICS200")) {
        const uchar *digits = bytes.at(end - 15, 6);
        return digits ? QByteArrayView(digits, 6).toLongLong() + 15 : 0;
    }
    if (holds(end - 10, "3DI"))
        return syncSafe(bytes.at(end - 4, 4)) + 20;
    return 0;
}

// The position before the tags at a file's end.
qint64 beforeTags(FileBytes &bytes, qint64 begin)
{
    qint64 end = bytes.size();
    for (qint64 length = tagBefore(bytes, end); length > 0 && end - length >= begin;
         length = tagBefore(bytes, end))
        end -= length;
    return end;
}

class Walk
{
public:
    Walk(FileBytes &bytes, AudioLayout &layout)
        : m_bytes(bytes)
        , m_layout(layout)
        , m_start(behindTags(bytes))
        , m_end(beforeTags(bytes, m_start))
    {
    }

    // The first frame, which rubbish may hide: three headers in a row are no accident.
    [[nodiscard]] bool findFirst()
    {
        constexpr qint64 farthest = 64LL * 1024;
        const qint64 last = std::min(m_end, m_start + farthest);
        for (qint64 offset = m_start; offset < last; ++offset)
            if (isChain(offset)) {
                m_layout.begin = m_offset = offset;
                m_first = *frameAt(offset);
                m_note = MpegNote::at(m_bytes, offset, m_first);
                return true;
            }
        return false;
    }

    // Takes the length from the encoder's note, when there is one.
    [[nodiscard]] bool trustNote()
    {
        if (!m_note || m_note->frames == 0)
            return false;
        m_layout.frames = m_note->frames;
        m_layout.end = m_end;
        m_layout.seconds =
            seconds(m_note->frames * m_first.samples - m_note->padding, m_first.rate);
        return true;
    }

    void run(const std::stop_token &stop)
    {
        if (m_note)
            m_offset += m_first.size;
        while (const std::optional<MpegHeader> frame = frameAt(m_offset)) {
            if (frame->layer != m_first.layer || m_offset + frame->size > m_end
                || stop.stop_requested())
                break;
            m_offset += frame->size;
            ++m_layout.frames;
            m_layout.seconds += seconds(frame->samples, frame->rate);
        }
        m_layout.end = m_offset;
        if (m_note)
            m_layout.seconds -= seconds(m_note->padding, m_first.rate);
        m_layout.fault = fault();
    }

private:
    static double seconds(qint64 samples, int rate) { return static_cast<double>(samples) / rate; }

    [[nodiscard]] std::optional<MpegHeader> frameAt(qint64 offset)
    {
        const uchar *header = offset + 4 <= m_end ? m_bytes.at(offset, 4) : nullptr;
        return header ? MpegHeader::parse(header) : std::nullopt;
    }

    [[nodiscard]] bool isChain(qint64 offset)
    {
        int layer = 0;
        for (int links = 0; links < 3; ++links) {
            const std::optional<MpegHeader> frame = frameAt(offset);
            if (!frame || (links > 0 && frame->layer != layer))
                return links > 0 && offset >= m_end - 4;
            layer = frame->layer;
            offset += frame->size;
        }
        return true;
    }

    // Whether as much is there as the encoder noted down; some count the note's frame too.
    [[nodiscard]] bool keepsNote() const
    {
        const qint64 length = m_offset - m_layout.begin;
        const bool countsItself =
            m_note->frames == m_layout.frames + 1 && m_note->bytes > 0 && length >= m_note->bytes;
        return m_layout.frames >= m_note->frames || countsItself;
    }

    [[nodiscard]] QString fault()
    {
        const bool isNoted = m_note && m_note->frames > 0;
        if (isNoted && !keepsNote())
            return frameAt(m_offset) || m_offset == m_end ? AudioLayout::truncated()
                                                          : AudioLayout::damaged();
        // A stream cut out of a longer one may begin within a frame.
        if (!isNoted && m_layout.begin - m_start >= largestFrame)
            return AudioLayout::damaged();
        // Behind all that was noted down nothing more is audio.
        if (isNoted && m_layout.frames == m_note->frames)
            return {};
        if (m_offset == m_end || endsInZeros(m_first.size))
            return {};
        return frameAt(m_offset) ? AudioLayout::truncated() : AudioLayout::damaged();
    }

    // Whether only so many zeros are left, as some programs fill up their files with.
    [[nodiscard]] bool endsInZeros(qint64 most)
    {
        if (m_end - m_offset > most)
            return false;
        for (qint64 offset = m_offset; offset < m_end; ++offset)
            if (const uchar *byte = m_bytes.at(offset, 1); !byte || *byte != 0)
                return false;
        return true;
    }

    FileBytes &m_bytes;
    AudioLayout &m_layout;
    const qint64 m_start;
    const qint64 m_end;
    qint64 m_offset = 0;
    MpegHeader m_first;
    std::optional<MpegNote> m_note;
};

}

AudioLayout LayoutScans::mpeg(FileBytes &bytes, AudioLayout::Depth depth,
                              const std::stop_token &stop)
{
    AudioLayout layout;
    Walk walk(bytes, layout);
    if (!walk.findFirst()) {
        layout.fault = AudioLayout::notAudio();
        return layout;
    }
    layout.demuxer = "mp3";
    layout.isMpeg = true;
    if (depth == AudioLayout::Depth::Whole || !walk.trustNote())
        walk.run(stop);
    return layout;
}
