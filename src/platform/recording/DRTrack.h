// A track to be burned: what it is made of, not yet read. A value; any thread.
#pragma once

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

    // The folder that the track is made of; empty for an image file.
    [[nodiscard]] QString folder() const;

    // Reads what is needed to know the track's exact length. Slow; on a job's thread. The error
    // names the file that cannot be read.
    [[nodiscard]] Result<TrackContent> prepare(const std::stop_token &stop) const;

private:
    struct ImageFile
    {
        QString path;
    };
    using Source = std::variant<DRFolder, ImageFile>;

    explicit DRTrack(Source source)
        : m_source(std::move(source))
    {
    }

    Source m_source;
};
