#include "Machine.h"

#include "ImageType.h"
#include "IncomingFile.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QNetworkInterface>
#include <QStorageInfo>

#include <optional>
#include <sys/stat.h>

namespace {

const QString pathKey = QStringLiteral("path");
const QString placeKey = QStringLiteral("place");

// Device and inode; null for what is not there.
std::optional<QString> placeOf(const QString &path)
{
    struct stat status
    {
    };
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return QStringLiteral("%1:%2").arg(status.st_dev).arg(status.st_ino);
}

const char *formatOf(const QString &path)
{
    switch (MiscTool::getImageType(path)) {
    case 1:
        return "BMP";
    case 3:
        return "JPG";
    case 4:
        return "PNG";
    default:
        return "TIFF";
    }
}

}

QString MiscTool::getIP()
{
    for (const QHostAddress &address : QNetworkInterface::allAddresses())
        if (!address.isLoopback() && !address.isLinkLocal())
            return address.toString();
    return {};
}

qint64 MiscTool::getDiskTotalSize()
{
    return QStorageInfo::root().bytesTotal();
}

qint64 MiscTool::getDiskAvailableSize()
{
    return QStorageInfo::root().bytesFree();
}

QByteArray MiscTool::bookmarkForURL(const QUrl &url)
{
    const QString path = url.toLocalFile();
    const std::optional<QString> place = placeOf(path);
    if (!place)
        return {};
    return QJsonDocument(QJsonObject{{pathKey, path}, {placeKey, *place}})
        .toJson(QJsonDocument::Compact);
}

QUrl MiscTool::urlForBookmark(const QByteArray &bookmark)
{
    const QJsonObject known = QJsonDocument::fromJson(bookmark).object();
    const QString path = known.value(pathKey).toString();
    const QString place = known.value(placeKey).toString();
    if (path.isEmpty())
        return {};
    if (placeOf(path) == place)
        return QUrl::fromLocalFile(path);
    const QFileInfoList others =
        QFileInfo(path).dir().entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &other : others)
        if (placeOf(other.filePath()) == place)
            return QUrl::fromLocalFile(other.filePath());
    // Replaced, as programs do when they save: what has the name now is meant.
    return QFileInfo::exists(path) ? QUrl::fromLocalFile(path) : QUrl();
}

bool MiscTool::saveImage(const QString &path, const QImage &image)
{
    constexpr int best = 100;
    const QFileInfo info(path);
    IncomingFile incoming(info.path(), info.fileName());
    return incoming.isOpen() && image.save(&incoming.file(), formatOf(path), best)
           && incoming.takePlace();
}

bool MiscTool::isImage(const QString &path)
{
    static const QStringList extensions{QStringLiteral("jpg"), QStringLiteral("jpeg"),
                                        QStringLiteral("png")};
    return extensions.contains(QFileInfo(path).suffix().toLower());
}

QString MiscTool::getIdentifier(const QString &text)
{
    return text + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"));
}

QString MiscTool::getFormattedAmount(double amount, const QString &currencySymbol)
{
    // An empty symbol would mean the locale's.
    return currencySymbol.isEmpty() ? QLocale().toString(amount, 'f', 2)
                                    : QLocale().toCurrencyString(amount, currencySymbol);
}

void MiscTool::printMsg(const QString &className, const QString &method, const QString &message)
{
    qInfo().noquote().nospace() << '[' << className << "]->(" << method << "):" << message;
}
