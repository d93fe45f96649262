#include "VirtualDrive.h"

#include "MediaTypes.h"

#include <QDir>
#include <QFile>

VirtualDrive::VirtualDrive()
{
    auto recorder = VirtualRecorder::create(
        m_folder.filePath(QStringLiteral("maplorn-disc/recorders/virtual")));
    if (!recorder)
        qFatal("%s", qPrintable(recorder.error()));
    m_recorder = recorder.value();
    m_watch = std::make_unique<VirtualRecorderWatch>(m_service, m_recorder);
}

QString VirtualDrive::mediumFile(const QString &name) const
{
    return m_recorder->mediumFolder() + QLatin1Char('/') + name;
}

QStringList VirtualDrive::mediumFiles() const
{
    return QDir(m_recorder->mediumFolder()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

bool VirtualDrive::isRewritable(const MediaType &medium)
{
    const QString name = medium.name;
    return name.contains(u"RW") || name.contains(u"RE") || name.contains(u"RAM");
}

void VirtualDrive::insert(const QString &type, qint64 capacity)
{
    if (const auto inserted = m_recorder->insertBlankMedium(type); !inserted)
        qFatal("%s", qPrintable(inserted.error()));
    if (capacity > 0)
        setCapacity(capacity);
}

void VirtualDrive::setCapacity(qint64 capacity)
{
    VirtualMedium medium = m_recorder->medium().value();
    medium.capacity = capacity;
    if (const auto stored = medium.store(m_recorder->mediumFolder()); !stored)
        qFatal("%s", qPrintable(stored.error()));
}

QString VirtualDrive::makeSource(const QString &name, qint64 size) const
{
    QByteArray content(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        content[i] = static_cast<char>(1 + i % 251); // a prime, so that no two blocks are alike
    return storeSource(name, content);
}

QString VirtualDrive::storeSource(const QString &name, const QByteArray &content) const
{
    QString path = sourcePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    return path;
}

QString VirtualDrive::sourcePath(const QString &name) const
{
    return m_folder.filePath(QStringLiteral("source/") + name);
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
