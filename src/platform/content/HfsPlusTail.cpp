#include "HfsPlusTail.h"

#include <QByteArrayView>
#include <QtEndian>

#include <optional>

namespace {

// Apple's partition map: one entry a block, from block 1 on.
constexpr qint64 mapBlockSize = 512; // bytes
constexpr qint64 mostEntries = 63;   // up to the ISO 9660 volume descriptors
constexpr qint64 entryStart = 8;
constexpr qint64 entryType = 48;

// An HFS+ volume header, at byte 1,024 of the volume and 1,024 bytes before its end.
constexpr qint64 headerDistance = 1024;
constexpr qint64 headerSize = 512;
constexpr qint64 blockSizeField = 40;
constexpr qint64 totalBlocksField = 44;
constexpr qint64 bitmapStartField = 112 + 16; // the first extent of the allocation file
constexpr qint64 bitmapCountField = bitmapStartField + 4;

qint64 number(QByteArrayView bytes, qint64 at)
{
    return qFromBigEndian<quint32>(bytes.data() + at); // NOLINT: the caller has checked
}

std::optional<qint64> volumeStart(const PackedBlocks &metadata)
{
    for (qint64 i = 1; i <= mostEntries && metadata.size() >= (i + 1) * mapBlockSize; ++i) {
        const QByteArray entry = metadata.part(i * mapBlockSize, mapBlockSize);
        if (!entry.startsWith("PM"))
            break;
        if (entry.sliced(entryType).startsWith(QByteArrayView("Apple_HFS", 10)))
            return number(entry, entryStart) * mapBlockSize;
    }
    return std::nullopt;
}

// One bit a block, the first in the highest bit of the first byte. All are used.
QByteArray fullBitmap(qint64 blocks)
{
    QByteArray bitmap(blocks / 8, '\xff');
    if (blocks % 8 != 0)
        bitmap.append(static_cast<char>(0xff00 >> (blocks % 8)));
    return bitmap;
}

}

Result<QList<Extent>> HfsPlusTail::extents(const PackedBlocks &metadata)
{
    const Failure wrong{QStringLiteral("The image's HFS+ volume is not what it should be")};
    const std::optional<qint64> start = volumeStart(metadata);
    if (!start || *start + headerDistance + headerSize > metadata.size())
        return wrong;
    const QByteArray header = metadata.part(*start + headerDistance, headerSize);
    const qint64 blockSize = number(header, blockSizeField);
    const qint64 blocks = number(header, totalBlocksField);
    const QByteArray bitmap = fullBitmap(blocks);
    const qint64 bitmapStart = *start + number(header, bitmapStartField) * blockSize;
    const qint64 second = *start + blocks * blockSize - headerDistance;
    if (!header.startsWith("H+") || bitmapStart < metadata.size()
        || bitmap.size() > number(header, bitmapCountField) * blockSize
        || bitmapStart + bitmap.size() > second)
        return wrong;
    return QList<Extent>{{bitmapStart, bitmap.size(), bitmap, {}, 0, 0, 0},
                         {second, headerSize, header, {}, 0, 0, 0}};
}
