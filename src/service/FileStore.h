// The files that the service keeps in a tree: upload, list, size, delete, download, and pictures
// through a cache in the user's Documents. A file is addressed by four keys, each of which may be
// missing (a null text), and its name. Main thread; every call waits for the service.
#pragma once

#include "ServiceCall.h"

#include <QImage>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace MiscTool {

// The addresses. Each value is percent-encoded; a missing key or file adds nothing, so that an
// address may end in "&".
[[nodiscard]] QUrl getUploadServiceURL(const QString &groupID, const QString &companyID,
                                       const QString &module, const QString &moduleID,
                                       const QString &file);
[[nodiscard]] QUrl getFilesServiceURL(const QString &groupID, const QString &companyID,
                                      const QString &module, const QString &moduleID);
[[nodiscard]] QUrl getFileSizeServiceURL(const QString &groupID, const QString &companyID,
                                         const QString &module, const QString &moduleID,
                                         const QString &file);
[[nodiscard]] QUrl deleteFileServiceURL(const QString &groupID, const QString &companyID,
                                        const QString &module, const QString &moduleID,
                                        const QString &file);
[[nodiscard]] QString getResourceURL(const QString &groupID, const QString &companyID,
                                     const QString &module, const QString &moduleID,
                                     const QString &file);

// A POST of bytes.
[[nodiscard]] ServiceRequest getUploadRequest(const QUrl &url, const QByteArray &data);

// Stores the file under the last component of its path, over one that is there. A key of two
// characters of which the first is a dot is refused, since nothing could be downloaded from there.
bool uploadFile(const QString &groupID, const QString &companyID, const QString &module,
                const QString &moduleID, const QString &filePath);

// The names of the files there, at least one; null where there are none or the call failed.
[[nodiscard]] std::optional<QStringList> getFiles(const QString &groupID, const QString &companyID,
                                                  const QString &module, const QString &moduleID);

// Bytes; 0 also for what is missing or where the call failed.
[[nodiscard]] qint64 getFileSize(const QString &groupID, const QString &companyID,
                                 const QString &module, const QString &moduleID,
                                 const QString &file);

bool deleteFile(const QString &groupID, const QString &companyID, const QString &module,
                const QString &moduleID, const QString &file);

// Puts the file into the local folder, whole or not at all. An empty file cannot be told from a
// missing one and is not written.
bool downloadFile(const QString &groupID, const QString &companyID, const QString &module,
                  const QString &moduleID, const QString &srcFile, const QString &destPath);

// Those of getFiles that are pictures by their names; null where getFiles is.
[[nodiscard]] std::optional<QStringList> getImageFiles(const QString &groupID,
                                                       const QString &companyID,
                                                       const QString &module,
                                                       const QString &moduleID);

// The picture, from the cache where it is there; null where there is none. With realCheck the
// cached one counts only while its size is the service's. The cache holds the picture as saveImage
// writes it, and that may always be another size.
[[nodiscard]] QImage getImage(const QString &groupID, const QString &companyID,
                              const QString &module, const QString &moduleID,
                              const QString &imageFile, bool realCheck);
// The same for an element of getImageFiles.
[[nodiscard]] QImage getImage(const QString &groupID, const QString &companyID,
                              const QString &module, const QString &moduleID, int index,
                              bool realCheck);

}
