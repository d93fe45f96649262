// A real drive that libburn holds, and holds other programs off, as long as this lives. The thread
// that serves libburn.
#pragma once

#include "DeviceFile.h"
#include "LibburnMessages.h"

#include <chrono>
#include <memory>

namespace burn {
struct burn_drive;
struct burn_drive_info;
}

class LibburnDrive : public std::enable_shared_from_this<LibburnDrive>
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

    // Whether libburn has found it gone.
    [[nodiscard]] bool isDisconnected() const;

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
    // end, and says endCode at its end where that is not 0. It can be used again afterwards.
    void abandon(int endCode = 0);
    [[nodiscard]] bool isAbandoned() const { return m_abandoned; }

    // Fails, saying why, for a drive that cannot be used now. Waits at most that long for libburn
    // to be done with one that was abandoned.
    [[nodiscard]] static Result<> checkUsable(const DeviceFile &file,
                                              std::chrono::milliseconds patience = {});

    // Of libburn's list of codes: its thread that writes has ended; it asks a drive, each second,
    // that will not go on.
    static constexpr int writeThreadEnded = 0x20178;
    static constexpr int askedInVain = 0x201a5;

private:
    [[nodiscard]] bool recover(std::chrono::milliseconds patience);

    explicit LibburnDrive(DeviceFile file)
        : m_file(std::move(file))
    {
    }

    DeviceFile m_file;
    LibburnMessages m_messages;
    burn::burn_drive_info *m_infos = nullptr;
    bool m_eject = false;
    bool m_abandoned = false;
    int m_endCode = 0;
};
