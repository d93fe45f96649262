// A folder's image without the contents of its files: what libisofs makes of the folder's tree.
// Any thread; calls wait for each other, since libisofs has one state for the whole process.
#pragma once

#include "FolderScan.h"
#include "IsoKind.h"
#include "PackedBlocks.h"

#include <QString>

#include <memory>

struct IsoPlan
{
    // From the image's first byte to the end of its folders.
    std::shared_ptr<const PackedBlocks> metadata;
    qint64 blockCount = 0; // of the whole image
    FolderScan::Files files;

    // The folder is an absolute path without links. Fails, naming the file, when a file or folder
    // cannot be read, and when stopped.
    [[nodiscard]] static Result<IsoPlan> fromFolder(const QByteArray &folder,
                                                    const QString &volumeName, IsoKind kind,
                                                    const std::stop_token &stop);
};
