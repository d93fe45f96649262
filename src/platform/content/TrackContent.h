// What a data track holds, as a sequence of extents: bytes in memory and whole files or pieces of
// them, in the order in which they lie on the disc. Nothing is read before it is written, so a
// track of any size costs only its list. Any thread; const calls may run side by side.
#pragma once

#include "PackedBlocks.h"
#include "Result.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class TrackSink;

// Called as a track is written or compared, with the bytes done since the last call: at most
// 256 KiB at a time, and the track's whole length in the end, gaps and holes included. A failure
// (cancelled, medium gone) ends the operation, which returns it.
using Advance = std::function<Result<>(qint64 bytes)>;

// A run of bytes that lie together on the disc. What lies between two extents, and after the last
// one up to the end of the track, is zero.
struct Extent
{
    qint64 start = 0;  // byte position in the track
    qint64 length = 0; // bytes
    QByteArray bytes;  // the content, where there are neither path nor blocks

    QByteArray path;       // the file that holds the content, in the encoding of the file system
    qint64 fileOffset = 0; // byte position in that file, or in the blocks
    qint64 fileSize = 0;   // size that the whole file must still have, bytes
    qint64 modified = 0;   // time of change that it must still have, see changeTime()

    std::shared_ptr<const PackedBlocks> blocks = nullptr; // which hold the content
};

class TrackContent
{
public:
    static constexpr int blockSize = 2048; // bytes; a data track in mode 1

    TrackContent() = default;

    // Extents in ascending order that do not overlap, and the track's length in blocks.
    TrackContent(QList<Extent> extents, qint64 blockCount);

    // A disc image file, written as it is; its last block is filled up with zeros. Fails for what
    // is no readable, not empty regular file.
    [[nodiscard]] static Result<TrackContent> fromImageFile(const QString &path);

    [[nodiscard]] qint64 blockCount() const { return m_blockCount; }
    [[nodiscard]] qint64 byteCount() const { return m_blockCount * blockSize; }

    // Writes the track into an empty regular file, byteCount() bytes. Fails, naming the file, when
    // a source is missing, unreadable, or no longer what it was when the extents were made.
    [[nodiscard]] Result<> writeTo(int fileDescriptor, const Advance &advance) const;

    // The same, and the failure names path when it is the file that cannot be written.
    [[nodiscard]] Result<> writeToPath(const QByteArray &path, int fileDescriptor,
                                       const Advance &advance) const;

    // Hands every byte of the track to a sink, in order. Fails as writeTo() does.
    [[nodiscard]] Result<> passTo(TrackSink &sink, const Advance &advance) const;

    // Compares the track with what a file holds from its start, byte by byte. Fails with the
    // position of the first difference, or naming the source that changed.
    [[nodiscard]] Result<> compareWith(int fileDescriptor, const Advance &advance) const;

private:
    QList<Extent> m_extents;
    qint64 m_blockCount = 0;
};
