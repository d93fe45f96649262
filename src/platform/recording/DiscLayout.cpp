#include "DiscLayout.h"

#include "CDTextPacks.h"
#include "Recorder.h"

#include <QtConcurrentMap>

#include <algorithm>
#include <numeric>

Result<DiscLayout> DiscLayout::prepare(const BurnRequest &request, const std::stop_token &stop)
{
    if (request.tracks.isEmpty())
        return Failure{QStringLiteral("There is nothing to burn.")};
    const auto audio = std::ranges::count_if(request.tracks, &DRTrack::isAudio);
    if (audio > 0 && audio < request.tracks.size())
        return Failure{QStringLiteral("A disc holds either data or audio tracks, not both.")};
    DiscLayout layout;
    const Result<> prepared = audio > 0 ? layout.prepareAudio(request, stop)
                                        : layout.prepareData(request.tracks, stop);
    if (!prepared)
        return prepared.failure();
    return layout;
}

Result<> DiscLayout::prepareData(const QList<DRTrack> &tracks, const std::stop_token &stop)
{
    for (const DRTrack &track : tracks) {
        Result<TrackContent> content = track.prepare(stop);
        if (!content)
            return content.failure();
        m_tracks.append(content.value());
    }
    return Done{};
}

// The texts first: a mistake in them shows at once, the files take their time.
Result<> DiscLayout::prepareAudio(const BurnRequest &request, const std::stop_token &stop)
{
    const auto count = static_cast<int>(request.tracks.size());
    if (count > maxAudioTracks)
        return Failure{QStringLiteral("An audio CD holds at most %1 tracks.").arg(maxAudioTracks)};
    const Result<QByteArray> packs = CDTextPacks::encode(request.cdText, count);
    if (!packs)
        return packs.failure();
    m_cdText = request.cdText;
    m_cdTextPacks = packs.value();

    const auto open = [stop](const DRTrack &track) { return track.prepareAudio(stop); };
    const QList<Result<AudioSource>> sources =
        QtConcurrent::blockingMapped<QList<Result<AudioSource>>>(request.tracks, open);
    for (const Result<AudioSource> &source : sources) {
        if (!source)
            return source.failure();
        m_audioTracks.append(source.value());
    }
    return Done{};
}

QList<qint64> DiscLayout::trackLengths() const
{
    QList<qint64> lengths;
    for (const TrackContent &track : m_tracks)
        lengths.append(track.blockCount());
    for (const AudioSource &track : m_audioTracks)
        lengths.append(track.blockCount());
    return lengths;
}

qint64 DiscLayout::blockCount() const
{
    const QList<qint64> lengths = trackLengths();
    return std::accumulate(lengths.cbegin(), lengths.cend(), qint64(0));
}
