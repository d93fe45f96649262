#include "LibraryStream.h"

#include "FolderScan.h"
#include "IsoOptions.h"

#define LIBISOFS_WITHOUT_LIBBURN
#include <array>
#include <cstdlib>
#include <libisofs/libisofs.h>

QByteArray LibraryStream::hybrid(const QByteArray &folder)
{
    std::array never = std::to_array("NEVER");
    std::array none = std::to_array("");
    std::array charset = std::to_array("UTF-8");
    iso_init_with_flag(1);
    iso_set_msgs_severities(never.data(), never.data(), none.data());
    iso_set_local_charset(charset.data(), 0);
    IsoImage *image = nullptr;
    burn_source *source = nullptr;
    QByteArray bytes;
    iso_image_new("TEST", &image);
    iso_write_opts *options = IsoOptions::make(IsoKind::Hybrid);
    if (FolderScan(IsoKind::Hybrid, {}).run(folder, iso_image_get_root(image))
        && iso_image_create_burn_source(image, options, &source) >= 0) {
        bytes.resize(source->get_size(source));
        for (qint64 done = 0; done < bytes.size(); done += 2048)
            source->read_xt(source, reinterpret_cast<unsigned char *>(bytes.data() + done), 2048);
        source->free_data(source);
        std::free(source); // NOLINT: allocated by a C library
    }
    iso_write_opts_free(options);
    iso_image_unref(image);
    iso_finish();
    return bytes;
}
