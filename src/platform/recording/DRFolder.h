// A folder on disk as the content of a burn. A value; any thread.
#pragma once

#include <QString>

class DRFolder
{
public:
    [[nodiscard]] static DRFolder folderWithPath(const QString &path) { return DRFolder(path); }

    [[nodiscard]] QString path() const { return m_path; }

    // The folder's own name, which the disc is named after; never empty.
    [[nodiscard]] QString name() const;

private:
    explicit DRFolder(const QString &path)
        : m_path(path)
    {
    }

    QString m_path;
};
