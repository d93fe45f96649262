// Executes the commands of MMC-6 that burning programs send. One command at a time; the caller's
// thread.
#pragma once

#include "Controls.h"

#include <cstddef>

namespace mmc {

struct Sense
{
    std::uint8_t key = 0; // 0: the command succeeded
    std::uint8_t asc = 0;
    std::uint8_t ascq = 0;
    int progress = -1; // of 65,536
};

class Drive
{
public:
    Drive(Controls &controls, const std::uint8_t *command, int commandLength,
          std::span<std::uint8_t> data);

    [[nodiscard]] Sense run();

    // Bytes that were put into the data buffer.
    [[nodiscard]] std::size_t replied() const { return m_replied; }

private:
    [[nodiscard]] Sense checkReady();
    [[nodiscard]] Sense dispatch();

    // What the drive tells of itself: DriveReplies.cpp; of its disc: DiscReplies.cpp
    Sense inquiry();
    Sense getConfiguration();
    Sense modeSense();
    Sense readDiscInformation();
    Sense readTrackInformation();
    Sense readToc();
    Sense readAtip();
    Sense readPacks();
    Sense readTracks();
    Sense readLastSession();
    Sense readLeadIn();
    Sense readFormatCapacities();
    Sense readCapacity();
    Sense readBufferCapacity();
    Sense getPerformance();
    Sense getEventStatus();
    Sense requestSense();
    Sense readDiscStructure();

    // What the drive does: Drive.cpp
    Sense modeSelect();
    Sense readBlocks(bool wholeSectors);
    Sense blank();
    Sense format();
    Sense startStop();
    Sense setSpeed();
    [[nodiscard]] Sense checkFaults(int block, int count);
    [[nodiscard]] off_t positionOf(int block) const; // in the file "blocks"

    // How it writes: DriveWrites.cpp
    Sense sendCueSheet();
    Sense writeBlocks();
    Sense writePacks(int count);
    Sense closeTrackOrSession();
    Sense synchronize();
    Sense openTrack(int block);
    void finishSession();
    [[nodiscard]] bool isSessionAtOnce() const;
    [[nodiscard]] int blockSizeAt(int block) const; // of a session written by its cue sheet
    void lose();
    void busyFor(int milliseconds);
    void pace(std::size_t bytes);

    [[nodiscard]] unsigned byte(int index) const { return m_command[index]; }
    [[nodiscard]] unsigned two(int index) const { return byte(index) << 8 | byte(index + 1); }
    [[nodiscard]] int four(int index) const
    {
        return static_cast<int>(two(index) << 16 | two(index + 2));
    }
    Sense reply(std::span<const std::uint8_t> bytes, unsigned allocation);

    Controls &m_controls;
    Registers &m_registers;
    Medium &m_medium;
    std::uint8_t m_command[16] = {};
    std::span<std::uint8_t> m_data;
    std::size_t m_replied = 0;
};

inline constexpr int dataBlock = 2048;
inline constexpr int cdBlock = 2352; // also what each block of a CD takes in the file "blocks"

inline constexpr Sense invalidField{5, 0x24, 0};
inline constexpr Sense invalidAddress{5, 0x21, 0};
inline constexpr Sense noMedium{2, 0x3a, 1};
inline constexpr Sense wrongFormat{5, 0x30, 5};

}
