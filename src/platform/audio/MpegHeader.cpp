#include "MpegHeader.h"

#include "FileBytes.h"

#include <QByteArrayView>
#include <QtEndian>

#include <array>

namespace {

using Rates = std::array<int, 15>; // kbit/s
constexpr Rates layer1 = {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448};
constexpr Rates layer2 = {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr Rates layer3 = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr Rates layer1Low = {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
constexpr Rates layer23Low = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

const Rates &bitRates(int layer, bool isLowRate)
{
    if (isLowRate)
        return layer == 1 ? layer1Low : layer23Low;
    return layer == 1 ? layer1 : layer == 2 ? layer2 : layer3;
}

// A decoder needs so many samples before the first good one, beyond what the encoder added.
constexpr int decoderDelay = 529;

std::optional<MpegNote> told(const MpegNote &note)
{
    return note.frames > 0 || note.bytes > 0 ? std::optional(note) : std::nullopt;
}

MpegNote xing(const uchar *from, const uchar *end)
{
    MpegNote note;
    const quint32 has = qFromBigEndian<quint32>(from + 4);
    const uchar *next = from + 8;
    if (has & 1) {
        note.frames = qFromBigEndian<quint32>(next);
        next += 4;
    }
    if (has & 2) {
        note.bytes = qFromBigEndian<quint32>(next);
        next += 4;
    }
    next += (has & 4 ? 100 : 0) + (has & 8 ? 4 : 0);
    const QByteArrayView encoder(next, next + 24 <= end ? 4 : 0);
    if (encoder == "LAME" || encoder == "Lavf" || encoder == "Lavc") {
        const int start = next[21] << 4 | next[22] >> 4;
        const int finish = (next[22] & 0xF) << 8 | next[23];
        note.atStart = start + decoderDelay;
        note.atEnd = qMax(0, finish - decoderDelay);
    }
    return note;
}

}

std::optional<MpegHeader> MpegHeader::parse(const uchar *bytes)
{
    const quint32 bits = qFromBigEndian<quint32>(bytes);
    const int version = bits >> 19 & 3; // 0 is MPEG-2.5, 2 is MPEG-2, 3 is MPEG-1
    const int rateIndex = bits >> 10 & 3;
    const int bitRateIndex = bits >> 12 & 15;
    MpegHeader header;
    header.layer = 4 - static_cast<int>(bits >> 17 & 3);
    if (bits >> 21 != 0x7FF || version == 1 || header.layer == 4 || rateIndex == 3
        || bitRateIndex == 0 || bitRateIndex == 15)
        return {};
    header.isLowRate = version != 3;
    header.isMono = (bits >> 6 & 3) == 3;
    constexpr std::array<int, 3> fullRates = {44'100, 48'000, 32'000};
    header.rate = fullRates[static_cast<size_t>(rateIndex)] >> (version == 0   ? 2
                                                                : version == 2 ? 1
                                                                               : 0);
    const int bitRate =
        bitRates(header.layer, header.isLowRate)[static_cast<size_t>(bitRateIndex)] * 1000;
    const int pad = bits >> 9 & 1;
    const bool isShort = header.layer == 3 && header.isLowRate;
    header.samples = header.layer == 1 ? 384 : isShort ? 576 : 1152;
    header.size = header.layer == 1 ? (12 * bitRate / header.rate + pad) * 4
                                    : header.samples / 8 * bitRate / header.rate + pad;
    return header;
}

int MpegHeader::sideSize() const
{
    return isLowRate ? (isMono ? 9 : 17) : (isMono ? 17 : 32);
}

std::optional<MpegNote> MpegNote::at(FileBytes &bytes, qint64 offset, const MpegHeader &header)
{
    const uchar *frame = header.layer == 3 ? bytes.at(offset, header.size) : nullptr;
    constexpr int longest = 120; // bytes of a note up to the encoder's name
    constexpr int vbriOffset = 36;
    const int side = header.sideSize();
    if (!frame || header.size < 4 + side + longest)
        return {};
    const QByteArrayView name(frame + 4 + side, 4);
    if (name == "Xing" || name == "Info")
        return told(xing(frame + 4 + side, frame + header.size));
    if (QByteArrayView(frame + vbriOffset, 4) != "VBRI")
        return {};
    MpegNote note;
    note.bytes = qFromBigEndian<quint32>(frame + vbriOffset + 10);
    note.frames = qFromBigEndian<quint32>(frame + vbriOffset + 14);
    return told(note);
}
