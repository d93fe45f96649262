#include "Bytes.h"
#include "Drive.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace mmc {

namespace {

constexpr int bufferKilobytes = 2048;

std::vector<int> speedsOf(const Medium &medium)
{
    std::vector<int> speeds;
    if (!medium.isPresent())
        return speeds;
    for (const int factor : medium.kind().factors)
        if (factor > 0)
            speeds.insert(speeds.begin(), medium.kind().singleSpeed * factor / 10);
    return speeds;
}

Bytes feature(unsigned code, unsigned version, bool persistent, bool current, const Bytes &data)
{
    return Bytes()
        .two(code)
        .one(version << 2 | (persistent ? 2U : 0U) | (current ? 1U : 0U))
        .one(static_cast<unsigned>(data.size()))
        .append(data);
}

}

Sense Drive::inquiry()
{
    return reply(Bytes()
                     .one(5) // a drive for optical discs
                     .one(0x80)
                     .one(5)
                     .one(2)
                     .one(31)
                     .zeros(3)
                     .text("EMULATED", 8)
                     .text("DVD-RW TESTDRIVE", 16)
                     .text("1.00", 4),
                 two(3));
}

Sense Drive::requestSense()
{
    return reply(Bytes().one(0x70).zeros(6).one(10).zeros(10), byte(4));
}

Sense Drive::getConfiguration()
{
    const Profile profile = m_medium.profile();
    const bool cd = m_medium.isCd();
    const bool writableCd = profile == CdR || profile == CdRw;
    const bool overwritable = profile == DvdPlusRw || profile == BdRe;
    Bytes profiles;
    for (const unsigned code : {0x43U, 0x40U, 0x1aU, 0x10U, 0x0aU, 0x09U, 0x08U})
        profiles.two(code).one(code == profile).one(0);
    const std::pair<unsigned, Bytes> features[]{
        {1, feature(0x0000, 0, true, true, profiles)},
        {1, feature(0x0001, 2, true, true, Bytes().four(7).one(1).zeros(3))}, // Serial ATA
        {1, feature(0x0002, 1, true, true, Bytes().one(2).zeros(3))},
        {1, feature(0x0003, 0, true, true, Bytes().one(0x29).zeros(3))}, // tray, locks, ejects
        {1,
         feature(0x0010, 0, false, m_medium.isPresent(), Bytes().four(2048).two(1).one(1).one(0))},
        {1, feature(0x001d, 0, false, cd, Bytes())},
        {1, feature(0x001e, 2, false, cd, Bytes().one(3).zeros(3))}, // reads CD-Text
        {1, feature(0x0020, 1, false, overwritable,
                    Bytes().four(m_medium.capacity - 1).four(2048).two(16).one(1).one(0))},
        {1, feature(0x0021, 3, false, writableCd, Bytes().two(0xff).one(1).one(1).one(7).zeros(3))},
        {1, feature(0x0023, 1, false, overwritable, Bytes().one(0).zeros(7))},
        {1, feature(0x002a, 0, false, profile == DvdPlusRw, Bytes().one(1).one(0).zeros(2))},
        {1, feature(0x002d, 2, false, writableCd, Bytes().one(0x43).one(0).two(0x3f))},
        {1, feature(0x002e, 1, false, writableCd,
                    Bytes().one(0x63).one(0).two(sizeof m_registers.cueSheet))},
        {1, feature(0x0040, 0, false, profile == BdRe, Bytes().zeros(28))},
        {1, feature(0x0041, 0, false, profile == BdRe, Bytes().zeros(20))},
        {1, feature(0x0107, 4, false, true, Bytes().one(0x1f).zeros(3))},
        {1, feature(0x0108, 0, true, true, Bytes().text("MMC0001", 8))},
    };
    Bytes answer;
    answer.zeros(6).two(profile);
    for (const auto &[unused, bytes] : features) {
        const std::span<const std::uint8_t> one = bytes;
        const unsigned code = static_cast<unsigned>(one[0] << 8 | one[1]);
        const bool current = one[2] & 1;
        const unsigned requested = byte(1) & 3; // all, current ones, one
        if (requested == 2 ? code == two(2) : code >= two(2) && (requested == 0 || current))
            answer.append(bytes);
    }
    const auto length = static_cast<unsigned>(answer.size() - 4);
    answer.set(2, length >> 8).set(3, length);
    return reply(answer, two(7));
}

Sense Drive::modeSense()
{
    const unsigned page = byte(2) & 0x3f;
    Bytes answer;
    answer.zeros(8);
    if (page == 0x01 || page == 0x3f)
        answer.one(0x01).one(10).zeros(10);
    if (page == 0x05 || page == 0x3f) {
        const std::uint8_t *kept = m_registers.writeParameters;
        const bool changeable = byte(2) >> 6 == 1;
        answer.one(0x05).one(0x32);
        for (std::size_t i = 2; i < sizeof m_registers.writeParameters; ++i)
            answer.one(changeable ? 0xffU : kept[i]);
    }
    if (page == 0x2a || page == 0x3f) {
        const std::vector<int> speeds = speedsOf(m_medium);
        const auto fastest = static_cast<unsigned>(speeds.empty() ? 8467 : speeds.front());
        const unsigned current =
            m_registers.writeSpeed > 0 ? static_cast<unsigned>(m_registers.writeSpeed) : fastest;
        Bytes caps;
        caps.one(0x3f) // reads CD-R, CD-RW, DVD
            .one(0x37) // writes CD-R, CD-RW, tests, DVD-R, DVD-RAM
            .one(0xf1) // underrun-proof, multi-session, mode 2, audio play
            .one(0x17) // audio, R-W, C2
            .one(0x29) // tray, locks, ejects
            .one(0x20)
            .two(8467) // read speed
            .two(0x100)
            .two(bufferKilobytes)
            .two(8467)
            .one(0)
            .one(0x10)
            .two(fastest)
            .two(current)
            .two(1)
            .zeros(3)
            .one(0)
            .two(current)
            .two(static_cast<unsigned>(speeds.size()));
        for (const int speed : speeds)
            caps.one(0).one(0).two(static_cast<unsigned>(speed));
        answer.one(0x2a).one(static_cast<unsigned>(caps.size())).append(caps);
    }
    return answer.size() > 8 ? reply(answer.setLength(), two(7)) : invalidField;
}

Sense Drive::readFormatCapacities()
{
    const bool overwritable = m_medium.kind().overwritable;
    Bytes formats;
    if (overwritable)
        for (const unsigned type : {0x00U, m_medium.profile() == DvdPlusRw ? 0x26U : 0x30U})
            formats.four(m_medium.capacity).one(type << 2).zeros(3);
    const bool unformatted = !overwritable || !m_medium.formatted;
    Bytes answer;
    answer.zeros(3)
        .one(static_cast<unsigned>(8 + formats.size()))
        .four(m_medium.capacity)
        .one(unformatted ? 1U : 2U)
        .one(0)
        .two(2048)
        .append(formats);
    return reply(answer, two(7));
}

Sense Drive::readCapacity()
{
    const int blocks = m_medium.readableBlocks();
    return reply(Bytes().four(blocks > 0 ? blocks - 1 : 0).four(2048), 8);
}

Sense Drive::readBufferCapacity()
{
    return reply(Bytes().two(10).zeros(2).four(bufferKilobytes * 1024).four(bufferKilobytes * 1024),
                 two(7));
}

Sense Drive::getPerformance()
{
    const std::vector<int> speeds = speedsOf(m_medium);
    const int end = m_medium.isPresent() ? m_medium.capacity - 1 : 0;
    const unsigned type = byte(10);
    Bytes answer;
    answer.zeros(8);
    if (type == 3)
        for (const int speed : speeds)
            answer.four(0).four(end).four(8467).four(speed);
    else if (type == 0)
        answer.four(0).four(8467).four(end).four(8467);
    else
        return invalidField;
    const auto length = static_cast<int>(answer.size() - 4);
    const Bytes head = Bytes().four(length);
    std::vector<std::uint8_t> bytes(std::span<const std::uint8_t>(answer).begin(),
                                    std::span<const std::uint8_t>(answer).end());
    std::ranges::copy(std::span<const std::uint8_t>(head), bytes.begin());
    return reply(bytes, 8 + two(8) * 16);
}

Sense Drive::getEventStatus()
{
    const bool present = m_medium.isPresent() && !m_registers.trayOpen;
    return reply(Bytes()
                     .two(6)
                     .one(4) // of media
                     .one(0x5e)
                     .one(0)
                     .one((present ? 2U : 0U) | (m_registers.trayOpen ? 1U : 0U))
                     .zeros(2),
                 two(7));
}

Sense Drive::readDiscStructure()
{
    return invalidField;
}

}
