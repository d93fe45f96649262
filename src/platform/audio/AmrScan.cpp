#include "FileBytes.h"
#include "LayoutScans.h"

#include <QByteArrayView>

#include <array>

namespace {

// Bytes of a frame by its mode, its first byte included; 0 where no such mode exists.
constexpr std::array<int, 16> narrowBand = {13, 14, 16, 18, 20, 21, 27, 32, 6, 0, 0, 0, 0, 0, 0, 1};
constexpr std::array<int, 16> wideBand = {18, 24, 33, 37, 41, 47, 51, 59, 61, 6, 0, 0, 0, 0, 1, 1};

// From here on a mode stands for a pause, not for sound.
constexpr int narrowPause = 8;
constexpr int widePause = 9;

constexpr double frameSeconds = 0.02;

}

AudioLayout LayoutScans::amr(FileBytes &bytes, const std::stop_token &stop)
{
    AudioLayout layout;
    layout.demuxer = "amr";
    layout.end = bytes.size();
    const uchar *magic = bytes.at(0, 9);
    const bool isWide = magic && QByteArrayView(magic, 9) == "#!AMR-WB\n";
    if (!isWide && QByteArrayView(bytes.at(0, 6), 6) != "#!AMR\n") {
        layout.fault = AudioLayout::notAudio();
        return layout;
    }
    qint64 offset = isWide ? 9 : 6;
    while (const uchar *first = bytes.at(offset, 1)) {
        if (stop.stop_requested())
            return layout;
        // The bits beside the mode and the quality bit are 0 in every file.
        const int size = (*first & 0x83) ? 0 : (isWide ? wideBand : narrowBand)[*first >> 3 & 0xF];
        if (size == 0 || offset + size > layout.end) {
            layout.fault = size == 0 ? AudioLayout::damaged() : AudioLayout::truncated();
            break;
        }
        if ((*first >> 3 & 0xF) >= (isWide ? widePause : narrowPause))
            layout.fault = QStringLiteral("recordings with marked pauses cannot be decoded");
        offset += size;
        ++layout.frames;
    }
    layout.seconds = static_cast<double>(layout.frames) * frameSeconds;
    return layout;
}
