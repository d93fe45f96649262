#include "MpegTags.h"

#include "FileBytes.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr qint64 id3v1Size = 128; // bytes
constexpr qint64 id3v1PlusSize = 227;
constexpr qint64 apeHeaderSize = 32; // also of the footer

qint64 syncSafe(const uchar *bytes)
{
    return (bytes[0] & 0x7F) << 21 | (bytes[1] & 0x7F) << 14 | (bytes[2] & 0x7F) << 7
           | (bytes[3] & 0x7F);
}

qint64 id3v2Size(const uchar *head)
{
    const bool isValid =
        head[3] != 0xFF && head[4] != 0xFF
        && std::all_of(head + 6, head + 10, [](uchar byte) { return byte < 0x80; });
    constexpr int hasFooter = 0x10;
    return isValid ? 10 + syncSafe(head + 6) + ((head[5] & hasFooter) ? 10 : 0) : 0;
}

// The length of one tag that begins at a position; 0 when there is none.
qint64 tagAt(FileBytes &bytes, qint64 offset)
{
    const auto holds = [&](QByteArrayView text) {
        const uchar *found = bytes.at(offset, text.size());
        return found && QByteArrayView(found, text.size()) == text;
    };
    if (const uchar *head = holds("ID3") ? bytes.at(offset, 10) : nullptr)
        return id3v2Size(head);
    if (holds("TAG+"))
        return id3v1PlusSize;
    if (holds("TAG"))
        return id3v1Size;
    const uchar *ape = holds("APETAGEX") ? bytes.at(offset, apeHeaderSize) : nullptr;
    constexpr int isHeader = 0x20;
    if (ape && (ape[23] & isHeader) != 0)
        return apeHeaderSize + qFromLittleEndian<quint32>(ape + 12);
    return 0;
}

// The length of one tag that ends at a position; 0 when there is none.
qint64 tagBefore(FileBytes &bytes, qint64 end)
{
    const auto holds = [&](qint64 offset, QByteArrayView text) {
        const uchar *found = bytes.at(offset, text.size());
        return found && offset + text.size() <= end && QByteArrayView(found, text.size()) == text;
    };
    if (holds(end - id3v1Size, "TAG"))
        return id3v1Size;
    if (holds(end - id3v1PlusSize, "TAG+"))
        return id3v1PlusSize;
    if (holds(end - apeHeaderSize, "APETAGEX")) {
        const qint64 size = qFromLittleEndian<quint32>(bytes.at(end - 20, 4));
        const bool hasHeader = (*bytes.at(end - 9, 1) & 0x80) != 0;
        return size + (hasHeader ? apeHeaderSize : 0);
    }
    if (holds(end - 9, "LYRICS200")) {
        const uchar *digits = bytes.at(end - 15, 6);
        return digits ? QByteArrayView(digits, 6).toLongLong() + 15 : 0;
    }
    if (holds(end - 10, "3DI"))
        return syncSafe(bytes.at(end - 4, 4)) + 20;
    return 0;
}

}

qint64 MpegTags::behind(FileBytes &bytes, qint64 offset, qint64 end)
{
    while (offset < end) {
        const qint64 length = tagAt(bytes, offset);
        if (length == 0)
            break;
        offset += length;
    }
    return offset;
}

qint64 MpegTags::before(FileBytes &bytes, qint64 begin)
{
    qint64 end = bytes.size();
    for (qint64 length = tagBefore(bytes, end); length > 0 && end - length >= begin;
         length = tagBefore(bytes, end))
        end -= length;
    return end;
}
