// A track to be burned: what it is made of, not yet read. A value; any thread.
#pragma once

#include "AudioSource.h"
#include "DRFolder.h"
#include "TrackContent.h"

#include <stop_token>
#include <variant>

class DRTrack
{
public:
    // A data track whose top directory is the folder.
    [[nodiscard]] static DRTrack trackForRootFolder(const DRFolder &folder);

    // A data track that is the image file's content as it is.
    [[nodiscard]] static DRTrack trackForImageFile(const QString &path);

    // An audio track: what is heard in the file, 16-bit stereo at 44.1 kHz.
    [[nodiscard]] static DRTrack trackForAudioFile(const QString &path);

    // The folder that the track is made of; empty for any other.
    [[nodiscard]] QString folder() const;

    [[nodiscard]] bool isAudio() const { return std::holds_alternative<AudioFilePath>(m_source); }

    // Reads what is needed to know the exact length of a data track, or of an audio track. Slow; on
    // a job's thread. The error names the file that cannot be read.
    [[nodiscard]] Result<TrackContent> prepare(const std::stop_token &stop) const;
    [[nodiscard]] Result<AudioSource> prepareAudio(const std::stop_token &stop) const;

private:
    struct ImageFile
    {
        QString path;
    };
    struct AudioFilePath
    {
        QString path;
    };
    using Source = std::variant<DRFolder, ImageFile, AudioFilePath>;

    explicit DRTrack(Source source)
        : m_source(std::move(source))
    {
    }

    Source m_source;
};
