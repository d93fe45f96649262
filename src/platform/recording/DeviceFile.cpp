#include "DeviceFile.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

// O_NONBLOCK: the drive is not made to load or to look at its medium.
class OpenFile
{
public:
    OpenFile(const QString &path, int flags)
        : m_file(::open(QFile::encodeName(path).constData(), flags | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~OpenFile()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    [[nodiscard]] bool isOpen() const { return m_file >= 0; }
    [[nodiscard]] int descriptor() const { return m_file; }

private:
    const int m_file;
};

}

bool DeviceFile::exists() const
{
    struct stat status = {};
    return ::stat(QFile::encodeName(m_path).constData(), &status) == 0;
}

Failure DeviceFile::noPermission() const
{
    const QString group = QFileInfo(m_path).group();
    return Failure{
        QStringLiteral("You may not use %1. Its users are in the group %2: have yourself "
                       "added to it (sudo usermod -aG %2 $USER) and sign in again.")
            .arg(m_path, group.isEmpty() ? QStringLiteral("cdrom") : group)};
}

Result<> DeviceFile::checkUsable() const
{
    const OpenFile file(m_path, O_RDWR | O_EXCL);
    if (file.isOpen())
        return Done{};
    switch (errno) {
    case EACCES:
    case EPERM:
        return noPermission();
    case EBUSY:
        return Failure{QStringLiteral("Another program uses %1, or its disc is mounted. End that "
                                      "program, or unmount the disc, and try again.")
                           .arg(m_path)};
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return Failure{QStringLiteral("The recorder is not attached any more.")};
    default:
        return Failure{QStringLiteral("%1: %2").arg(m_path, qt_error_string(errno))};
    }
}

DeviceFile::Tray DeviceFile::tray() const
{
    const OpenFile file(m_path, O_RDONLY);
    switch (file.isOpen() ? ::ioctl(file.descriptor(), CDROM_DRIVE_STATUS, CDSL_CURRENT) : -1) {
    case CDS_TRAY_OPEN:
        return Tray::Open;
    case CDS_NO_DISC:
        return Tray::Empty;
    case CDS_DRIVE_NOT_READY:
        return Tray::SpinningUp;
    case CDS_DISC_OK:
        return Tray::Closed;
    default:
        return Tray::Unknown;
    }
}

// libburn repeats each command for minutes while the drive is not ready.
Result<> DeviceFile::waitUntilReady(const std::stop_token &stop) const
{
    constexpr qint64 patience = 30000; // ms; twice what a slow drive takes
    constexpr std::chrono::milliseconds lookEvery(250);
    QElapsedTimer waited;
    waited.start();
    while (tray() == Tray::SpinningUp) {
        if (stop.stop_requested())
            return Failure{QStringLiteral("The job was cancelled.")};
        if (waited.hasExpired(patience))
            return Failure{QStringLiteral("The recorder does not get its medium ready. Take the "
                                          "medium out, clean it, and try again.")};
        std::this_thread::sleep_for(lookEvery);
    }
    return Done{};
}
