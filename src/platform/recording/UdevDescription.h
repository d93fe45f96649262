// What the system itself has found out about a drive and its medium: less than the drive tells, but
// known while another program holds it, and where this one may not ask. Any thread.
#pragma once

#include "MediumDescription.h"

#include <QVariantMap>

#include <optional>

struct udev_device;

struct UdevDescription
{
    explicit UdevDescription(udev_device *device);

    QVariantMap info; // keys of DRKeys.h: what never changes
    std::optional<MediumDescription> medium;
};
