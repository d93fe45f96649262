// What the machine tells of itself, and the program's log. Any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

class QImage;

namespace MiscTool {

// The first address of this host; "" without one.
[[nodiscard]] QString getIP();

// Bytes of the file system that holds "/", all and free.
[[nodiscard]] qint64 getDiskTotalSize();
[[nodiscard]] qint64 getDiskAvailableSize();

// A text that stands for the file or folder in a later run: path, device and inode. Null for what
// is not there.
[[nodiscard]] QByteArray bookmarkForURL(const QUrl &url);
// Where it is now, also when it was renamed in its folder; empty where it cannot be found.
[[nodiscard]] QUrl urlForBookmark(const QByteArray &bookmark);

// Writes the picture in the format of the path's extension, whole or not at all; false on failure.
[[nodiscard]] bool saveImage(const QString &path, const QImage &image);
// Whether the extension, in any case, is "jpg", "jpeg" or "png".
[[nodiscard]] bool isImage(const QString &path);

// The text and the time of now behind it: year, then month to second with two digits each.
[[nodiscard]] QString getIdentifier(const QString &text);

// The amount as the locale writes money, with that symbol in place of the locale's.
[[nodiscard]] QString getFormattedAmount(double amount, const QString &currencySymbol);

// One line in the log: "[class]->(method):message".
void printMsg(const QString &className, const QString &method, const QString &message);

}
