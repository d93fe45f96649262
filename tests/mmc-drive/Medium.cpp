#include "Medium.h"

#include <algorithm>

namespace mmc {

namespace {

// What lies between sessions, in blocks: the lead-out of the first one or of a later one, the
// lead-in of the next. And the two blocks that end a track written at once.
constexpr int firstLeadOut = 6750;
constexpr int laterLeadOut = 2250;
constexpr int leadIn = 4500;
constexpr int runOutBlocks = 2;

constexpr std::array kinds{
    MediumKind{"cd-rom", CdRom, 359849, false, false, 176, {}},
    MediumKind{"cd-r", CdR, 359849, false, false, 176, {40, 80, 160, 480}},
    MediumKind{"cd-rw", CdRw, 359849, true, false, 176, {40, 80, 100, 240}},
    MediumKind{"dvd+rw", DvdPlusRw, 2295104, true, true, 1385, {24, 40, 60, 80}},
    MediumKind{"bd-re", BdRe, 11826176, true, true, 4496, {10, 20}},
};

}

std::span<const MediumKind> mediumKinds()
{
    return kinds;
}

const MediumKind &Medium::kind() const
{
    return kinds.at(static_cast<std::size_t>(kindNumber - 1));
}

void Medium::insert(const MediumKind &kind, int blocks)
{
    *this = {};
    kindNumber = static_cast<int>(&kind - kinds.data()) + 1;
    capacity = blocks > 0 ? blocks : kind.capacity;
    blank();
    if (kind.profile == CdRom) { // a pressed disc of some length
        constexpr std::uint8_t data = 4;
        addTrack(0, data).blocks = 300;
        closeSession(false);
    }
}

void Medium::blank()
{
    trackCount = closedSessions = 0;
    finalized = trackOpen = spoiled = false;
}

int Medium::nextWritable() const
{
    if (trackCount == 0)
        return 0;
    const Track &last = tracks[trackCount - 1];
    if (trackOpen)
        return last.start + last.blocks;
    if (last.session > closedSessions)
        return last.end() + preGap;
    return last.end() + (closedSessions == 1 ? firstLeadOut : laterLeadOut) + leadIn + preGap;
}

int Medium::leadOut(int session) const
{
    int end = 0;
    for (const Track &track : std::span(tracks, static_cast<std::size_t>(trackCount)))
        if (track.session <= session)
            end = track.end();
    return end;
}

int Medium::trackOf(int block) const
{
    for (int i = trackCount - 1; i >= 0; --i)
        if (block >= tracks[i].start - (i == 0 ? preGap : 0))
            return block < tracks[i].start + tracks[i].blocks ? i : noTrack;
    return noTrack;
}

int Medium::readableBlocks() const
{
    if (isPresent() && kind().overwritable)
        return formatted ? capacity : 0;
    return leadOut(closedSessions);
}

Track &Medium::addTrack(int start, std::uint8_t control)
{
    Track &track = tracks[trackCount++];
    track = {start, 0, 0, static_cast<std::uint8_t>(closedSessions + 1), control};
    return track;
}

void Medium::closeTrack()
{
    if (trackOpen)
        tracks[trackCount - 1].runOut = runOutBlocks;
    trackOpen = false;
}

void Medium::closeSession(bool another)
{
    closeTrack();
    if (trackCount > 0 && tracks[trackCount - 1].session > closedSessions)
        ++closedSessions;
    finalized = !another;
}

}
