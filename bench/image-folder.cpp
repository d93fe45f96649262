// image-folder SOURCE IMAGE: writes a folder as a disc image, as a burn does. For measuring.

#include "IsoImage.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace {

Result<> imageFolder(const QString &source, const QString &image)
{
    const Result<TrackContent> content = IsoImage::fromFolder(source, QFileInfo(source).fileName());
    if (!content)
        return content.failure();
    QFile file(image);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate))
        return Failure{image + QStringLiteral(": ") + file.errorString()};
    return content.value().writeTo(file.handle(), [](qint64) { return Done{}; });
}

}

int main(int argc, char **argv)
{
    QTextStream errors(stderr);
    if (argc != 3) {
        errors << "usage: image-folder SOURCE IMAGE\n";
        return 2;
    }
    const Result<> done = imageFolder(QFile::decodeName(argv[1]), QFile::decodeName(argv[2]));
    if (!done)
        errors << done.error() << '\n';
    return done ? 0 : 1;
}
