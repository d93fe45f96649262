// Reads the folders of an ISO 9660 image with Rock Ridge names from the image's metadata, for the
// positions at which the files' contents lie. Any thread.
#pragma once

#include "PackedBlocks.h"
#include "Result.h"

#include <QByteArray>
#include <QList>

// A part of a file, or the whole of it: files of 4 GiB and more have several, in their order.
struct IsoSection
{
    QByteArray path;   // from the root of the image, beginning with a slash
    qint64 start = 0;  // byte position in the image
    qint64 length = 0; // bytes
    qint64 fileOffset = 0;
};

namespace IsoDirectory {

// The sections of all regular files that are not empty. The metadata reach from the image's first
// byte to the end of its folders.
[[nodiscard]] Result<QList<IsoSection>> sections(const PackedBlocks &metadata);

}
