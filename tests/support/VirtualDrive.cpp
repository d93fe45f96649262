#include "VirtualDrive.h"

VirtualDrive::VirtualDrive()
{
    auto recorder = VirtualRecorder::create(m_folder.filePath(QStringLiteral("virtual")));
    if (!recorder)
        qFatal("%s", qPrintable(recorder.error()));
    m_recorder = recorder.value();
    m_watch = std::make_unique<VirtualRecorderWatch>(m_service, m_recorder);
}

QString VirtualDrive::mediumFile(const QString &name) const
{
    return m_recorder->mediumFolder() + QLatin1Char('/') + name;
}

void VirtualDrive::insert(const QString &type, qint64 capacity)
{
    if (const auto inserted = m_recorder->insertBlankMedium(type); !inserted)
        qFatal("%s", qPrintable(inserted.error()));
    if (capacity == 0)
        return;
    VirtualMedium medium = VirtualMedium::load(m_recorder->mediumFolder()).value();
    medium.capacity = capacity;
    if (const auto stored = medium.store(m_recorder->mediumFolder()); !stored)
        qFatal("%s", qPrintable(stored.error()));
}
