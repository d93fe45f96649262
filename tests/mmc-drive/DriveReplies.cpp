#include "Drive.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace mmc {

namespace {

constexpr int bufferKilobytes = 2048;
constexpr int leadInStart = -11619; // of a CD; 97:27:06

// Bytes in the order of the wire.
class Bytes
{
public:
    Bytes &one(unsigned value)
    {
        m_bytes.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Bytes &two(unsigned value) { return one(value >> 8).one(value); }
    Bytes &four(int value)
    {
        const auto bits = static_cast<unsigned>(value);
        return two(bits >> 16).two(bits);
    }
    Bytes &zeros(std::size_t count)
    {
        m_bytes.resize(m_bytes.size() + count);
        return *this;
    }
    Bytes &text(const char *text, std::size_t width)
    {
        for (std::size_t i = 0; i < width; ++i)
            one(static_cast<unsigned char>(*text ? *text++ : ' '));
        return *this;
    }
    Bytes &msf(int block)
    {
        const int frames = (block + preGap + 450000) % 450000; // negative ones count down from 100
        return one(0)
            .one(static_cast<unsigned>(frames / 75 / 60))
            .one(static_cast<unsigned>(frames / 75 % 60))
            .one(static_cast<unsigned>(frames % 75));
    }
    Bytes &append(const Bytes &other)
    {
        m_bytes.insert(m_bytes.end(), other.m_bytes.begin(), other.m_bytes.end());
        return *this;
    }
    Bytes &set(std::size_t at, unsigned value)
    {
        m_bytes[at] = static_cast<std::uint8_t>(value);
        return *this;
    }
    // The length of what follows them, in the first two bytes.
    Bytes &setLength()
    {
        return set(0, static_cast<unsigned>(size() - 2) >> 8)
            .set(1, static_cast<unsigned>(size() - 2));
    }
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    operator std::span<const std::uint8_t>() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

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

Sense Drive::readDiscInformation()
{
    const bool overwritable = m_medium.kind().overwritable;
    const bool openSession =
        m_medium.trackCount > 0
        && m_medium.tracks[m_medium.trackCount - 1].session > m_medium.closedSessions;
    const bool blank = overwritable ? !m_medium.formatted : m_medium.isBlank();
    const bool complete = overwritable ? m_medium.formatted : m_medium.finalized;
    const unsigned status = blank ? 0U : complete ? 2U : 1U;
    const unsigned lastSession = complete ? 3U : openSession || m_medium.spoiled ? 1U : 0U;
    const unsigned sessions = overwritable || complete
                                  ? std::max(1U, static_cast<unsigned>(m_medium.closedSessions))
                                  : static_cast<unsigned>(m_medium.closedSessions) + 1U;
    const unsigned invisible = complete || overwritable || m_medium.trackOpen ? 0U : 1U;
    const unsigned lastTrack = std::max(1U, static_cast<unsigned>(m_medium.trackCount) + invisible);
    Bytes answer;
    answer.zeros(2)
        .one(status | lastSession << 2 | (m_medium.kind().erasable ? 0x10U : 0U))
        .one(1)
        .one(sessions)
        .one(complete ? 1U : lastTrack)
        .one(lastTrack)
        .one(overwritable && m_medium.formatted ? 0x03U : 0U)
        .zeros(8);
    if (m_medium.isCd())
        answer.msf(blank ? leadInStart : -preGap).msf(m_medium.capacity);
    else
        answer.four(0).four(m_medium.capacity);
    return reply(answer.zeros(10).setLength(), two(7));
}

Sense Drive::readTrackInformation()
{
    const bool overwritable = m_medium.kind().overwritable;
    const unsigned asked = byte(1) & 3; // a block, a track
    const auto count = static_cast<unsigned>(m_medium.trackCount);
    unsigned number = static_cast<unsigned>(four(2));
    if (asked == 0)
        number = overwritable ? 1U : static_cast<unsigned>(m_medium.trackOf(four(2)) + 1);
    if (asked == 1 && number == 0xff)
        number = overwritable ? 1U : m_medium.trackOpen ? count : count + 1;
    const bool invisible = !overwritable && number == count + 1;
    if (number == 0 || asked > 1 || (invisible && m_medium.finalized)
        || (!invisible && !overwritable && number > count))
        return invalidField;
    const int capacity = m_medium.capacity;
    const int next = overwritable ? 0 : m_medium.nextWritable();
    const bool open = invisible || (m_medium.trackOpen && number == count);
    Track track{next, capacity - next, 0, static_cast<std::uint8_t>(m_medium.closedSessions + 1),
                4};
    if (overwritable)
        track = {0, capacity, 0, 1, 4};
    else if (!invisible)
        track = m_medium.tracks[number - 1];
    const bool writable = open && m_medium.isWritable();
    Bytes answer;
    answer.zeros(2)
        .one(number)
        .one(track.session)
        .one(0)
        .one(track.control | (m_medium.spoiled ? 0x20U : 0U))
        .one((invisible ? 0x40U : 0U) | (track.isAudio() ? 0x0fU : 1U))
        .one(writable || overwritable ? 1U : 0U)
        .four(track.start)
        .four(writable || overwritable ? next : 0)
        .four(writable || overwritable ? capacity - next : 0)
        .four(0)
        .four(track.blocks + track.runOut)
        .four(track.start + track.blocks - 1)
        .zeros(8);
    return reply(answer.setLength(), two(7));
}

Sense Drive::readToc()
{
    const bool inMsf = byte(1) & 2;
    const unsigned format = (byte(2) & 0xf) != 0 ? byte(2) & 0xf : byte(9) >> 6;
    const std::span tracks(m_medium.tracks, static_cast<std::size_t>(m_medium.trackCount));
    const auto sessions = static_cast<unsigned>(m_medium.closedSessions);
    const auto place = [inMsf](Bytes &bytes, int block) {
        inMsf ? bytes.msf(block) : bytes.four(block);
    };
    Bytes answer;
    answer.zeros(2);
    if (format == 4) {
        if (m_medium.profile() != CdR && m_medium.profile() != CdRw)
            return invalidField;
        answer.zeros(2).one(0xd0).one(0).one(m_medium.profile() == CdRw ? 0x40U : 0U).zeros(1);
        answer.append(Bytes().msf(leadInStart)).append(Bytes().msf(m_medium.capacity)).zeros(12);
        std::vector<std::uint8_t> shifted(std::span<const std::uint8_t>(answer).begin(),
                                          std::span<const std::uint8_t>(answer).end());
        std::rotate(shifted.begin() + 8, shifted.begin() + 9, shifted.begin() + 16);
        shifted[1] = static_cast<std::uint8_t>(shifted.size() - 2);
        return reply(shifted, two(7));
    }
    if (format == 5) {
        answer.zeros(2);
        for (const char value : m_controls.packs())
            answer.one(static_cast<unsigned char>(value));
        return m_medium.isCd() ? reply(answer.setLength(), two(7)) : invalidField;
    }
    if (sessions == 0 && !(m_medium.kind().overwritable && m_medium.formatted))
        return format <= 2 && m_medium.isCd() && m_medium.isBlank() ? Sense{5, 0x24, 0}
                                                                    : invalidField;
    if (m_medium.kind().overwritable) {
        if (format != 0)
            return invalidField;
        answer.one(1).one(1);
        for (const int block : {0, m_medium.capacity}) {
            answer.one(0).one(0x14).one(block == 0 ? 1U : 0xaaU).one(0);
            place(answer, block);
        }
        return reply(answer.setLength(), two(7));
    }
    if (format == 0) {
        answer.one(1).one(static_cast<unsigned>(tracks.size()));
        unsigned number = 1;
        for (const Track &track : tracks) {
            if (track.session <= sessions && number >= byte(6)) {
                answer.one(0).one(0x10U | track.control).one(number).one(0);
                place(answer, track.start);
            }
            ++number;
        }
        answer.one(0).one(0x10U | tracks.back().control).one(0xaa).one(0);
        place(answer, m_medium.leadOut(static_cast<int>(sessions)));
        return reply(answer.setLength(), two(7));
    }
    if (format == 1) {
        const auto last = std::ranges::find(tracks, sessions, &Track::session);
        answer.one(1).one(sessions).one(0).one(0x10U | last->control);
        answer.one(static_cast<unsigned>(last - tracks.begin() + 1)).one(0);
        place(answer, last->start);
        return reply(answer.setLength(), two(7));
    }
    if (format != 2)
        return invalidField;
    answer.one(1).one(sessions);
    for (unsigned session = 1; session <= sessions; ++session) {
        const auto first = std::ranges::find(tracks, session, &Track::session);
        const auto last = std::find_if(first, tracks.end(), [session](const Track &track) {
            return track.session != session;
        });
        const auto entry = [&](const Track &track, unsigned point, const Bytes &where) {
            answer.one(session).one(0x10U | track.control).one(0).one(point).zeros(3).append(where);
        };
        const auto number = [&](auto track) {
            return static_cast<unsigned>(track - tracks.begin() + 1);
        };
        entry(*first, 0xa0, Bytes().one(0).one(number(first)).one(0).one(0));
        entry(*first, 0xa1, Bytes().one(0).one(number(last - 1)).one(0).one(0));
        entry(*first, 0xa2, Bytes().msf(m_medium.leadOut(static_cast<int>(session))));
        for (auto track = first; track != last; ++track)
            entry(*track, number(track), Bytes().msf(track->start));
    }
    return reply(answer.setLength(), two(7));
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
