// What a driver knows of the medium in its recorder, and the map of keys that pages see of it. A
// value; any thread.
#pragma once

#include <QList>
#include <QString>
#include <QVariantMap>

struct MediumDescription
{
    struct Track
    {
        enum class State { Empty, Incomplete, Complete };

        int session = 1;   // from 1
        qint64 start = 0;  // blocks
        qint64 length = 0; // blocks
        bool audio = false;
        State state = State::Complete;
    };

    QString type;       // DRDeviceMediaType…
    QString mediaClass; // DRDeviceMediaClass…
    QString bsdName;
    QList<double> speeds; // KB (1,000 bytes) per second, rising
    qint64 freeBlocks = 0;
    qint64 usedBlocks = 0;
    qint64 overwritableBlocks = 0;
    bool blank = false;
    bool appendable = false;
    bool erasable = false;
    QList<Track> tracks;

    // The medium's part of a device status (DRDeviceMedia… keys).
    [[nodiscard]] QVariantMap status(bool reserved) const;
};
