#include "IncomingFile.h"

#include "ServiceAddress.h"

#include <QRandomGenerator>

#include <cstdio>
#include <unistd.h>

IncomingFile::IncomingFile(const QString &folder, const QString &name)
    : m_path(MiscTool::appendPathComponent(folder, name))
    , m_file(MiscTool::appendPathComponent(
          folder, QStringLiteral(".incoming-%1")
                      .arg(QRandomGenerator::system()->generate64(), 16, 16, QChar(u'0'))))
{
    m_isOpen = m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
}

IncomingFile::~IncomingFile()
{
    if (m_isOpen)
        m_file.remove();
}

bool IncomingFile::takePlace()
{
    if (!m_file.flush() || ::fsync(m_file.handle()) != 0
        || std::rename(QFile::encodeName(m_file.fileName()).constData(),
                       QFile::encodeName(m_path).constData())
               != 0)
        return false;
    m_isOpen = false;
    return true;
}
