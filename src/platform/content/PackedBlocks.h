// Blocks of bytes many of which are zero, as an image's folders are: most of these fill the smaller
// part of their blocks. Kept are the words that are not zero. Const calls may run side by side.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

class PackedBlocks
{
public:
    static constexpr qint64 blockSize = 2048; // bytes

    // Whole blocks.
    void append(QByteArrayView bytes);

    [[nodiscard]] qint64 size() const { return m_starts.size() * blockSize; } // bytes

    // The bytes from a position on, all of which lie within the size.
    void read(char *to, qint64 position, qint64 length) const;
    [[nodiscard]] QByteArray part(qint64 position, qint64 length) const;

private:
    // Of each block, which of its words are kept, and these words. In pieces, since to let one
    // array grow takes the memory that is to be saved.
    QList<QByteArray> m_pieces;
    QList<quint32> m_starts; // of the blocks in their pieces
};
