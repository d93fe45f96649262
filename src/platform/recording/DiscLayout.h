// The tracks of a disc with their exact lengths, settled before the first block is written; the
// same for every driver. A value; any thread.
#pragma once

#include "DRTrack.h"

class DiscLayout
{
public:
    // Prepares the tracks in order. Slow; on a job's thread.
    [[nodiscard]] static Result<DiscLayout> prepare(const QList<DRTrack> &tracks,
                                                    const std::stop_token &stop);

    [[nodiscard]] const QList<TrackContent> &tracks() const { return m_tracks; }
    [[nodiscard]] qint64 blockCount() const;

private:
    QList<TrackContent> m_tracks;
};
