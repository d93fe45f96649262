// The device file of a real drive: whether this program may use it now, said so that the reader can
// do something about it. Any thread; what may take long says so.
#pragma once

#include "Result.h"

#include <stop_token>

class DeviceFile
{
public:
    explicit DeviceFile(QString path)
        : m_path(std::move(path))
    {
    }

    [[nodiscard]] const QString &path() const { return m_path; }

    [[nodiscard]] bool exists() const;

    // Fails for a drive that is gone, that may not be used, and that another program holds. Asks
    // the system for the exclusive use of the drive and lets go of it again.
    [[nodiscard]] Result<> checkUsable() const;

    // Asks the drive for its tray and the medium in it, which may take a moment; never one that
    // burns. SpinningUp, too, while the drive is at work by itself.
    enum class Tray { Unknown, Open, Empty, SpinningUp, Closed };
    [[nodiscard]] Tray tray() const;

    // Lets the medium out without asking what it is. False where the drive refuses.
    [[nodiscard]] bool eject() const;

    // Waits for a medium that is being spun up, but not for ever. Fails when stopped, too.
    [[nodiscard]] Result<> waitUntilReady(const std::stop_token &stop) const;

private:
    [[nodiscard]] Failure noPermission() const;

    QString m_path;
};
