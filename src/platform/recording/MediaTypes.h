// The media that can be written: what each holds and how fast it is written. Any thread.
#pragma once

#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <QVariantMap>

#include <span>

struct MediaType
{
    QLatin1StringView type;          // DRDeviceMediaType…
    QLatin1StringView mediaClass;    // DRDeviceMediaClass…
    QLatin1StringView name;          // as a person writes it: "DVD+R DL"
    qint64 capacity;                 // blocks of 2,048 bytes (audio: 2,352)
    double singleSpeed;              // KB (1,000 bytes) per second at 1x
    std::span<const double> factors; // usual write speeds, multiples of the single speed
    bool erasable;
    bool overwritable; // any block can be written again without erasing first

    // Write speeds in KB per second, rising.
    [[nodiscard]] QList<double> speeds() const;

    // The name as commands take it: "dvd+r-dl".
    [[nodiscard]] QString commandName() const;
};

namespace MediaTypes {

[[nodiscard]] std::span<const MediaType> all();

// Null for a type that cannot be written or is not known.
[[nodiscard]] const MediaType *find(const QString &type);
[[nodiscard]] const MediaType *findByCommandName(const QString &name);

// The write capabilities (DRDeviceCanWrite… keys) of a recorder that writes all of them.
[[nodiscard]] QVariantMap writeCapabilities();

}
