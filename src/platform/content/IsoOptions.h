// How libisofs is to write an image. Any thread.
#pragma once

#include "IsoKind.h"

struct iso_write_opts;

namespace IsoOptions {

// To be freed by iso_write_opts_free(); null when there is no memory.
[[nodiscard]] iso_write_opts *make(IsoKind kind);

}
