// The folders of a virtual recorder: medium/ with the medium in it, and ejected/ with the written
// discs that were taken out. Who else uses the recorder is looked after by the caller. Any
// thread, one change at a time.
#pragma once

#include "VirtualMedium.h"

class VirtualTray
{
public:
    explicit VirtualTray(const QString &folder)
        : m_folder(folder)
    {
    }

    [[nodiscard]] QString folder() const { return m_folder; }
    [[nodiscard]] QString mediumFolder() const;

    // What was burned on the medium, disc.iso or disc.bin, and the same while it is being burned or
    // erased.
    [[nodiscard]] QString contentPath(const VirtualMedium &medium) const;
    [[nodiscard]] QString unfinishedPath(const VirtualMedium &medium) const;

    // Stores a file that describes what is burned; removes these; and removes all of it.
    [[nodiscard]] Result<> storeSheet(const QString &suffix, const QByteArray &content) const;
    void removeSheets() const;
    void removeContent() const;

    // The medium in the recorder; null where there is none.
    [[nodiscard]] std::optional<VirtualMedium> medium() const;

    // Takes out the medium, if there is one, or puts a blank one in its place. The result is where
    // a written disc that was in the recorder is kept now; empty for any other.
    [[nodiscard]] Result<QString> takeOut() const;
    [[nodiscard]] Result<QString> insertBlank(const MediaType &type) const;

private:
    QString m_folder;
};
