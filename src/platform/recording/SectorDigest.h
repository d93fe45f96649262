// By what sectors of sound that are read back are compared with those that were written. Any
// thread.
#pragma once

#include "AudioSource.h"

#include <QHashFunctions>

// Of the AudioSource::sectorSize bytes of a sector.
[[nodiscard]] inline std::size_t sectorDigest(const char *sector)
{
    return qHashBits(sector, AudioSource::sectorSize);
}
