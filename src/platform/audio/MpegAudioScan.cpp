#include "FileBytes.h"
#include "LayoutScans.h"
#include "MpegHeader.h"
#include "MpegTags.h"

#include <algorithm>

namespace {

constexpr qint64 largestFrame = 1441; // bytes; 320 kbit/s at 32 kHz
constexpr qint64 farthest = 64LL * 1024;
constexpr qint64 mostPadding = 1024LL * 1024; // bytes, of zeros behind a tag

// What one run of an encoder wrote: files of which several were joined have as many.
struct Part
{
    std::optional<MpegNote> note;
    qint64 frames = 0; // without the one that holds the note
    qint64 bytes = 0;  // with it

    [[nodiscard]] bool isNoted() const { return note && note->frames > 0; }

    // Whether as much is there as the encoder noted down; some count the note's frame too.
    [[nodiscard]] bool keepsNote() const
    {
        const bool countsItself =
            isNoted() && note->frames == frames + 1 && note->bytes > 0 && bytes >= note->bytes;
        return !isNoted() || frames >= note->frames || countsItself;
    }
};

class Walk
{
public:
    Walk(FileBytes &bytes, AudioLayout &layout)
        : m_bytes(bytes)
        , m_layout(layout)
        , m_start(MpegTags::behind(bytes, 0, bytes.size()))
        , m_end(MpegTags::before(bytes, m_start))
    {
    }

    // The first frame, which rubbish may hide: three headers in a row are no accident.
    [[nodiscard]] bool findFirst()
    {
        const qint64 from = behindZeros(m_start);
        const qint64 last = std::min(m_end, from + farthest);
        for (qint64 offset = from; offset < last; ++offset)
            if (isChain(offset)) {
                m_layout.begin = m_offset = offset;
                m_first = *frameAt(offset);
                m_note = MpegNote::at(m_bytes, offset, m_first);
                return true;
            }
        return false;
    }

    // Takes the length from the encoder's note, when there is one and it tells of all the bytes:
    // another file may have been joined to the one that it is about.
    [[nodiscard]] bool trustNote()
    {
        if (!m_note || m_note->frames == 0 || m_note->bytes == 0
            || m_end - m_layout.begin > m_note->bytes)
            return false;
        m_layout.frames = m_note->frames;
        m_layout.end = m_end;
        m_layout.ticks =
            ticks(m_note->frames * m_first.samples - m_note->atStart - m_note->atEnd, m_first.rate);
        return true;
    }

    void run(const std::stop_token &stop)
    {
        m_part.note = m_note;
        if (m_note) {
            m_offset += m_first.size;
            m_part.bytes = m_first.size;
        }
        while (!stop.stop_requested() && (stepFrame() || stepTags())) {
        }
        m_layout.end = m_offset;
        m_layout.ticks -= ticks(leftOut(), m_first.rate);
        m_layout.fault = fault();
    }

private:
    static qint64 ticks(qint64 samples, int rate)
    {
        return samples * (AudioLayout::ticksPerSecond / rate);
    }

    [[nodiscard]] std::optional<MpegHeader> frameAt(qint64 offset)
    {
        const uchar *header = offset + 4 <= m_end ? m_bytes.at(offset, 4) : nullptr;
        return header ? MpegHeader::parse(header) : std::nullopt;
    }

    [[nodiscard]] uchar byteAt(qint64 offset)
    {
        const uchar *byte = m_bytes.at(offset, 1);
        return byte ? *byte : 0xFF;
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

    [[nodiscard]] bool isZero(qint64 begin, qint64 end)
    {
        for (qint64 offset = begin; offset < end; ++offset)
            if (byteAt(offset) != 0)
                return false;
        return true;
    }

    [[nodiscard]] qint64 behindZeros(qint64 begin)
    {
        qint64 offset = begin;
        while (offset < m_end && offset - begin < mostPadding && byteAt(offset) == 0)
            ++offset;
        return offset;
    }

    // A note in the middle; there, sound could look like one but for the emptiness before it.
    [[nodiscard]] std::optional<MpegNote> innerNote(qint64 offset, const MpegHeader &frame)
    {
        if (frame.layer != 3 || !isZero(offset + 4, offset + 4 + frame.sideSize()))
            return {};
        return MpegNote::at(m_bytes, offset, frame);
    }

    // False when the part before is not whole.
    [[nodiscard]] bool beginPart(const MpegNote &note, const MpegHeader &frame)
    {
        if (!m_part.keepsNote())
            return false;
        m_part = {note, 0, frame.size};
        return true;
    }

    [[nodiscard]] bool stepFrame()
    {
        const std::optional<MpegHeader> frame = frameAt(m_offset);
        if (!frame || frame->layer != m_first.layer || m_offset + frame->size > m_end)
            return false;
        if (const std::optional<MpegNote> note = innerNote(m_offset, *frame)) {
            // Decoders take its frame for one of silence.
            if (!beginPart(*note, *frame))
                return false;
        } else {
            ++m_part.frames;
            m_part.bytes += frame->size;
        }
        ++m_layout.frames;
        m_layout.ticks += ticks(frame->samples, frame->rate);
        m_zerosBefore = m_zeros;
        m_offset += frame->size;
        m_zeros = zerosBefore(m_offset, frame->size);
        return true;
    }

    // Over tags in the middle, and over the frame of a note behind them, which is no sound.
    [[nodiscard]] bool stepTags()
    {
        const qint64 behind = MpegTags::behind(m_bytes, m_offset, m_end);
        if (behind == m_offset || behind >= m_end)
            return false;
        qint64 next = behindZeros(behind);
        if (!isChain(next))
            return false;
        const MpegHeader frame = *frameAt(next);
        const std::optional<MpegNote> note = innerNote(next, frame);
        // Only before a beginning are zeros not in the place of sound.
        if (note ? !beginPart(*note, frame) : next > behind)
            return false;
        next += note ? frame.size : 0;
        m_layout.gaps.append({m_offset, next});
        m_offset = next;
        return true;
    }

    // The samples that FFmpeg leaves out: it believes what is noted of the end only of a file that
    // is not much larger than noted.
    [[nodiscard]] qint64 leftOut() const
    {
        if (!m_note)
            return 0;
        qint64 shown = m_layout.end - m_layout.begin;
        for (const AudioLayout::Gap &gap : m_layout.gaps)
            shown -= gap.end - gap.begin;
        const bool isJoined = m_note->bytes > 0 && shown - m_note->bytes > m_note->bytes / 16;
        return m_note->atStart + (isJoined ? 0 : m_note->atEnd);
    }

    [[nodiscard]] QString fault()
    {
        if (!m_part.keepsNote())
            return frameAt(m_offset) || m_offset == m_end ? AudioLayout::truncated()
                                                          : AudioLayout::damaged();
        // A stream cut out of a longer one may begin within a frame.
        if ((!m_note || m_note->frames == 0) && m_layout.begin - m_start >= largestFrame)
            return AudioLayout::damaged();
        const qint64 rest = MpegTags::behind(m_bytes, m_offset, m_end);
        if (rest > m_end)
            return AudioLayout::truncated();
        // Players read over what follows all that was noted down, when it is no audio.
        if (m_part.isNoted() && m_part.frames <= m_part.note->frames)
            return hasChain(rest) ? AudioLayout::damaged() : QString();
        if (endsInFiller(rest))
            return {};
        return frameAt(m_offset) ? AudioLayout::truncated() : AudioLayout::damaged();
    }

    [[nodiscard]] bool hasChain(qint64 from)
    {
        for (qint64 offset = from; offset < m_end; ++offset) {
            qint64 next = offset;
            int links = 0;
            while (links < 3) {
                const std::optional<MpegHeader> frame = frameAt(next);
                if (!frame || frame->layer != m_first.layer || next + frame->size > m_end)
                    break;
                next += frame->size;
                ++links;
            }
            if (links == 3)
                return true;
        }
        return false;
    }

    // Whether only zeros or text are left, as some programs fill up their files with.
    [[nodiscard]] bool endsInFiller(qint64 from)
    {
        if (m_end - from > farthest)
            return false;
        if (isZero(from, m_end))
            return m_end - from <= m_first.size || isBesideSound(m_end - from);
        for (qint64 offset = from; offset < m_end; ++offset) {
            const uchar byte = byteAt(offset);
            const bool isText = byte >= ' ' ? byte < 0x7F || (byte > 0x7F && byte < 0xFE)
                                            : byte == 0 || (byte >= '\t' && byte <= '\r');
            if (!isText)
                return false;
        }
        return true;
    }

    // Whether zeros at the end do not stand in the place of sound that is lost: then they are many,
    // or the last frame ends in some itself.
    [[nodiscard]] bool isBesideSound(qint64 zeros) const
    {
        constexpr qint64 chance = 3;
        return zeros <= (m_offset - m_layout.begin) / 2 && m_zeros <= m_zerosBefore + chance;
    }

    [[nodiscard]] qint64 zerosBefore(qint64 end, qint64 most)
    {
        qint64 count = 0;
        while (count < most && byteAt(end - 1 - count) == 0)
            ++count;
        return count;
    }

    FileBytes &m_bytes;
    AudioLayout &m_layout;
    const qint64 m_start;
    const qint64 m_end;
    qint64 m_offset = 0;
    MpegHeader m_first;
    std::optional<MpegNote> m_note;
    Part m_part;
    qint64 m_zeros = 0;       // at the end of the last frame
    qint64 m_zerosBefore = 0; // and of the one before
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
