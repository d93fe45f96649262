// A recording service with one recorder, whose medium a test changes as a hand would, and a folder
// for what is to be burned. VirtualDrive and RealDrive are the two kinds. Main thread.
#pragma once

#include "RecordingService.h"

#include <QTemporaryDir>

class TestDrive
{
public:
    TestDrive() = default;
    virtual ~TestDrive() = default;
    TestDrive(const TestDrive &) = delete;
    TestDrive &operator=(const TestDrive &) = delete;

    [[nodiscard]] virtual DRDevice device() const = 0;
    [[nodiscard]] RecordingService &service() { return m_service; }

    // Puts in a blank medium of that type that holds that many blocks (0: the real number).
    virtual void insert(const QString &type, qint64 capacity = 0) = 0;

    // Takes the recorder away, as when its cable is pulled; and plugs it in again.
    virtual void detach() = 0;
    virtual void attach() = 0;

    // Whether such media can be put in.
    [[nodiscard]] virtual bool takes(const QString &type) const = 0;

    // Writes no faster than asked for: a burn that is to be stepped into.
    virtual void keepToSpeed() {}

    // Another program takes the recorder, or gives it back.
    virtual void holdElsewhere(bool held) = 0;
    [[nodiscard]] virtual bool isHeld() const = 0; // by this program or another

    // What was burned, from block 0: that many bytes of data, or of sectors of an audio disc.
    [[nodiscard]] virtual QByteArray burnedData(qint64 bytes) const = 0;
    [[nodiscard]] virtual QByteArray burnedAudio() const = 0;
    [[nodiscard]] virtual QByteArray burnedPacks() const = 0; // of CD-Text, 18 bytes each

    // A file to burn, of that many bytes, none of them zero, in a folder kept for such. The result
    // is its path.
    QString makeSource(const QString &name, qint64 size) const;
    QString storeSource(const QString &name, const QByteArray &content) const; // one that is given
    [[nodiscard]] QString sourcePath(const QString &name) const;

protected:
    [[nodiscard]] QString folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    RecordingService m_service;
};

// The whole content of a file; empty where it cannot be read.
[[nodiscard]] QByteArray fileContent(const QString &path);
