#include "TestDrive.h"

#include <QDir>
#include <QFile>

QString TestDrive::makeSource(const QString &name, qint64 size) const
{
    QByteArray content(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        content[i] = static_cast<char>(1 + i % 251); // a prime, so that no two blocks are alike
    return storeSource(name, content);
}

QString TestDrive::storeSource(const QString &name, const QByteArray &content) const
{
    QString path = sourcePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    return path;
}

QString TestDrive::sourcePath(const QString &name) const
{
    return m_folder.filePath(QStringLiteral("source/") + name);
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
