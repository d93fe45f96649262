// The one door to libburn's encoder of CD-Text. Private to this library; any thread, one at a time
// inside.
#pragma once

#include "CDTextPayload.h"
#include "Result.h"

namespace LibburnPacks {

// A language, with its codes as they stand on the disc.
struct Block
{
    int characterCode;
    int copyright;
    int language;
    QList<CDTextPayload::Texts> payload;
};

// The packs of up to eight blocks that have texts. The error is libburn's reason.
[[nodiscard]] Result<QByteArray> make(const QList<Block> &blocks, int trackCount);

}
