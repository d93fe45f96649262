// Reads the bookkeeping of an HFS+ volume, as far as a file system checker would: the two headers,
// the allocation bitmap, and the leaves of the catalog in their order. Any thread.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class HfsVolume
{
public:
    struct Entry
    {
        quint32 parent = 0; // the folder's number; 2 is the root, 1 above it
        QString name;       // decomposed; a slash stands for a colon
        quint32 number = 0;
        bool folder = false;
        qint64 size = 0;  // bytes; 0 for folders
        qint64 start = 0; // byte position in the volume
    };

    // The bytes of a whole volume, or of its start up to the end of the catalog.
    explicit HfsVolume(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
    }

    [[nodiscard]] QByteArray header() const { return m_bytes.mid(1024, 512); }
    [[nodiscard]] QByteArray secondHeader() const { return m_bytes.right(1024).first(512); }
    [[nodiscard]] qint64 blockSize() const { return number(1024 + 40); }
    [[nodiscard]] qint64 blockCount() const { return number(1024 + 44); }
    [[nodiscard]] quint32 fileCount() const { return number(1024 + 32); }
    [[nodiscard]] quint32 folderCount() const { return number(1024 + 36); }

    // The allocation file, all of its blocks.
    [[nodiscard]] qint64 bitmapStart() const { return extent(1024 + 112).first; }
    [[nodiscard]] QByteArray bitmap() const;

    // The files and folders, the root first, in the order of the catalog.
    [[nodiscard]] QList<Entry> entries() const;
    [[nodiscard]] QString volumeName() const { return entries().value(0).name; }

private:
    [[nodiscard]] quint32 number(qint64 at, int bytes = 4) const;      // up to 4 bytes
    [[nodiscard]] std::pair<qint64, qint64> extent(qint64 fork) const; // start and length, bytes
    void readNode(qint64 node, qint64 size, QList<Entry> &entries) const;

    QByteArray m_bytes;
};
