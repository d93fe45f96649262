#include "IsoOptions.h"

#define LIBISOFS_WITHOUT_LIBBURN
#include <cstdint>
#include <libisofs/libisofs.h>

iso_write_opts *IsoOptions::make(IsoKind kind)
{
    IsoWriteOpts *options = nullptr;
    if (iso_write_opts_new(&options, 0) < 0)
        return nullptr;
    iso_write_opts_set_iso_level(options, 3); // files of 4 GiB and more
    iso_write_opts_set_rockridge(options, 1);
    iso_write_opts_set_joliet(options, 1);
    iso_write_opts_set_joliet_long_names(options, 1);
    iso_write_opts_set_joliet_utf16(options, 1); // names beyond UCS-2, as their readers take them
    iso_write_opts_set_joliet_longer_paths(options, 1);
    iso_write_opts_set_allow_deep_paths(options, 1);
    iso_write_opts_set_allow_longer_paths(options, 1);
    iso_write_opts_set_hfsplus(options, kind == IsoKind::Hybrid ? 1 : 0);
    iso_write_opts_set_output_charset(options, "UTF-8");
    // Systems read ahead into the run-out blocks of a track written at once, which cannot be read,
    // and give up what comes before: 150 blocks of zeros keep the files away from them.
    iso_write_opts_set_tail_blocks(options, 150);
    return options;
}
