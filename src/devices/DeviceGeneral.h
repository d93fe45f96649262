// A short summary of a recorder and of the medium in it, as labelled rows. Main thread.
#pragma once

#include "DRDevice.h"
#include "DeviceRows.h"

class DeviceGeneral : public DeviceRows
{
public:
    // Without a device: no rows.
    [[nodiscard]] static DeviceGeneral initWithDevice(const DRDevice &device = {});

    // Builds the rows afresh from the device's state of now.
    void toDictionary(const DRDevice &device);

private:
    void addMedium(const DRDevice &device);
};
