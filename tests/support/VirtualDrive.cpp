#include "VirtualDrive.h"

#include "MediaTypes.h"

#include <QDir>

VirtualDrive::VirtualDrive()
{
    auto recorder =
        VirtualRecorder::create(folder() + QStringLiteral("/maplorn-disc/recorders/virtual"));
    if (!recorder)
        qFatal("%s", qPrintable(recorder.error()));
    m_recorder = recorder.value();
    m_watch = std::make_unique<VirtualRecorderWatch>(service(), m_recorder);
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

QByteArray VirtualDrive::burnedData(qint64 bytes) const
{
    return fileContent(mediumFile(QStringLiteral("disc.iso"))).first(bytes);
}

QByteArray VirtualDrive::burnedAudio() const
{
    return fileContent(mediumFile(QStringLiteral("disc.bin")));
}

QByteArray VirtualDrive::burnedPacks() const
{
    return fileContent(mediumFile(QStringLiteral("disc.cdt"))).chopped(1);
}

void VirtualDrive::holdElsewhere(bool held)
{
    m_otherProgram.reset();
    if (!held)
        return;
    m_otherProgram = std::make_unique<RecorderLock>(m_recorder->folder() + QStringLiteral("/lock"));
    if (!m_otherProgram->acquire())
        qFatal("the recorder is in use already");
}

bool VirtualDrive::isHeld() const
{
    return RecorderLock::isHeldElsewhere(m_recorder->folder() + QStringLiteral("/lock"));
}
