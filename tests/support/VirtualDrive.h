// A recording service with a virtual recorder in a temporary folder, as every test of a page
// needs them. Main thread.
#pragma once

#include "RecordingService.h"
#include "VirtualRecorder.h"
#include "VirtualRecorderWatch.h"

#include <QTemporaryDir>

class VirtualDrive
{
public:
    VirtualDrive();

    [[nodiscard]] VirtualRecorder &recorder() { return *m_recorder; }
    [[nodiscard]] DRDevice device() const { return DRDevice(m_recorder); }
    [[nodiscard]] RecordingService &service() { return m_service; }

    // A program that has this as its XDG_DATA_HOME has the same recorder.
    [[nodiscard]] QString dataHome() const { return m_folder.path(); }

    // Path of a file of the medium in the recorder; and the names of all of them.
    [[nodiscard]] QString mediumFile(const QString &name) const;
    [[nodiscard]] QStringList mediumFiles() const;

    // Whether a medium can be erased, by what people call it.
    [[nodiscard]] static bool isRewritable(const MediaType &medium);

    // Puts in a blank medium of that type that holds that many blocks (0: the real number).
    void insert(const QString &type, qint64 capacity = 0);

    // Gives the medium in the recorder another capacity, in blocks.
    void setCapacity(qint64 capacity);

    // A file to burn, of that many bytes, none of them zero, in a folder kept for such. The result
    // is its path.
    QString makeSource(const QString &name, qint64 size) const;
    QString storeSource(const QString &name, const QByteArray &content) const; // one that is given
    [[nodiscard]] QString sourcePath(const QString &name) const;

    // Drops the recorder, as when its cable is pulled; and plugs it in again.
    void detach() { m_service.detach(m_recorder); }
    void attach() { m_service.attach(m_recorder); }

private:
    QTemporaryDir m_folder;
    RecordingService m_service;
    std::shared_ptr<VirtualRecorder> m_recorder;
    std::unique_ptr<VirtualRecorderWatch> m_watch;
};

// The whole content of a file; empty where it cannot be read.
[[nodiscard]] QByteArray fileContent(const QString &path);
