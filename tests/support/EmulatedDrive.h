// A folder with an emulated drive, /dev/sr0 of this process and of the programs it starts, as long
// as this lives. tests/mmc-drive/README.md tells what can be asked of it. Main thread.
#pragma once

#include <QStringList>
#include <QTemporaryDir>

class EmulatedDrive
{
public:
    EmulatedDrive();
    ~EmulatedDrive();
    EmulatedDrive(const EmulatedDrive &) = delete;
    EmulatedDrive &operator=(const EmulatedDrive &) = delete;

    // Puts in a medium: "cd-rw", "bd-re 20000 unformatted", "none".
    void insert(const QString &medium) const { store(QStringLiteral("insert"), medium); }
    [[nodiscard]] bool isInserting() const; // not yet taken by the drive
    void setFaults(const QString &faults) const { store(QStringLiteral("faults"), faults); }

    // Has commands noted from now on; those noted since, each as hexadecimal bytes.
    void noteCommands() const { store(QStringLiteral("commands"), {}); }
    [[nodiscard]] QStringList commands() const;

    // What lies on the medium: blocks of a CD's data track or of a DVD, sectors of an audio CD, the
    // packs of its CD-Text.
    [[nodiscard]] QByteArray data(qint64 first, qint64 count, bool cd = true) const;
    [[nodiscard]] QByteArray sectors(qint64 first, qint64 count) const;
    [[nodiscard]] QByteArray packs() const;

    struct Run
    {
        int exitStatus;
        QString output; // of both streams
    };
    [[nodiscard]] Run run(const QString &program, const QStringList &arguments,
                          const QString &folder = {}) const;

private:
    void store(const QString &name, const QString &text) const;
    [[nodiscard]] QByteArray read(const QString &name, qint64 offset = 0, qint64 size = -1) const;

    QTemporaryDir m_folder;
};
