#include "FileStore.h"

#include "FileTools.h"
#include "IncomingFile.h"
#include "Machine.h"
#include "Replies.h"
#include "ServiceAddress.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

// More than any folder has. A parsed name takes many times the bytes of its text.
constexpr qsizetype mostNames = 1'000'000;

QString encoded(const QString &value)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(value));
}

QString part(const char *name, const QString &value)
{
    return value.isNull() ? QString() : QLatin1StringView(name) + u'=' + encoded(value);
}

QString keyPart(const char *name, const QString &value)
{
    return value.isNull() ? QString() : part(name, value) + u'&';
}

QString folderAddress(const char *service, const QString &groupID, const QString &companyID,
                      const QString &module)
{
    return MiscTool::serviceURL(QLatin1StringView(service)) + u'&' + keyPart("groupID", groupID)
           + keyPart("companyID", companyID) + keyPart("module", module);
}

QUrl fileAddress(const char *service, const QString &groupID, const QString &companyID,
                 const QString &module, const QString &moduleID, const QString &file)
{
    return QUrl(folderAddress(service, groupID, companyID, module) + keyPart("moduleID", moduleID)
                + part("file", file));
}

// Whether the text names something in a folder, and nothing outside of it: keys and names become
// local paths, and names come from the service.
bool isName(const QString &text)
{
    return !text.isEmpty() && text != QLatin1StringView(".") && text != QLatin1StringView("..")
           && !text.contains(u'/') && !text.contains(QChar::Null);
}

// Whether these are keys that a path may hold: "..", say, would make another address of a download
// address, and another folder of the cache's.
bool areKeys(const QStringList &keys)
{
    return std::ranges::all_of(keys,
                               [](const QString &key) { return key.isNull() || isName(key); });
}

// Qt 6.4 takes such a component out of the path when it sends a request.
bool isLostOnTheWay(const QString &key)
{
    return key.size() == 2 && key.startsWith(u'.');
}

// Where pictures of these keys are cached; null where there can be no such folder.
QString cacheFolder(const QStringList &keys)
{
    if (!areKeys(keys))
        return {};
    QString folder = MiscTool::getCachedPath();
    for (const QString &key : keys)
        folder = MiscTool::appendPathComponent(folder, key);
    return QDir().mkpath(folder) ? folder : QString();
}

QImage downloadImage(const QUrl &url, const QString &path)
{
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    if (!ServiceCall::fetch(url, bytes, ServiceCall::limits().replySize))
        return {};
    QImage image = QImage::fromData(bytes.data());
    if (!image.isNull() && !MiscTool::saveImage(path, image))
        qWarning().noquote() << "a picture is not cached:" << path;
    return image;
}

}

QUrl MiscTool::getUploadServiceURL(const QString &groupID, const QString &companyID,
                                   const QString &module, const QString &moduleID,
                                   const QString &file)
{
    return fileAddress("UploadService", groupID, companyID, module, moduleID, file);
}

QUrl MiscTool::getFilesServiceURL(const QString &groupID, const QString &companyID,
                                  const QString &module, const QString &moduleID)
{
    return QUrl(folderAddress("GetFilesService", groupID, companyID, module)
                + part("moduleID", moduleID));
}

QUrl MiscTool::getFileSizeServiceURL(const QString &groupID, const QString &companyID,
                                     const QString &module, const QString &moduleID,
                                     const QString &file)
{
    return fileAddress("GetFileSizeService", groupID, companyID, module, moduleID, file);
}

QUrl MiscTool::deleteFileServiceURL(const QString &groupID, const QString &companyID,
                                    const QString &module, const QString &moduleID,
                                    const QString &file)
{
    return fileAddress("DeleteFileService", groupID, companyID, module, moduleID, file);
}

QString MiscTool::getResourceURL(const QString &groupID, const QString &companyID,
                                 const QString &module, const QString &moduleID,
                                 const QString &file)
{
    QString address = appendPathComponent(serverURL(), QStringLiteral("Resource"));
    for (const QString &component : {groupID, companyID, module, moduleID, file})
        if (!component.isNull())
            address += u'/' + encoded(component);
    return address;
}

ServiceRequest MiscTool::getUploadRequest(const QUrl &url, const QByteArray &data)
{
    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/octet-stream");
    return {request, data};
}

bool MiscTool::uploadFile(const QString &groupID, const QString &companyID, const QString &module,
                          const QString &moduleID, const QString &filePath)
{
    // Opening a pipe would wait for its other end.
    const QFileInfo info(filePath);
    QFile file(filePath);
    if (std::ranges::any_of(QStringList{groupID, companyID, module, moduleID}, &isLostOnTheWay)
        || !info.isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QUrl url = getUploadServiceURL(groupID, companyID, module, moduleID, info.fileName());
    return toBOOL(replyText(ServiceCall::send(getUploadRequest(url, {}).request, file)));
}

std::optional<QStringList> MiscTool::getFiles(const QString &groupID, const QString &companyID,
                                              const QString &module, const QString &moduleID)
{
    const QByteArray reply =
        replyText(ServiceCall::get(getFilesServiceURL(groupID, companyID, module, moduleID)))
            .toLatin1();
    if (reply == "false" || reply.count(',') > mostNames)
        return std::nullopt;
    const QJsonArray result =
        QJsonDocument::fromJson(reply).object().value(QLatin1StringView("Result")).toArray();
    QStringList names;
    for (const QJsonValue &name : result) {
        if (!name.isString())
            return std::nullopt;
        names.append(name.toString());
    }
    if (names.isEmpty())
        return std::nullopt;
    return names;
}

qint64 MiscTool::getFileSize(const QString &groupID, const QString &companyID,
                             const QString &module, const QString &moduleID, const QString &file)
{
    return leadingNumber(replyText(
        ServiceCall::get(getFileSizeServiceURL(groupID, companyID, module, moduleID, file))));
}

bool MiscTool::deleteFile(const QString &groupID, const QString &companyID, const QString &module,
                          const QString &moduleID, const QString &file)
{
    return toBOOL(replyText(
        ServiceCall::get(deleteFileServiceURL(groupID, companyID, module, moduleID, file))));
}

bool MiscTool::downloadFile(const QString &groupID, const QString &companyID, const QString &module,
                            const QString &moduleID, const QString &srcFile,
                            const QString &destPath)
{
    if (!areKeys({groupID, companyID, module, moduleID}) || !isName(srcFile))
        return false;
    IncomingFile incoming(destPath, srcFile);
    if (!incoming.isOpen())
        return false;
    const QUrl url(getResourceURL(groupID, companyID, module, moduleID, srcFile));
    return ServiceCall::fetch(url, incoming.file()).value_or(0) > 0 && incoming.takePlace();
}

std::optional<QStringList> MiscTool::getImageFiles(const QString &groupID, const QString &companyID,
                                                   const QString &module, const QString &moduleID)
{
    std::optional<QStringList> names = getFiles(groupID, companyID, module, moduleID);
    if (names)
        names->removeIf([](const QString &name) { return !isImage(name); });
    return names;
}

QImage MiscTool::getImage(const QString &groupID, const QString &companyID, const QString &module,
                          const QString &moduleID, const QString &imageFile, bool realCheck)
{
    const QString folder = cacheFolder({groupID, companyID, module, moduleID});
    if (folder.isNull() || !isName(imageFile))
        return {};
    const QString path = appendPathComponent(folder, imageFile);
    const bool isCached =
        QFileInfo::exists(path)
        && (!realCheck
            || getFileSize(groupID, companyID, module, moduleID, imageFile) == getFileSize(path));
    if (isCached)
        return QImage(path);
    return downloadImage(QUrl(getResourceURL(groupID, companyID, module, moduleID, imageFile)),
                         path);
}

QImage MiscTool::getImage(const QString &groupID, const QString &companyID, const QString &module,
                          const QString &moduleID, int index, bool realCheck)
{
    const std::optional<QStringList> names = getImageFiles(groupID, companyID, module, moduleID);
    if (!names || index < 0 || index >= names->size())
        return {};
    return getImage(groupID, companyID, module, moduleID, names->at(index), realCheck);
}
