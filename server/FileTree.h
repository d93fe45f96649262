// The files of the store, in a folder of the disk:
//
//   <folder>/stored/[g-<group>/][c-<company>/][m-<module>/][r-<record>/]files/<name>
//   <folder>/incoming/   uploads that are not whole yet
//
// The prefixes keep apart what is stored under different keys. The download address cannot tell
// these apart, since it leaves missing keys out; an upload whose download address another file has
// already is refused, so that an address always means one file. No folder is entered and no file
// opened through a link, whoever put it there. Any thread; several processes may share the folder.
#pragma once

#include "Descriptor.h"
#include "Result.h"

#include <QByteArrayList>

#include <array>
#include <optional>
#include <sys/stat.h>

// Group, company, module and record; null for a missing one.
using FileKeys = std::array<QByteArray, 4>;

class FileTree
{
public:
    // Makes the folders, and removes what uploads left that a crash ended.
    [[nodiscard]] static Result<FileTree> open(const QString &folder);

    [[nodiscard]] static bool areValid(const FileKeys &keys);
    [[nodiscard]] static bool isValidName(const QByteArray &name);

    struct File
    {
        Descriptor descriptor;
        qint64 size = 0;
    };
    // The file of these keys, or of the components of a download address; none where it is missing
    // or no regular file.
    [[nodiscard]] std::optional<File> find(const FileKeys &keys, const QByteArray &name) const;
    [[nodiscard]] std::optional<File> find(const QByteArrayList &components) const;

    // In the order of their UTF-8 bytes.
    [[nodiscard]] QByteArrayList names(const FileKeys &keys) const;

    // Whether it was there and is gone.
    [[nodiscard]] bool remove(const FileKeys &keys, const QByteArray &name) const;

    // Bytes that may still be stored; some of the disk is left to the database.
    [[nodiscard]] qint64 freeSpace() const;

private:
    friend class Upload;

    [[nodiscard]] bool isTakenByOthers(const FileKeys &keys, const QByteArray &name) const;

    Descriptor m_stored;
    Descriptor m_incoming;
};
