// The medium in the emulated drive: what it is, its tracks and sessions. It lies in memory that all
// processes with this library share, so that nothing is lost when one of them ends.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace mmc {

// LBA 0 is block 150 of the disc's time code; a CD's lead-in lies before that.
inline constexpr int preGap = 150;
inline constexpr int noTrack = -1;

enum Profile : std::uint16_t {
    NoProfile = 0x0000,
    CdRom = 0x0008,
    CdR = 0x0009,
    CdRw = 0x000a,
    DvdPlusRw = 0x001a,
    BdRe = 0x0043
};

struct MediumKind
{
    const char *name; // as in the file "insert"
    Profile profile;
    int capacity; // blocks
    bool erasable;
    bool overwritable;
    int singleSpeed;            // KB (1,000 bytes) per second
    std::array<int, 4> factors; // write speeds in multiples of a tenth of the single speed
};

[[nodiscard]] std::span<const MediumKind> mediumKinds();

struct Track
{
    int start;
    int blocks; // that can be read
    int runOut; // blocks behind these that cannot
    std::uint8_t session;
    std::uint8_t control; // as in the table of contents: 0 audio, 4 data

    [[nodiscard]] int end() const { return start + blocks + runOut; }
    [[nodiscard]] bool isAudio() const { return (control & 4) == 0; }
};

// Plain memory: all zero is a drive without a medium.
struct Medium
{
    int kindNumber; // from 1
    int capacity;
    int trackCount;
    int closedSessions;
    bool finalized; // no session can follow
    bool trackOpen; // the last track is being written
    bool spoiled;   // a session that was cut off
    bool formatted; // overwritable media: blocks can be written
    Track tracks[99];

    [[nodiscard]] bool isPresent() const { return kindNumber > 0; }
    [[nodiscard]] const MediumKind &kind() const;
    [[nodiscard]] Profile profile() const { return isPresent() ? kind().profile : NoProfile; }
    [[nodiscard]] bool isCd() const { return isPresent() && profile() <= CdRw; }
    [[nodiscard]] bool isBlank() const { return trackCount == 0 && !spoiled; }
    [[nodiscard]] bool isWritable() const { return !finalized && !spoiled; }

    void insert(const MediumKind &kind, int capacity);
    void blank(); // as erasing leaves it, its blocks aside

    // Where the next track is written; the lead-out of a closed session; the track of a block.
    [[nodiscard]] int nextWritable() const;
    [[nodiscard]] int leadOut(int session) const;
    [[nodiscard]] int trackOf(int block) const;

    // Blocks up to the end of the last closed session, or of an overwritable medium.
    [[nodiscard]] int readableBlocks() const;

    Track &addTrack(int start, std::uint8_t control);
    void closeTrack();
    void closeSession(bool another);
};

}
