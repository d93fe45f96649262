#include "FileTools.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>

namespace fs = std::filesystem;

qint64 MiscTool::getFileSize(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() ? file.size() : 0;
}

qint64 MiscTool::getFolderSize(const QString &path, const std::stop_token &stop)
{
    // Qt's directory iterator cannot name files that are not valid text; this one can.
    std::error_code error;
    fs::recursive_directory_iterator entry(QFile::encodeName(path).toStdString(),
                                           fs::directory_options::skip_permission_denied, error);
    qint64 sum = 0;
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (stop.stop_requested())
            break;
        std::error_code ignored;
        if (!entry->is_symlink(ignored) && entry->is_regular_file(ignored)) {
            const std::uintmax_t size = entry->file_size(ignored);
            if (!ignored)
                sum += static_cast<qint64>(size);
        }
    }
    return sum;
}

QString MiscTool::getCachedPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}
