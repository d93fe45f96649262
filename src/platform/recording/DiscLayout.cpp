#include "DiscLayout.h"

#include <numeric>

Result<DiscLayout> DiscLayout::prepare(const QList<DRTrack> &tracks, const std::stop_token &stop)
{
    DiscLayout layout;
    for (const DRTrack &track : tracks) {
        Result<TrackContent> content = track.prepare(stop);
        if (!content)
            return content.failure();
        layout.m_tracks.append(content.value());
    }
    if (layout.m_tracks.isEmpty())
        return Failure{QStringLiteral("There is nothing to burn.")};
    return layout;
}

qint64 DiscLayout::blockCount() const
{
    return std::accumulate(
        m_tracks.cbegin(), m_tracks.cend(), qint64(0),
        [](qint64 sum, const TrackContent &track) { return sum + track.blockCount(); });
}
