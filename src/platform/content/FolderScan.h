// Walks a folder and makes it libisofs' tree, without reading any content. libisofs' own walk
// takes six times as long, leaves out what it cannot read, and keeps the children of a folder
// in a sorted list that it searches from the front: here they come in the order that this likes.
// The thread that holds libisofs.
#pragma once

#include "IsoKind.h"
#include "Result.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <stop_token>
#include <sys/stat.h>

struct Iso_Dir;
struct Iso_Node;

// A regular file as it was when the folder was walked.
struct ScannedFile
{
    qint64 size = 0;
    qint64 modified = 0; // see changeTime()
};

class FolderScan
{
public:
    using Files = QHash<QByteArray, ScannedFile>;

    FolderScan(IsoKind kind, std::stop_token stop)
        : m_kind(kind)
        , m_stop(std::move(stop))
    {
    }

    // Puts all that is in the folder under root. Fails, naming the file or folder, when one cannot
    // be read, and when stopped.
    [[nodiscard]] Result<> run(const QByteArray &folder, Iso_Dir *root);

    // The regular files by their paths below the folder, which begin with a slash.
    [[nodiscard]] const Files &files() const { return m_files; }

private:
    struct Entry
    {
        QByteArray name;
        struct stat status = {};
        QByteArray target; // of a symbolic link
    };
    struct Pending
    {
        QByteArray path; // below the folder
        Iso_Dir *node = nullptr;
    };

    [[nodiscard]] Result<> scanFolder(const Pending &pending);
    [[nodiscard]] Result<QList<Entry>> readFolder(const QByteArray &path) const;
    [[nodiscard]] Result<Entry> readEntry(int folder, const QByteArray &path,
                                          const char *name) const;
    [[nodiscard]] QHash<QByteArray, QByteArray> hfsPlusNames(const QList<Entry> &entries) const;
    // Hidden: in which of the image's trees.
    [[nodiscard]] Result<> addEntry(const Pending &parent, const Entry &entry,
                                    const QByteArray &name, int hidden);
    [[nodiscard]] static int addNode(Iso_Dir *parent, const char *name, const Entry &entry,
                                     Iso_Node **node);

    const IsoKind m_kind;
    std::stop_token m_stop;
    QByteArray m_folder; // without a slash at the end
    Files m_files;
    QList<Pending> m_pending;
};
