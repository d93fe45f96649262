#include "ImageType.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace {

constexpr int tiff = 0;
constexpr int bmp = 1;
constexpr int jpeg = 3;
constexpr int png = 4;

struct KnownExtension
{
    QLatin1StringView extension;
    int type;
};

constexpr std::array knownExtensions{
    KnownExtension{QLatin1StringView("jpg"), jpeg}, KnownExtension{QLatin1StringView("jpeg"), jpeg},
    KnownExtension{QLatin1StringView("png"), png}, KnownExtension{QLatin1StringView("bmp"), bmp},
    KnownExtension{QLatin1StringView("tiff"), tiff}};

}

int MiscTool::getImageType(const QString &path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    const auto *found = std::ranges::find(knownExtensions, extension, &KnownExtension::extension);
    return found == knownExtensions.end() ? tiff : found->type;
}
