#include "IsoDirectory.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

constexpr qint64 blockSize = 2048;
constexpr qint64 volumeDescriptor = 16 * blockSize; // ISO 9660, 6.2.1
constexpr qint64 rootRecord = 156;                  // ISO 9660, 8.4.18: in the volume descriptor

// A directory record, ISO 9660, 9.1, and a system use entry, SUSP, 4.1.
constexpr qint64 recordHead = 33;
constexpr quint8 folderFlag = 0x02;
constexpr quint8 moreSectionsFlag = 0x80;
constexpr qint64 entryHead = 4;
constexpr qint64 continuationLength = 28;
constexpr qint64 nameHead = 5;
constexpr int mostAreas = 64; // of one record: a name and a link's target need three

quint32 number(QByteArrayView bytes, qint64 at)
{
    return qFromLittleEndian<quint32>(bytes.data() + at); // NOLINT: the caller has checked
}

struct Folder
{
    QByteArray path;
    qint64 start = 0;
    qint64 length = 0;
};

class Reader
{
public:
    explicit Reader(const PackedBlocks &metadata)
        : m_metadata(metadata)
    {
    }

    // False where the metadata are not what they should be.
    bool readAll()
    {
        const std::optional<QByteArray> root = part(volumeDescriptor + rootRecord, recordHead);
        if (!root)
            return false;
        m_folders.append({{}, number(*root, 2) * blockSize, number(*root, 10)});
        // Every folder takes at least one block of its own.
        for (qint64 i = 0; i < m_folders.size(); ++i) {
            const Folder folder = m_folders.at(i);
            if (i > m_metadata.size() / blockSize || !readFolder(folder))
                return false;
        }
        return true;
    }

    QList<IsoSection> sections;

private:
    [[nodiscard]] std::optional<QByteArray> part(qint64 start, qint64 length) const
    {
        if (start < 0 || length < 0 || start + length > m_metadata.size())
            return std::nullopt;
        return m_metadata.part(start, length);
    }

    bool readFolder(const Folder &folder)
    {
        m_fileOffset = 0;
        int index = 0; // the first two records are the folder itself and the one above
        for (qint64 at = 0; at < folder.length; at += blockSize) {
            const std::optional<QByteArray> block = part(folder.start + at, blockSize);
            if (!block || !readBlock(folder, *block, index))
                return false;
        }
        return true;
    }

    // Records do not cross blocks, and zeros fill these up.
    bool readBlock(const Folder &folder, QByteArrayView block, int &index)
    {
        while (!block.isEmpty() && block.front() != '\0') {
            const auto size = static_cast<quint8>(block.front());
            if (size <= recordHead || size > block.size()
                || (index++ > 1 && !readRecord(folder, block.first(size))))
                return false;
            block = block.sliced(size);
        }
        return true;
    }

    bool readRecord(const Folder &folder, QByteArrayView record)
    {
        const qint64 nameLength = static_cast<quint8>(record[recordHead - 1]);
        const qint64 systemUse = recordHead + nameLength + (nameLength % 2 == 0 ? 1 : 0);
        if (systemUse > record.size())
            return false;
        QByteArray name;
        if (!readName(record.sliced(systemUse), name) || name.isEmpty())
            return false;
        const QByteArray path = folder.path + '/' + name;
        const qint64 start = number(record, 2) * blockSize;
        const qint64 length = number(record, 10);
        const auto flags = static_cast<quint8>(record[25]);
        if (flags & folderFlag) {
            m_folders.append({path, start, length});
            return true;
        }
        if (length > 0)
            sections.append({path, start, length, m_fileOffset});
        m_fileOffset = flags & moreSectionsFlag ? m_fileOffset + length : 0;
        return true;
    }

    // Puts together the Rock Ridge name, which may go on in continuation areas.
    bool readName(QByteArrayView first, QByteArray &name) const
    {
        QByteArray area;
        for (int areas = 0; !first.isEmpty(); ++areas) {
            QByteArray next;
            if (areas > mostAreas || !readEntries(first, name, next))
                return false;
            area = std::move(next);
            first = area;
        }
        return true;
    }

    bool readEntries(QByteArrayView entries, QByteArray &name, QByteArray &next) const
    {
        while (entries.size() >= entryHead && entries[0] != '\0') { // zeros fill an area up
            const auto size = static_cast<quint8>(entries[2]);
            if (size < entryHead || size > entries.size())
                return false;
            const QByteArrayView entry = entries.first(size);
            if (entry.startsWith("NM") && size >= nameHead)
                name.append(entry.sliced(nameHead));
            if (entry.startsWith("CE") && size >= continuationLength) {
                const qint64 start = number(entry, 4) * blockSize + number(entry, 12);
                std::optional<QByteArray> area = part(start, number(entry, 20));
                if (!area)
                    return false;
                next = std::move(*area);
            }
            entries = entries.sliced(size);
        }
        return true;
    }

    const PackedBlocks &m_metadata;
    QList<Folder> m_folders;
    qint64 m_fileOffset = 0; // of the section that comes next
};

}

Result<QList<IsoSection>> IsoDirectory::sections(const PackedBlocks &metadata)
{
    Reader reader(metadata);
    if (!reader.readAll())
        return Failure{QStringLiteral("The image's folders cannot be read")};
    return std::move(reader.sections);
}
