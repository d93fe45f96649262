// The header of a frame of MPEG audio (layers I to III), and the note that encoders leave in the
// first frame of a file about its whole length. Any thread.
#pragma once

#include <QtGlobal>

#include <optional>

class FileBytes;

struct MpegHeader
{
    int size = 0;    // bytes of the frame, the header included
    int samples = 0; // of each channel
    int rate = 0;    // samples a second
    int layer = 0;
    bool isMono = false;
    bool isLowRate = false; // MPEG-2 or 2.5

    [[nodiscard]] int sideSize() const; // bytes behind the four of the header, of layer III

    // Null for what is no header; so-called free formats, which tell no size, count as none.
    [[nodiscard]] static std::optional<MpegHeader> parse(const uchar *bytes);
};

// What a Xing, Info or VBRI header tells, frames or bytes at least; the frame that holds it is no
// audio.
struct MpegNote
{
    qint64 frames = 0;  // 0 when not told
    qint64 bytes = 0;   // of the whole stream with this frame; 0 when not told
    qint64 atStart = 0; // samples that the encoder and the decoder add
    qint64 atEnd = 0;

    [[nodiscard]] static std::optional<MpegNote> at(FileBytes &bytes, qint64 offset,
                                                    const MpegHeader &header);
};
