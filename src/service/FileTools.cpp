#include "FileTools.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace {

qint64 sizeOf(const fs::directory_entry &file)
{
    std::error_code error;
    const std::uintmax_t size = file.file_size(error);
    return error ? 0 : static_cast<qint64>(size);
}

}

qint64 MiscTool::getFileSize(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() ? file.size() : 0;
}

qint64 MiscTool::getFolderSize(const QString &path, const std::stop_token &stop)
{
    // Qt's directory iterator cannot name files that are not valid text; this one can. One for each
    // folder, so that a folder that cannot be read is skipped alone.
    std::vector<fs::path> folders{QFile::encodeName(path).toStdString()};
    qint64 sum = 0;
    while (!folders.empty() && !stop.stop_requested()) {
        std::error_code error;
        fs::directory_iterator entry(folders.back(), error);
        folders.pop_back();
        for (; !error && entry != fs::directory_iterator() && !stop.stop_requested();
             entry.increment(error)) {
            std::error_code ignored;
            const fs::file_type type = entry->symlink_status(ignored).type();
            if (type == fs::file_type::directory)
                folders.push_back(entry->path());
            else if (type == fs::file_type::regular)
                sum += sizeOf(*entry);
        }
    }
    return sum;
}

QString MiscTool::getCachedPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}
