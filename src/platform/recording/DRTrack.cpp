#include "DRTrack.h"

#include "IsoImage.h"

DRTrack DRTrack::trackForRootFolder(const DRFolder &folder)
{
    return DRTrack(folder);
}

DRTrack DRTrack::trackForImageFile(const QString &path)
{
    return DRTrack(ImageFile{path});
}

DRTrack DRTrack::trackForAudioFile(const QString &path)
{
    return DRTrack(AudioFilePath{path});
}

QString DRTrack::folder() const
{
    const auto *folder = std::get_if<DRFolder>(&m_source);
    return folder ? folder->path() : QString();
}

Result<TrackContent> DRTrack::prepare(const std::stop_token &stop) const
{
    if (const auto *folder = std::get_if<DRFolder>(&m_source))
        return IsoImage::fromFolder(folder->path(), folder->name(), stop);
    return TrackContent::fromImageFile(std::get<ImageFile>(m_source).path);
}

Result<AudioSource> DRTrack::prepareAudio(const std::stop_token &stop) const
{
    return AudioSource::open(std::get<AudioFilePath>(m_source).path, stop);
}
