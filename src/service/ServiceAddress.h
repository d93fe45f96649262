// Where the service lives: the configuration, and the addresses built from it. Any thread.
#pragma once

#include <QString>
#include <QUrl>
#include <QVariantMap>

// The files that configure the application. A key counts in the first of them that has it: the one
// named on the command line, the user's and the system's "maplorn-disc/Config.plist", the built-in
// one, and last the values of the service that the application runs itself.
namespace ServiceConfig {

// Both are set before anything reads the configuration; an empty path is no file.
void setFile(const QString &path);
void setOwnService(const QString &path);

// Whether a file, other than that of the own service, tells where the service is.
[[nodiscard]] bool namesHost();

}

namespace MiscTool {

// The dictionary of all configuration files, read afresh at each call.
[[nodiscard]] QVariantMap getConfigDict();
// One text of it; null where no file has the key.
[[nodiscard]] QString getConfigText(const QString &key);

// Each is null where neither the preferences, which come first, nor the configuration have it.
[[nodiscard]] QString getProtocol();
[[nodiscard]] QString getHost();
[[nodiscard]] QString getPort();
[[nodiscard]] QString getContext();
[[nodiscard]] QString getServicePassword();
[[nodiscard]] QString getAppURL();

// <Protocol>://<Host>:<Port>[/<Context>]; a missing value adds nothing.
[[nodiscard]] QString serverURL();
// <serverURL>[/<name>]?servicePassword=<password as it stands>
[[nodiscard]] QString serviceURL(const QString &serviceName);

[[nodiscard]] QUrl insertURL(const QString &serviceName);
[[nodiscard]] QUrl updateURL(const QString &serviceName);
[[nodiscard]] QUrl deleteURL(const QString &serviceName);
[[nodiscard]] QUrl selectURL(const QString &serviceName);
[[nodiscard]] QUrl getCountURL(const QString &serviceName);

// Whether the text is exactly "true".
[[nodiscard]] bool toBOOL(const QString &text);

// The base and the component with one "/" between; the base alone where the component is empty.
[[nodiscard]] QString appendPathComponent(const QString &base, const QString &component);

}
