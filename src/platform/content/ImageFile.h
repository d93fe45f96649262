// An image file in the making. It has no name, or a temporary one, until it is complete; only then
// does it take the name that it shall have and the place of an image that has it. Any thread.
#pragma once

#include "TrackContent.h"

class ImageFile
{
public:
    enum class Existing { Refused, Replaced };

    // Where an image of that path would lie: its folder without links, and where the path is a link
    // to a file, that file. Fails where the folder is missing, or the path is that of something
    // that is no regular file.
    [[nodiscard]] static Result<QByteArray> place(const QByteArray &path);

    // Begins an image for a path that place() gave. Fails, naming the file, where it exists and
    // that is refused, and where the folder cannot be written to.
    [[nodiscard]] static Result<ImageFile> create(const QByteArray &path, Existing existing);

    ImageFile(ImageFile &&other) noexcept;
    ImageFile(const ImageFile &) = delete;
    ImageFile &operator=(const ImageFile &) = delete;
    ImageFile &operator=(ImageFile &&) = delete;
    ~ImageFile(); // what is not finished is removed

    // Fails, naming the source or the image, as TrackContent::writeToPath does.
    [[nodiscard]] Result<> write(const TrackContent &content, const Advance &advance) const;

    // Gives the image its name.
    [[nodiscard]] Result<> finish();

private:
    ImageFile(QByteArray path, Existing existing)
        : m_path(std::move(path))
        , m_existing(existing)
    {
    }
    [[nodiscard]] Result<> open();
    [[nodiscard]] Result<> openNamed();
    [[nodiscard]] Result<> linkAs(const QByteArray &name) const;
    [[nodiscard]] Result<> replace();
    [[nodiscard]] Result<> renameUnlessTaken();

    QByteArray m_path;
    Existing m_existing;
    QByteArray m_temporary; // the name that it has now; empty where it has none
    int m_descriptor = -1;
};
