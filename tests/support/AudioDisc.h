// Three tracks to burn on the medium of a drive, none of them whole sectors long, and what
// the disc is to hold then. Main thread.
#pragma once

#include "Recorder.h"
#include "WavTracks.h"

#include <QMap>

class TestDrive;

class AudioDisc
{
public:
    // Sectors of each track; other programs want a track to last 4 seconds, 300 sectors, at least.
    static constexpr std::array<int, 3> lengths{301, 310, 305};
    static constexpr int blockCount = 301 + 310 + 305;

    // Writes the sounds into the drive's folder for sources.
    explicit AudioDisc(const TestDrive &drive);

    [[nodiscard]] BurnRequest request() const;
    [[nodiscard]] QString path(int track) const { return m_paths.at(track); }

    // The sectors of the whole disc.
    [[nodiscard]] const QByteArray &content() const { return m_content; }

private:
    QStringList m_paths;
    QByteArray m_content;
};
