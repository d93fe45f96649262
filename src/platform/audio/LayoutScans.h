// The looks at the single kinds of file that AudioLayout::of takes, after the first bytes have told
// the kind, and the numbers they are made of. Any thread.
#pragma once

#include "AudioLayout.h"

namespace LayoutScans {

[[nodiscard]] AudioLayout wave(FileBytes &bytes);
[[nodiscard]] AudioLayout aiff(FileBytes &bytes);
[[nodiscard]] AudioLayout au(FileBytes &bytes);
[[nodiscard]] AudioLayout caf(FileBytes &bytes);
[[nodiscard]] AudioLayout mp4(FileBytes &bytes);
[[nodiscard]] AudioLayout amr(FileBytes &bytes, const std::stop_token &stop);
[[nodiscard]] AudioLayout mpeg(FileBytes &bytes, AudioLayout::Depth depth,
                               const std::stop_token &stop);

}
