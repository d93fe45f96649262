// The sectors of an audio disc as they go onto a medium: each source's samples, decoded ahead of
// the writer, and a digest of every sector, by which what is read back is compared. A job's thread.
#pragma once

#include "AudioSource.h"
#include "TrackContent.h"

#include <cstddef>
#include <stop_token>
#include <vector>

class PcmDisc
{
public:
    // The stop token ends the decoding.
    PcmDisc(const QList<AudioSource> &tracks, const std::stop_token &stop);

    [[nodiscard]] qint64 byteCount() const { return m_byteCount; }

    // Writes all sectors into an empty file. Fails, naming it, when a source cannot be decoded to
    // its end.
    [[nodiscard]] Result<> writeTo(int fileDescriptor, const Advance &advance);

    // Compares every sector that was written with what the file holds. Fails with the place of the
    // first difference.
    [[nodiscard]] Result<> compareWith(int fileDescriptor, const Advance &advance) const;

private:
    [[nodiscard]] Result<> compare(const char *sectors, qint64 count, qint64 first) const;

    QList<AudioSource> m_tracks;
    std::stop_token m_stop;
    qint64 m_byteCount = 0;
    std::vector<std::size_t> m_digests; // one a sector
};
