// A file that takes its place when it is whole, and else leaves nothing. (QSaveFile makes a longer
// name of the file's, and so cannot write one of 255 bytes.) Any thread, one at a time.
#pragma once

#include <QFile>

class IncomingFile
{
public:
    // In a folder that is there.
    IncomingFile(const QString &folder, const QString &name);
    ~IncomingFile();
    IncomingFile(const IncomingFile &) = delete;
    IncomingFile &operator=(const IncomingFile &) = delete;

    // Open for writing, unless it cannot be.
    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] QFile &file() { return m_file; }

    // On the disk and in the place of an older one; false leaves that as it was.
    [[nodiscard]] bool takePlace();

private:
    QString m_path;
    QFile m_file;
    bool m_isOpen = false;
};
