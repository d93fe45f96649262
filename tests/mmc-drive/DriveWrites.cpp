#include "Drive.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

namespace mmc {

namespace {

constexpr int packBlock = 96; // of the lead-in: four packs, six bits a byte

// Write type of mode page 5; any other is a track at once.
constexpr int sessionAtOnce = 2;

constexpr Sense wrongSequence{5, 0x2c, 0};
constexpr Sense endOfUserArea{5, 0x63, 0};

struct CueEntry
{
    std::uint8_t controlAndAddress;
    std::uint8_t track; // 0: lead-in, 0xaa: lead-out
    std::uint8_t index;
    std::uint8_t form;
    std::uint8_t scms;
    std::uint8_t minute;
    std::uint8_t second;
    std::uint8_t frame;

    [[nodiscard]] bool isPosition() const { return (controlAndAddress & 0xf) == 1; }
    [[nodiscard]] int block() const { return (minute * 60 + second) * 75 + frame - preGap; }
    [[nodiscard]] int blockSize() const
    {
        const int main = (form & 0x3f) == 0x00   ? cdBlock
                         : (form & 0x3f) == 0x10 ? dataBlock
                         : (form & 0x3f) == 0x11 ? cdBlock
                                                 : 0; // made by the drive
        return main + ((form & 0xc0) != 0 ? packBlock : 0);
    }
};

std::span<const CueEntry> cueEntries(const Registers &registers)
{
    return {reinterpret_cast<const CueEntry *>(registers.cueSheet),
            static_cast<std::size_t>(registers.cueBytes) / sizeof(CueEntry)};
}

}

bool Drive::isSessionAtOnce() const
{
    return (m_registers.writeParameters[2] & 0xf) == sessionAtOnce;
}

Sense Drive::sendCueSheet()
{
    if (!m_medium.isCd() || !m_medium.isWritable() || m_medium.closedSessions > 0)
        return wrongFormat;
    if (m_data.size() > sizeof m_registers.cueSheet || m_data.size() % sizeof(CueEntry) != 0)
        return {5, 0x26, 0};
    std::memcpy(m_registers.cueSheet, m_data.data(), m_data.size());
    m_registers.cueBytes = static_cast<int>(m_data.size());
    m_registers.nextBlock = -preGap;
    const std::span<const CueEntry> entries = cueEntries(m_registers);
    if (entries.size() < 3 || entries.back().track != 0xaa)
        return {5, 0x26, 0};
    return entries.back().block() > m_medium.capacity ? endOfUserArea : Sense();
}

int Drive::blockSizeAt(int block) const
{
    int size = 0;
    for (const CueEntry &entry : cueEntries(m_registers))
        if (entry.isPosition() && entry.track != 0 && entry.track != 0xaa && entry.block() <= block)
            size = entry.blockSize();
    return size;
}

// A track that is written at once begins where the disc can be written next, and nowhere else.
Sense Drive::openTrack(int block)
{
    if (m_medium.spoiled)
        return wrongSequence;
    if (block != m_medium.nextWritable())
        return {5, 0x21, 2};
    if (!m_medium.trackOpen)
        m_medium.addTrack(block, m_registers.writeParameters[3] & 0xf);
    m_medium.trackOpen = true;
    return {};
}

Sense Drive::writeBlocks()
{
    const int block = four(2);
    const int count = byte(0) == 0x2a ? static_cast<int>(two(7)) : four(6);
    const bool overwrites = m_medium.kind().overwritable;
    const bool session = m_medium.isCd() && isSessionAtOnce();
    if (m_medium.profile() == CdRom || (overwrites ? !m_medium.formatted : m_medium.finalized))
        return overwrites ? wrongFormat : endOfUserArea;
    if (const Sense fault = checkFaults(block, count); fault.key != 0)
        return fault;
    if (block < -preGap)
        return writePacks(count);
    if (block + count > m_medium.capacity || (overwrites && block < 0))
        return invalidAddress;
    if (session && (m_registers.cueBytes == 0 || block != m_registers.nextBlock))
        return m_registers.cueBytes == 0 ? wrongSequence : Sense{5, 0x21, 2};
    if (m_medium.isCd() && !session)
        if (const Sense opened = openTrack(block); opened.key != 0)
            return opened;

    if (session)
        m_medium.spoiled = true; // until it is whole
    std::size_t from = 0;
    for (int i = 0; i < count; ++i) {
        const int size = session ? blockSizeAt(block + i)
                         : m_medium.isCd() && m_medium.tracks[m_medium.trackCount - 1].isAudio()
                             ? cdBlock
                             : dataBlock;
        if (from + static_cast<std::size_t>(size) > m_data.size())
            return invalidField;
        std::uint8_t *bytes = m_data.data() + from;
        if (m_controls.isFaulty("flip", block + i, 1))
            bytes[0] ^= 1;
        if (pwrite(m_controls.blocks(), bytes, static_cast<std::size_t>(size),
                   positionOf(block + i))
            < 0)
            return {3, 0x0c, 0};
        from += static_cast<std::size_t>(size);
    }
    if (session)
        m_registers.nextBlock = block + count;
    else if (m_medium.isCd())
        m_medium.tracks[m_medium.trackCount - 1].blocks += count;
    pace(m_data.size());
    return from == m_data.size() ? Sense() : invalidField;
}

// CD-Text is repeated all over the lead-in: each pack is kept once.
Sense Drive::writePacks(int count)
{
    if (m_registers.cueBytes == 0)
        return wrongSequence;
    if (m_data.size() != static_cast<std::size_t>(count) * packBlock)
        return invalidField;
    m_medium.spoiled = true;
    constexpr std::size_t codedPack = 24;
    std::string kept = m_controls.packs();
    const std::size_t before = kept.size();
    for (std::size_t at = 0; at + codedPack <= m_data.size(); at += codedPack) {
        std::string pack;
        for (std::size_t i = at; i < at + codedPack; i += 4) {
            const std::uint8_t *six = m_data.data() + i;
            pack += static_cast<char>(six[0] << 2 | six[1] >> 4);
            pack += static_cast<char>(six[1] << 4 | six[2] >> 2);
            pack += static_cast<char>(six[2] << 6 | six[3]);
        }
        bool known = false;
        for (std::size_t i = 0; i < kept.size() && !known; i += pack.size())
            known = kept.compare(i, pack.size(), pack) == 0;
        if (!known)
            kept += pack;
    }
    m_controls.appendPacks(kept.substr(before));
    return {};
}

void Drive::finishSession()
{
    const std::span<const CueEntry> entries = cueEntries(m_registers);
    for (const CueEntry &entry : entries) {
        if (!entry.isPosition() || entry.track == 0 || entry.index != 1)
            continue;
        if (m_medium.trackCount > 0) {
            Track &before = m_medium.tracks[m_medium.trackCount - 1];
            before.blocks = entry.block() - before.start;
        }
        if (entry.track != 0xaa)
            m_medium.addTrack(entry.block(),
                              static_cast<std::uint8_t>(entry.controlAndAddress >> 4));
    }
    m_medium.spoiled = false;
    m_registers.cueBytes = 0;
    m_medium.closeSession(m_registers.writeParameters[3] >> 6 == 3);
}

Sense Drive::synchronize()
{
    if (!m_medium.isCd())
        return {};
    if (m_registers.cueBytes > 0 && isSessionAtOnce()
        && m_registers.nextBlock >= cueEntries(m_registers).back().block())
        finishSession();
    else if (m_medium.trackOpen)
        m_medium.closeTrack();
    return {};
}

Sense Drive::closeTrackOrSession()
{
    if (!m_medium.isCd())
        return {};
    if ((byte(2) & 7) == 1)
        m_medium.closeTrack();
    else if ((byte(2) & 7) == 2 && !m_medium.spoiled)
        m_medium.closeSession(m_registers.writeParameters[3] >> 6 == 3);
    return {};
}

}
