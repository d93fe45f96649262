#include "WavTracks.h"

#include <QRandomGenerator>
#include <QtEndian>

namespace {

constexpr int rate = 44100;
constexpr int frameSize = 4;     // bytes
constexpr int sectorSize = 2352; // bytes

template <typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

}

QByteArray WavTracks::noise(qint64 frames, uint seed)
{
    QRandomGenerator random(seed);
    QByteArray samples(frames * frameSize, Qt::Uninitialized);
    for (char &byte : samples)
        byte = static_cast<char>(1 + random.bounded(255));
    return samples;
}

QByteArray WavTracks::wav(const QByteArray &samples)
{
    const auto size = static_cast<quint32>(samples.size());
    return "RIFF" + littleEndian<quint32>(36 + size) + "WAVEfmt " + littleEndian<quint32>(16)
           + littleEndian<quint16>(1) + littleEndian<quint16>(2) + littleEndian<quint32>(rate)
           + littleEndian<quint32>(rate * frameSize) + littleEndian<quint16>(frameSize)
           + littleEndian<quint16>(16) + "data" + littleEndian<quint32>(size) + samples;
}

QByteArray WavTracks::sectors(const QByteArray &samples)
{
    const qsizetype rest = samples.size() % sectorSize;
    return rest == 0 ? samples : samples + QByteArray(sectorSize - rest, '\0');
}
