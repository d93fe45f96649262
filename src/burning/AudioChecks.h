// What is checked before tracks are added, before their texts are edited and before they are
// burned. Each shows the alert of the first check that fails, and is true when none does. Main
// thread.
#pragma once

#include "DRDevice.h"

namespace AudioChecks {

// Whether there is a medium of the CD class in the recorder.
[[nodiscard]] bool isCD(const DRDevice &device);

[[nodiscard]] bool beforeAdding(const DRDevice &device);
[[nodiscard]] bool beforeWritingText(const DRDevice &device, bool hasTracks);

// level: how full the disc will be, in percent.
[[nodiscard]] bool verify(const DRDevice &device, bool hasTracks, quint64 level);

}
