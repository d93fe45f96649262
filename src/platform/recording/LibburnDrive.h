// A real drive that libburn holds, and holds other programs off, as long as this lives. The thread
// that serves libburn.
#pragma once

#include "DeviceFile.h"
#include "LibburnMessages.h"

#include <QList>

#include <functional>
#include <memory>

namespace burn {
struct burn_drive;
struct burn_drive_info;
}

class LibburnDrive
{
public:
    // Takes hold of the drive, which libburn waits for until it is ready. The failure says what can
    // be done.
    [[nodiscard]] static Result<std::shared_ptr<LibburnDrive>> open(const DeviceFile &file);
    ~LibburnDrive();
    LibburnDrive(const LibburnDrive &) = delete;
    LibburnDrive &operator=(const LibburnDrive &) = delete;

    [[nodiscard]] burn::burn_drive *handle() const;
    [[nodiscard]] const burn::burn_drive_info &info() const { return *m_infos; }

    [[nodiscard]] const DeviceFile &file() const { return m_file; }

    [[nodiscard]] LibburnMessages &messages() { return m_messages; }

    // Why the last operation failed: libburn's message, unless more is known.
    [[nodiscard]] Failure failure(const QString &what) const;

    // Current profile of MMC; 0 without a medium.
    [[nodiscard]] int profile() const;

    // Learns afresh what is on the medium.
    [[nodiscard]] bool assessAgain();

    // Whole blocks of 2,048 bytes from an address. Fails naming it.
    [[nodiscard]] Result<> readBlocks(qint64 first, qint64 count, char *to);

    // Whether the last read failed because there is nothing to be read.
    [[nodiscard]] bool foundNothingWritten() const;

    void ejectOnRelease() { m_eject = true; }

    // Leaves a drive that does not answer any more to libburn, whose thread may wait for it without
    // end. Where that has ended, or does so within seconds, recover() takes the drive back.
    void abandon() { m_abandoned = true; }
    [[nodiscard]] bool isAbandoned() const { return m_abandoned; }
    [[nodiscard]] bool recover();

private:
    explicit LibburnDrive(DeviceFile file)
        : m_file(std::move(file))
    {
    }

    DeviceFile m_file;
    LibburnMessages m_messages;
    burn::burn_drive_info *m_infos = nullptr;
    bool m_eject = false;
    bool m_abandoned = false;
};
