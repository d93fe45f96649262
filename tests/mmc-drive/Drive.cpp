#include "Drive.h"

#include "SystemCalls.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <unistd.h>
#include <vector>

namespace mmc {

namespace {

constexpr Sense wrongTrackMode{5, 0x64, 0};

// Samples by which this drive, like most, begins to read audio too late; bytes.
constexpr int readOffset = 6 * 4;

std::uint8_t decimal(int number)
{
    return static_cast<std::uint8_t>(number / 10 * 16 + number % 10);
}

// A data block with what lies around it on a CD; the error correction is left zero.
void addSectorFrame(std::uint8_t *sector, int block)
{
    std::memmove(sector + 16, sector, dataBlock);
    std::memset(sector + 1, 0xff, 10);
    sector[0] = sector[11] = 0;
    const int frames = block + preGap;
    sector[12] = decimal(frames / 75 / 60);
    sector[13] = decimal(frames / 75 % 60);
    sector[14] = decimal(frames % 75);
    sector[15] = 1; // mode 1
}

}

Drive::Drive(Controls &controls, const std::uint8_t *command, int commandLength,
             std::span<std::uint8_t> data)
    : m_controls(controls)
    , m_registers(controls.registers())
    , m_medium(m_registers.medium)
    , m_data(data)
{
    std::memcpy(m_command, command,
                static_cast<std::size_t>(std::min<int>(commandLength, sizeof m_command)));
}

Sense Drive::run()
{
    m_controls.log(m_command, sizeof m_command);
    m_controls.takeInsertions();
    if (m_controls.fault("refuse") == static_cast<long>(byte(0)))
        return {5, 0x20, 0};
    if (m_controls.fault("gone-after") == static_cast<long>(byte(0)))
        lose();
    const Sense ready = checkReady();
    const Sense done = ready.key == 0 ? dispatch() : ready;
    if (m_controls.fault("pull-out-after") == static_cast<long>(byte(0))) {
        m_medium = {};
        m_controls.announce();
    }
    return done;
}

Sense Drive::checkReady()
{
    constexpr std::array<unsigned, 4> always{0x03, 0x12, 0x46, 0x4a};
    constexpr std::array<unsigned, 6> withoutMedium{0x1b, 0x1e, 0x55, 0x5a, 0xb6, 0xbb};
    if (std::ranges::find(always, byte(0)) != always.end())
        return {};
    if (const auto left = m_controls.secondsOf("not-ready"))
        return {2, 4, 1};
    if (const long long left = m_registers.readyAt - now(); left > 0)
        return {2, 4, 7, static_cast<int>(65535 / (1 + left / 10))};
    if (std::ranges::find(withoutMedium, byte(0)) != withoutMedium.end())
        return {};
    if (m_registers.trayOpen)
        return {2, 0x3a, 2};
    if (m_medium.isPresent() && m_controls.fault("unreadable"))
        return {2, 0x30, 0};
    return m_medium.isPresent() ? Sense() : noMedium;
}

Sense Drive::dispatch()
{
    switch (byte(0)) {
    case 0x00:
        return {};
    case 0x03:
        return requestSense();
    case 0x04:
        return format();
    case 0x12:
        return inquiry();
    case 0x1b:
        return startStop();
    case 0x1e:
        m_registers.locked = byte(4) & 1;
        return {};
    case 0x23:
        return readFormatCapacities();
    case 0x25:
        return readCapacity();
    case 0x28:
    case 0xa8:
        return readBlocks(false);
    case 0x2a:
    case 0xaa:
        return writeBlocks();
    case 0x35:
        return synchronize();
    case 0x43:
        return readToc();
    case 0x46:
        return getConfiguration();
    case 0x4a:
        return getEventStatus();
    case 0x51:
        return readDiscInformation();
    case 0x52:
        return readTrackInformation();
    case 0x54:
        return {};
    case 0x55:
        return modeSelect();
    case 0x5a:
        return modeSense();
    case 0x5b:
        return closeTrackOrSession();
    case 0x5c:
        return readBufferCapacity();
    case 0x5d:
        return sendCueSheet();
    case 0xa1:
        return blank();
    case 0xac:
        return getPerformance();
    case 0xad:
        return readDiscStructure();
    case 0xb6:
    case 0xbb:
        return setSpeed();
    case 0xbe:
        return readBlocks(true);
    default:
        return {5, 0x20, 0};
    }
}

Sense Drive::reply(std::span<const std::uint8_t> bytes, unsigned allocation)
{
    m_replied = std::min({bytes.size(), static_cast<std::size_t>(allocation), m_data.size()});
    std::memcpy(m_data.data(), bytes.data(), m_replied);
    return {};
}

void Drive::busyFor(int milliseconds)
{
    m_registers.readyAt = now() + milliseconds;
    const bool atOnce = byte(0) == 0x04 || byte(1) & (byte(0) == 0xa1 ? 0x10 : 1);
    if (!atOnce)
        system::usleep(static_cast<useconds_t>(milliseconds) * 1000);
}

void Drive::pace(std::size_t bytes)
{
    const auto ordered = m_controls.fault("pace");
    if (!ordered)
        return;
    const long speed = *ordered > 0 ? *ordered : m_registers.writeSpeed;
    system::usleep(
        static_cast<useconds_t>(bytes * 1000 / static_cast<std::size_t>(std::max(speed, 1L))));
}

Sense Drive::modeSelect()
{
    constexpr std::size_t header = 8;
    if (m_data.size() < header + 2)
        return {};
    const std::span<const std::uint8_t> page = m_data.subspan(header);
    if ((page[0] & 0x3f) == 5)
        std::memcpy(m_registers.writeParameters, page.data(),
                    std::min(page.size(), sizeof m_registers.writeParameters));
    return {};
}

Sense Drive::setSpeed()
{
    const auto four = [this](std::size_t at) {
        return static_cast<long>(m_data[at]) << 24 | static_cast<long>(m_data[at + 1]) << 16
               | static_cast<long>(m_data[at + 2]) << 8 | m_data[at + 3];
    };
    const bool streaming = byte(0) == 0xb6 && m_data.size() >= 28 && four(24) > 0;
    long speed = streaming ? four(20) * 1000 / four(24) : static_cast<long>(two(4));
    if (!m_medium.isPresent())
        return {};
    const MediumKind &kind = m_medium.kind();
    const auto fastest = std::ranges::max(kind.factors) * kind.singleSpeed / 10;
    m_registers.writeSpeed = static_cast<int>(std::min<long>(speed, fastest));
    return {};
}

void Drive::lose()
{
    m_registers.lost = true;
    m_controls.announce();
}

off_t Drive::positionOf(int block) const
{
    return m_medium.isCd() ? static_cast<off_t>(block + preGap) * cdBlock
                           : static_cast<off_t>(block) * dataBlock;
}

Sense Drive::checkFaults(int block, int count)
{
    if (m_controls.isFaulty("pull-out", block, count)) {
        m_medium = {};
        m_controls.announce();
        return noMedium;
    }
    const bool writing = byte(0) == 0x2a || byte(0) == 0xaa;
    if (m_controls.isFaulty(writing ? "gone" : "gone-reading", block, count))
        lose();
    if (m_controls.isFaulty(writing ? "write-error" : "read-error", block, count))
        return writing ? Sense{3, 0x0c, 0} : Sense{3, 0x11, 5};
    return {};
}

Sense Drive::readBlocks(bool wholeSectors)
{
    const int block = four(2);
    const int count = byte(0) == 0x28   ? static_cast<int>(two(7))
                      : byte(0) == 0xa8 ? four(6)
                                        : static_cast<int>(byte(6) << 16 | two(7));
    if (wholeSectors && (byte(10) & 7) != 0) // sub-channels, which are not kept
        return invalidField;
    if (const Sense fault = checkFaults(block, count); fault.key != 0)
        return fault;
    const bool framed = wholeSectors && (byte(9) & 0xf8) == 0xf8;
    const unsigned expected = wholeSectors ? byte(1) >> 2 & 7 : 0;
    std::vector<std::uint8_t> bytes;
    for (int i = block; i < block + count; ++i) {
        const int track = m_medium.isCd() ? m_medium.trackOf(i) : noTrack;
        if (m_medium.isCd() ? track == noTrack : i < 0 || i >= m_medium.readableBlocks())
            return i < m_medium.readableBlocks() ? wrongTrackMode : invalidAddress;
        const bool audio = m_medium.isCd() && m_medium.tracks[track].isAudio();
        if ((audio && !wholeSectors) || (expected != 0 && audio != (expected == 1)))
            return wrongTrackMode;
        std::uint8_t sector[cdBlock] = {};
        const off_t offset = positionOf(i) + (audio ? readOffset : 0);
        if (pread(m_controls.blocks(), sector, audio ? cdBlock : dataBlock, offset) < 0)
            return {3, 0x11, 5};
        if (framed && !audio)
            addSectorFrame(sector, i);
        bytes.insert(bytes.end(), sector, sector + (audio || framed ? cdBlock : dataBlock));
    }
    return reply(bytes, static_cast<unsigned>(bytes.size()));
}

Sense Drive::blank()
{
    constexpr int quickly = 100;    // ms
    constexpr int completely = 400; // ms
    if (!m_medium.kind().erasable || m_medium.kind().overwritable)
        return wrongFormat;
    if ((byte(1) & 7) > 1)
        return invalidField;
    m_medium.blank();
    m_registers.cueBytes = 0;
    if (!m_controls.clear())
        return {3, 0x51, 0};
    busyFor((byte(1) & 7) == 1 ? quickly : completely);
    return {};
}

Sense Drive::format()
{
    constexpr int duration = 200; // ms
    if (!m_medium.kind().overwritable)
        return wrongFormat;
    m_medium.formatted = true;
    busyFor(duration);
    return {};
}

Sense Drive::startStop()
{
    const bool moves = byte(4) & 2;
    const bool opens = moves && !(byte(4) & 1);
    if (opens && m_registers.locked)
        return {5, 0x53, 2};
    if (!moves || m_registers.trayOpen == opens)
        return {};
    m_registers.trayOpen = opens;
    m_controls.announce();
    return {};
}

}
