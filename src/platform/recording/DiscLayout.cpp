#include "DiscLayout.h"

#include "CDTextPacks.h"
#include "DRKeys.h"
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
    const Result<> prepared =
        audio > 0 ? layout.prepareAudio(request, stop) : layout.prepareData(request.tracks, stop);
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

Result<> DiscLayout::checkFits(const QString &mediaClass, qint64 freeBlocks) const
{
    if (isAudio() && mediaClass != DRDeviceMediaClassCD)
        return Failure{QStringLiteral("Audio tracks can be burned on a CD only.")};
    if (!isAudio() && m_tracks.size() != 1)
        return Failure{QStringLiteral("A data disc has one track.")};
    if (blockCount() > freeBlocks)
        return Failure{QStringLiteral("The source needs %1 blocks, the medium holds %2.")
                           .arg(blockCount())
                           .arg(freeBlocks)};
    return Done{};
}
