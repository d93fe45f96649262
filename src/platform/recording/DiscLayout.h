// The tracks of a disc with their exact lengths, settled before the first block is written, and
// its CD-Text; the same for every driver. A disc is all data or all audio. A value; any thread.
#pragma once

#include "DRCDTextBlock.h"
#include "DRTrack.h"

struct BurnRequest;

class DiscLayout
{
public:
    static constexpr int maxAudioTracks = 99; // IEC 60908

    // Prepares the tracks in order and encodes the CD-Text. Slow; on a job's thread.
    [[nodiscard]] static Result<DiscLayout> prepare(const BurnRequest &request,
                                                    const std::stop_token &stop);

    [[nodiscard]] bool isAudio() const { return !m_audioTracks.isEmpty(); }

    // The tracks of a data disc; empty for an audio disc, and the other way round.
    [[nodiscard]] const QList<TrackContent> &tracks() const { return m_tracks; }
    [[nodiscard]] const QList<AudioSource> &audioTracks() const { return m_audioTracks; }

    // Blocks of each track, in order; and of all together.
    [[nodiscard]] QList<qint64> trackLengths() const;
    [[nodiscard]] qint64 blockCount() const;

    // Whether a medium of that class (DRDeviceMediaClass…) with that many free blocks takes it.
    [[nodiscard]] Result<> checkFits(const QString &mediaClass, qint64 freeBlocks) const;

    // The texts of an audio disc, one block a language; and as packs of 18 bytes, without header.
    [[nodiscard]] const QList<DRCDTextBlock> &cdText() const { return m_cdText; }
    [[nodiscard]] const QByteArray &cdTextPacks() const { return m_cdTextPacks; }

private:
    [[nodiscard]] Result<> prepareData(const QList<DRTrack> &tracks, const std::stop_token &stop);
    [[nodiscard]] Result<> prepareAudio(const BurnRequest &request, const std::stop_token &stop);

    QList<TrackContent> m_tracks;
    QList<AudioSource> m_audioTracks;
    QList<DRCDTextBlock> m_cdText;
    QByteArray m_cdTextPacks;
};
