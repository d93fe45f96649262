#include "FileBytes.h"
#include "LayoutScans.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>
#include <initializer_list>
#include <optional>

namespace {

struct Box
{
    qint64 start = 0; // of the content
    qint64 size = 0;  // of the content, as the box tells it
    quint32 type = 0;
};

constexpr quint32 typeOf(const char *name)
{
    return static_cast<quint32>(name[0]) << 24 | static_cast<quint32>(name[1]) << 16
           | static_cast<quint32>(name[2]) << 8 | static_cast<quint32>(name[3]);
}

bool isOneOf(quint32 type, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return typeOf(name) == type; });
}

std::optional<Box> boxAt(FileBytes &bytes, qint64 offset, qint64 end)
{
    const uchar *header = offset + 8 <= end ? bytes.at(offset, 8) : nullptr;
    if (!header)
        return {};
    const qint64 size = qFromBigEndian<quint32>(header);
    const quint32 type = qFromBigEndian<quint32>(header + 4);
    if (size == 0) // up to the end of the file
        return Box{offset + 8, end - offset - 8, type};
    if (size != 1)
        return size < 8 ? std::nullopt : std::optional(Box{offset + 8, size - 8, type});
    const uchar *large = bytes.at(offset + 8, 8);
    const qint64 largeSize = large ? qFromBigEndian<qint64>(large) : 0;
    return largeSize < 16 ? std::nullopt : std::optional(Box{offset + 16, largeSize - 16, type});
}

// Looks at the boxes that describe the tracks. A table that claims more samples than the file has
// bytes would be built up in memory before anybody missed them.
class TrackLook
{
public:
    TrackLook(FileBytes &bytes, AudioLayout &layout)
        : m_bytes(bytes)
        , m_layout(layout)
    {
    }

    void at(qint64 offset, qint64 end, int depth)
    {
        constexpr int deepest = 8;
        while (const std::optional<Box> box = boxAt(m_bytes, offset, end)) {
            if (box->size > end - box->start) {
                m_layout.fault = AudioLayout::damaged();
                return;
            }
            if (isOneOf(box->type, {"trak", "mdia", "minf", "stbl"}) && depth < deepest)
                at(box->start, box->start + box->size, depth + 1);
            else if (isOneOf(box->type, {"stsd"}))
                description(*box);
            else if (isOneOf(box->type, {"stsz"}))
                sizes(*box);
            offset = box->start + box->size;
        }
    }

private:
    void description(const Box &box)
    {
        const uchar *entry = box.size >= 16 ? m_bytes.at(box.start + 12, 4) : nullptr;
        if (entry && isOneOf(qFromBigEndian<quint32>(entry), {"drms", "enca"}))
            m_layout.fault = AudioLayout::isProtected();
    }

    void sizes(const Box &box)
    {
        const uchar *count = box.size >= 12 ? m_bytes.at(box.start + 8, 4) : nullptr;
        if (count && qFromBigEndian<quint32>(count) > m_bytes.size())
            m_layout.fault = AudioLayout::damaged();
    }

    FileBytes &m_bytes;
    AudioLayout &m_layout;
};

}

AudioLayout LayoutScans::mp4(FileBytes &bytes)
{
    AudioLayout layout;
    layout.demuxer = "mov";
    layout.end = bytes.size();
    bool hasTracks = false;
    qint64 offset = 0;
    while (const std::optional<Box> box = boxAt(bytes, offset, layout.end)) {
        const bool isNeeded = isOneOf(box->type, {"moov", "mdat", "moof"});
        if (box->size > layout.end - box->start) {
            // What other programs append needs no box around it.
            if (isNeeded || !hasTracks)
                layout.fault = AudioLayout::truncated();
            break;
        }
        if (box->type == typeOf("moov")) {
            hasTracks = true;
            TrackLook(bytes, layout).at(box->start, box->start + box->size, 0);
        }
        offset = box->start + box->size;
    }
    if (!hasTracks && layout.fault.isEmpty())
        layout.fault = AudioLayout::truncated();
    return layout;
}
