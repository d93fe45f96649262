// A file of the store while it arrives. Where it is not kept, nothing of it is left. Any thread,
// one at a time.
#pragma once

#include "FileTree.h"

class Upload
{
public:
    // A file of so many bytes for a place in the tree, which outlives this.
    Upload(const FileTree &tree, const FileKeys &keys, const QByteArray &name, qint64 size);
    ~Upload();
    Upload(const Upload &) = delete;
    Upload &operator=(const Upload &) = delete;

    // Whether the bytes are on the disk; not where they are more than announced.
    [[nodiscard]] bool write(const char *data, std::size_t size);

    // Puts the whole file into its place, over an older one; false leaves that as it was. The file
    // is safe from a loss of power then.
    [[nodiscard]] bool keep();

private:
    [[nodiscard]] bool takePlace(const Descriptor &folder);

    const FileTree &m_tree;
    FileKeys m_keys;
    QByteArray m_name;
    QByteArray m_incomingName;
    Descriptor m_file;
    qint64 m_left;
};
