// Which kind of bitmap file a picture is written as. Any thread.
#pragma once

#include <QString>

namespace MiscTool {

// The code of the bitmap file type that the path's extension asks for: TIFF 0, BMP 1, JPEG 3,
// PNG 4. TIFF for an extension that is not known.
[[nodiscard]] int getImageType(const QString &path);

}
