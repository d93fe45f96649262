#include "AmrFrame.h"

#include <array>

namespace {

// By the frame's mode; 0 where no such mode exists.
constexpr std::array<int, 16> narrowBand = {13, 14, 16, 18, 20, 21, 27, 32, 6, 0, 0, 0, 0, 0, 0, 1};
constexpr std::array<int, 16> wideBand = {18, 24, 33, 37, 41, 47, 51, 59, 61, 6, 0, 0, 0, 0, 1, 1};

// From here on a mode stands for a pause, not for sound.
constexpr size_t narrowPause = 8;
constexpr size_t widePause = 9;

size_t mode(uchar first)
{
    return first >> 3 & 0xF;
}

}

int AmrFrame::size(uchar first, bool isWide)
{
    // The bits beside the mode and the quality bit are 0 in every file.
    return (first & 0x83) != 0 ? 0 : (isWide ? wideBand : narrowBand)[mode(first)];
}

bool AmrFrame::isPause(uchar first, bool isWide)
{
    return size(first, isWide) > 0 && mode(first) >= (isWide ? widePause : narrowPause);
}
