#include "Bytes.h"
#include "Drive.h"

#include <algorithm>

namespace mmc {

namespace {

constexpr int leadInStart = -11619; // of a CD; 97:27:06

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
    const unsigned format = (byte(2) & 0xf) != 0 ? byte(2) & 0xf : byte(9) >> 6;
    const bool overwritable = m_medium.kind().overwritable;
    if (format == 4)
        return readAtip();
    if (format == 5)
        return readPacks();
    if (overwritable ? format != 0 || !m_medium.formatted : m_medium.closedSessions == 0)
        return invalidField;
    return format == 0   ? readTracks()
           : format == 1 ? readLastSession()
           : format == 2 ? readLeadIn()
                         : invalidField;
}

// What is in the pre-groove of a CD that can be written.
Sense Drive::readAtip()
{
    if (m_medium.profile() != CdR && m_medium.profile() != CdRw)
        return invalidField;
    return reply(Bytes()
                     .two(0)
                     .two(0)
                     .one(0xd0)
                     .one(0)
                     .one(m_medium.profile() == CdRw ? 0x40U : 0U)
                     .one(0)
                     .msf(leadInStart, Bytes::Order::TimeFirst)
                     .msf(m_medium.capacity, Bytes::Order::TimeFirst)
                     .zeros(12)
                     .setLength(),
                 two(7));
}

Sense Drive::readPacks()
{
    Bytes answer;
    answer.zeros(4);
    for (const char value : m_controls.packs())
        answer.one(static_cast<unsigned char>(value));
    return m_medium.isCd() ? reply(answer.setLength(), two(7)) : invalidField;
}

Sense Drive::readTracks()
{
    Bytes answer;
    const auto add = [&](unsigned number, unsigned control, int block) {
        answer.one(0).one(0x10U | control).one(number).one(0);
        byte(1) & 2 ? answer.msf(block) : answer.four(block);
    };
    constexpr unsigned leadOut = 0xaa;
    if (!m_medium.isCd()) {
        constexpr unsigned data = 4;
        answer.two(0).one(1).one(1);
        add(1, data, 0);
        add(leadOut, data, m_medium.capacity);
        return reply(answer.setLength(), two(7));
    }
    const std::span tracks(m_medium.tracks, static_cast<std::size_t>(m_medium.trackCount));
    answer.two(0).one(1).one(static_cast<unsigned>(tracks.size()));
    unsigned number = 0;
    for (const Track &track : tracks)
        if (++number >= byte(6) && track.session <= m_medium.closedSessions)
            add(number, track.control, track.start);
    add(leadOut, tracks.back().control, m_medium.leadOut(m_medium.closedSessions));
    return reply(answer.setLength(), two(7));
}

Sense Drive::readLastSession()
{
    const std::span tracks(m_medium.tracks, static_cast<std::size_t>(m_medium.trackCount));
    const auto first = std::ranges::find(tracks, m_medium.closedSessions, &Track::session);
    Bytes answer;
    answer.two(0)
        .one(1)
        .one(static_cast<unsigned>(m_medium.closedSessions))
        .one(0)
        .one(0x10U | first->control)
        .one(static_cast<unsigned>(first - tracks.begin() + 1))
        .one(0);
    byte(1) & 2 ? answer.msf(first->start) : answer.four(first->start);
    return reply(answer.setLength(), two(7));
}

// The table of contents as the lead-in of each session has it.
Sense Drive::readLeadIn()
{
    const std::span tracks(m_medium.tracks, static_cast<std::size_t>(m_medium.trackCount));
    const auto number = [&](auto track) {
        return static_cast<unsigned>(track - tracks.begin() + 1);
    };
    Bytes answer;
    answer.two(0).one(1).one(static_cast<unsigned>(m_medium.closedSessions));
    for (int session = 1; session <= m_medium.closedSessions; ++session) {
        const auto first = std::ranges::find(tracks, session, &Track::session);
        const auto last = std::find_if(first, tracks.end(), [session](const Track &track) {
            return track.session != session;
        });
        const auto point = [&](const Track &track, unsigned name) -> Bytes & {
            return answer.one(static_cast<unsigned>(session))
                .one(0x10U | track.control)
                .one(0)
                .one(name)
                .zeros(3);
        };
        point(*first, 0xa0).one(0).one(number(first)).one(0).one(0);
        point(*first, 0xa1).one(0).one(number(last - 1)).one(0).one(0);
        point(*first, 0xa2).msf(m_medium.leadOut(session));
        for (auto track = first; track != last; ++track)
            point(*track, number(track)).msf(track->start);
    }
    return reply(answer.setLength(), two(7));
}

}
