#include "HfsVolume.h"

quint32 HfsVolume::number(qint64 at, int bytes) const
{
    quint32 value = 0;
    for (qint64 i = at; i < at + bytes && i < m_bytes.size(); ++i)
        value = value << 8 | static_cast<quint8>(m_bytes.at(i));
    return value;
}

std::pair<qint64, qint64> HfsVolume::extent(qint64 fork) const
{
    return {number(fork + 16) * blockSize(), number(fork + 20) * blockSize()};
}

QByteArray HfsVolume::bitmap() const
{
    const auto [start, length] = extent(1024 + 112);
    return m_bytes.mid(start, length);
}

QList<HfsVolume::Entry> HfsVolume::entries() const
{
    QList<Entry> entries;
    const auto [start, length] = extent(1024 + 272);
    const qint64 nodeSize = number(start + 14 + 18, 2);
    const qint64 nodes = number(start + 14 + 22);
    quint32 node = number(start + 14 + 10); // the first leaf
    for (qint64 read = 0; node != 0 && read < nodes; ++read) {
        readNode(start + node * nodeSize, nodeSize, entries);
        node = number(start + node * nodeSize);
    }
    return entries;
}

void HfsVolume::readNode(qint64 node, qint64 size, QList<Entry> &entries) const
{
    const qint64 records = number(node + 10, 2);
    for (qint64 i = 0; i < records; ++i) {
        const qint64 key = node + number(node + size - 2 * (i + 1), 2);
        const qint64 data = key + 2 + number(key, 2);
        const quint32 type = number(data, 2);
        if (type != 1 && type != 2) // a folder, a file; else a thread
            continue;
        Entry entry;
        entry.parent = number(key + 2);
        for (qint64 c = 0; c < number(key + 6, 2); ++c)
            entry.name += QChar(static_cast<char16_t>(number(key + 8 + 2 * c, 2)));
        entry.number = number(data + 8);
        entry.folder = type == 1;
        if (!entry.folder) {
            entry.size = qint64(number(data + 88)) << 32 | number(data + 88 + 4);
            entry.start = extent(data + 88).first;
        }
        entries.append(entry);
    }
}
