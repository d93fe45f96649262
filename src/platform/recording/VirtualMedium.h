// The medium of the virtual recorder as its property list describes it. A value, read afresh at
// each look, so that what another program changed is seen at once. Any thread.
#pragma once

#include "Result.h"

#include <QList>
#include <QVariantMap>

#include <optional>

struct MediaType;

struct VirtualMedium
{
    // Incomplete: a burn began and has not ended well. Neither blank nor readable.
    enum class State { Blank, Incomplete, Complete };

    QString identifier; // of this one medium
    QString type;       // DRDeviceMediaType…; Unknown where the property list cannot be read
    State state = State::Incomplete;
    bool appendable = false; // left open after a burn
    bool audio = false;      // what was burned is audio
    qint64 capacity = 0;     // blocks
    QList<qint64> tracks;    // blocks of each track, in order from block 0

    [[nodiscard]] static VirtualMedium blank(const MediaType &type);

    // The medium in a folder; null where there is none.
    [[nodiscard]] static std::optional<VirtualMedium> load(const QString &folder);
    [[nodiscard]] Result<> store(const QString &folder) const;

    // Becomes blank again, as after erasing.
    void clear();

    [[nodiscard]] bool isBlank() const { return state == State::Blank; }
    [[nodiscard]] bool isErasable() const;
    [[nodiscard]] qint64 usedBlocks() const;

    // The medium's part of a device status (DRDeviceMedia… keys).
    [[nodiscard]] QVariantMap status(bool reserved) const;
};
