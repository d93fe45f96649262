// Reads back what was burned and compares it with its sources: data byte by byte, no block more
// than was written; audio by its digests, aligned first, since drives read samples from an address
// that is off by some. The thread that serves libburn.
#pragma once

#include "DiscFeed.h"
#include "LibburnDrive.h"
#include "TrackContent.h"

class DiscVerifier
{
public:
    DiscVerifier(LibburnDrive &drive, const Advance &advance)
        : m_drive(drive)
        , m_advance(advance)
    {
    }

    // Fail with the place of the first difference, or of what cannot be read.
    [[nodiscard]] Result<> verifyData(const TrackContent &content);
    [[nodiscard]] Result<> verifyAudio(const DiscFeed &feed);

private:
    [[nodiscard]] bool readTogether(qint64 first, qint64 count, char *to);
    [[nodiscard]] Result<QByteArray> readSectors(qint64 first, qint64 count);
    [[nodiscard]] Result<qint64> shiftOf(const DiscFeed &feed);
    [[nodiscard]] Result<> compareSectors(const DiscFeed &feed, qint64 first, qint64 count,
                                          qint64 shift);

    LibburnDrive &m_drive;
    const Advance &m_advance;
};
