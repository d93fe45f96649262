// The profiles of MMC-6: the kinds of media by which a drive tells what it can write and what is in
// it. Any thread.
#pragma once

#include <QLatin1StringView>
#include <QVariantMap>

#include <span>

struct MmcProfile
{
    int number;
    QLatin1StringView type;       // DRDeviceMediaType…
    QLatin1StringView mediaClass; // DRDeviceMediaClass…
    QLatin1StringView capability; // to write it (DRDeviceCanWrite…); empty for what is only read
    bool erasable;
    bool overwritable;

    // Null for a number that is not known.
    [[nodiscard]] static const MmcProfile *find(int number);

    // The write capabilities (DRDeviceCanWrite… keys) of a drive with these profiles; CD-Text, of
    // which they do not tell, false.
    [[nodiscard]] static QVariantMap writeCapabilities(std::span<const int> numbers);
};
