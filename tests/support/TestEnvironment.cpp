#include "TestEnvironment.h"

#include <QByteArray>
#include <QDir>

TestEnvironment::TestEnvironment()
{
    if (!m_home.isValid())
        qFatal("no temporary folder: %s", qPrintable(m_home.errorString()));
    const auto point = [this](const char *variable, const char *folder) {
        const QString path = m_home.filePath(QString::fromLatin1(folder));
        QDir().mkpath(path);
        qputenv(variable, path.toLocal8Bit());
    };
    point("HOME", ".");
    point("XDG_CONFIG_HOME", "config");
    point("XDG_DATA_HOME", "data");
    point("XDG_CACHE_HOME", "cache");
    point("XDG_RUNTIME_DIR", "run");
    QFile::setPermissions(m_home.filePath(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "UTC"); // no hour comes twice
    qunsetenv("LANGUAGE");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    qunsetenv("QT_STYLE_OVERRIDE");
    if (qgetenv("MAPLORN_TEST_PLATFORM").isEmpty())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else
        qputenv("QT_QPA_PLATFORM", qgetenv("MAPLORN_TEST_PLATFORM"));
}
