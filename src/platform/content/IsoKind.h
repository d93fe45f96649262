// Which file systems an image has.
#pragma once

enum class IsoKind {
    Iso,    // ISO 9660 level 3 with Rock Ridge and Joliet
    Hybrid, // the same, and HFS+ in a partition of its own
};
