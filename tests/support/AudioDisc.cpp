#include "AudioDisc.h"

#include "TestDrive.h"

AudioDisc::AudioDisc(const TestDrive &drive)
{
    // From a last sector that is nearly empty to one that is nearly full.
    constexpr std::array<int, 3> framesInLastSector{1, 300, 587};
    const QStringList names{QStringLiteral("first.wav"), QStringLiteral("second.wav"),
                            QStringLiteral("third.wav")};
    for (size_t i = 0; i < lengths.size(); ++i) {
        const int frames =
            (lengths.at(i) - 1) * AudioSource::sectorFrames + framesInLastSector.at(i);
        const QByteArray samples = WavTracks::noise(frames, static_cast<uint>(i));
        m_paths.append(
            drive.storeSource(names.at(static_cast<qsizetype>(i)), WavTracks::wav(samples)));
        m_content += WavTracks::sectors(samples);
    }
}

BurnRequest AudioDisc::request() const
{
    BurnRequest request;
    for (const QString &path : m_paths)
        request.tracks.append(DRTrack::trackForAudioFile(path));
    return request;
}
