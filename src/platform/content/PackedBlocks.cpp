#include "PackedBlocks.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstring>

namespace {

constexpr qint64 wordSize = sizeof(quint64);
constexpr qint64 wordCount = PackedBlocks::blockSize / wordSize;

constexpr qint64 blocksOfPiece = 512;

using Kept = std::bitset<wordCount>;

void append(QByteArray &packed, const char *block)
{
    std::array<quint64, wordCount> words = {};
    std::memcpy(words.data(), block, sizeof(words));
    Kept kept;
    qsizetype count = 0;
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == 0)
            continue;
        kept.set(i);
        words[static_cast<size_t>(count++)] = words[i];
    }
    packed.append(reinterpret_cast<const char *>(&kept), sizeof(kept));
    packed.append(reinterpret_cast<const char *>(words.data()), count * wordSize);
}

void unpack(const char *packed, char *block)
{
    Kept kept;
    std::memcpy(&kept, packed, sizeof(kept));
    packed += sizeof(kept);
    std::memset(block, 0, PackedBlocks::blockSize);
    for (qint64 i = 0; i < wordCount; ++i) {
        if (!kept.test(static_cast<size_t>(i)))
            continue;
        std::memcpy(block + i * wordSize, packed, wordSize);
        packed += wordSize;
    }
}

}

void PackedBlocks::append(QByteArrayView bytes)
{
    Q_ASSERT(bytes.size() % blockSize == 0);
    for (qsizetype at = 0; at < bytes.size(); at += blockSize) {
        if (m_starts.size() % blocksOfPiece == 0) {
            if (!m_pieces.isEmpty())
                m_pieces.last().squeeze();
            m_pieces.append(QByteArray());
            m_pieces.last().reserve(blocksOfPiece * qsizetype(blockSize + sizeof(Kept)));
        }
        m_starts.append(static_cast<quint32>(m_pieces.constLast().size()));
        ::append(m_pieces.last(), bytes.data() + at);
    }
}

void PackedBlocks::read(char *to, qint64 position, qint64 length) const
{
    Q_ASSERT(position >= 0 && position + length <= size());
    std::array<char, blockSize> block = {};
    while (length > 0) {
        const qint64 inBlock = position % blockSize;
        const qint64 now = std::min(length, blockSize - inBlock);
        const qint64 index = position / blockSize;
        const QByteArray &piece = m_pieces.at(index / blocksOfPiece);
        unpack(piece.constData() + m_starts.at(index), block.data());
        std::memcpy(to, block.data() + inBlock, static_cast<size_t>(now));
        to += now;
        position += now;
        length -= now;
    }
}

QByteArray PackedBlocks::part(qint64 position, qint64 length) const
{
    QByteArray bytes(length, Qt::Uninitialized);
    read(bytes.data(), position, length);
    return bytes;
}
