#include "FileBytes.h"
#include "LayoutScans.h"

#include <QByteArrayView>
#include <QtEndian>

#include <functional>
#include <optional>

namespace {

struct Chunk
{
    bool isAudio = false;
    qint64 start = 0; // of the content
    qint64 size = 0;
};

using ReadChunk = std::function<std::optional<Chunk>(qint64 offset)>;

// What writers put down who cannot go back to write the size: nothing, everything, and, in two
// wide-spread programs, almost or just two gigabytes.
bool isUnknownWaveSize(quint32 size)
{
    return size == 0 || size == 0xFFFF'FFFF || (size >= 0x7FFF'E000 && size <= 0x8000'0000);
}

AudioLayout layoutOf(const char *demuxer, const FileBytes &bytes)
{
    AudioLayout layout;
    layout.demuxer = demuxer;
    layout.end = bytes.size();
    return layout;
}

// Goes from chunk to chunk up to the audio; what follows it is of no use to us.
void findAudio(AudioLayout &layout, qint64 offset, const ReadChunk &read)
{
    while (const std::optional<Chunk> chunk = read(offset)) {
        const bool fits = chunk->size >= 0 && chunk->size <= layout.end - chunk->start;
        if (!fits && !(chunk->isAudio && layout.openEnded))
            break;
        if (chunk->isAudio)
            return;
        offset = chunk->start + chunk->size;
    }
    layout.fault = AudioLayout::truncated();
}

bool isType(const uchar *header, const char *type)
{
    return QByteArrayView(header, 4) == type;
}

}

AudioLayout LayoutScans::wave(FileBytes &bytes)
{
    AudioLayout layout = layoutOf("wav", bytes);
    const bool isBigEndian = isType(bytes.at(0, 4), "RIFX");
    qint64 largeSize = -1; // of the audio, in a file with 64-bit sizes
    findAudio(layout, 12, [&](qint64 offset) -> std::optional<Chunk> {
        const uchar *header = bytes.at(offset, 8);
        if (!header)
            return {};
        const quint32 size = isBigEndian ? qFromBigEndian<quint32>(header + 4)
                                         : qFromLittleEndian<quint32>(header + 4);
        if (!isType(header, "data")) {
            const uchar *sizes = isType(header, "ds64") ? bytes.at(offset + 16, 8) : nullptr;
            largeSize = sizes ? qFromLittleEndian<qint64>(sizes) : largeSize;
            return Chunk{false, offset + 8, qint64(size) + size % 2};
        }
        if (size == 0xFFFF'FFFF && largeSize > 0)
            return Chunk{true, offset + 8, largeSize};
        layout.openEnded = isUnknownWaveSize(size) && (size == 0 || size > layout.end - offset);
        return Chunk{true, offset + 8, size};
    });
    return layout;
}

AudioLayout LayoutScans::aiff(FileBytes &bytes)
{
    AudioLayout layout = layoutOf("aiff", bytes);
    findAudio(layout, 12, [&](qint64 offset) -> std::optional<Chunk> {
        const uchar *header = bytes.at(offset, 8);
        if (!header)
            return {};
        const quint32 size = qFromBigEndian<quint32>(header + 4);
        const bool isAudio = isType(header, "SSND");
        return Chunk{isAudio, offset + 8, isAudio ? qint64(size) : qint64(size) + size % 2};
    });
    return layout;
}

AudioLayout LayoutScans::au(FileBytes &bytes)
{
    AudioLayout layout = layoutOf("au", bytes);
    const uchar *header = bytes.at(0, 24);
    if (!header) {
        layout.fault = AudioLayout::truncated();
        return layout;
    }
    const qint64 start = qFromBigEndian<quint32>(header + 4);
    const quint32 size = qFromBigEndian<quint32>(header + 8);
    layout.openEnded = size == 0xFFFF'FFFF;
    if (start > layout.end || (!layout.openEnded && size > layout.end - start))
        layout.fault = AudioLayout::truncated();
    return layout;
}

AudioLayout LayoutScans::caf(FileBytes &bytes)
{
    AudioLayout layout = layoutOf("caf", bytes);
    findAudio(layout, 8, [&](qint64 offset) -> std::optional<Chunk> {
        const uchar *header = bytes.at(offset, 12);
        if (!header)
            return {};
        const bool isAudio = isType(header, "data");
        const qint64 size = qFromBigEndian<qint64>(header + 4);
        layout.openEnded = isAudio && size == -1;
        return Chunk{isAudio, offset + 12, size};
    });
    return layout;
}
