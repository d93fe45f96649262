#include "DeviceFile.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/cdrom.h>
#include <scsi/sg.h>
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

// The kernel takes a drive that still erases or formats by itself for ready. TEST UNIT READY of
// SPC-3 says "not ready" (2), "logical unit not ready" (04h) with all that it waits for; 02h and
// 03h wait for a command and for a person, and would do so without end.
bool isBecomingReady(int descriptor)
{
    std::array<unsigned char, 6> command{};
    std::array<unsigned char, 18> sense{};
    sg_io_hdr_t request = {};
    request.interface_id = 'S';
    request.dxfer_direction = SG_DXFER_NONE;
    request.cmdp = command.data();
    request.cmd_len = command.size();
    request.sbp = sense.data();
    request.mx_sb_len = sense.size();
    request.timeout = 5000; // ms
    constexpr int key = 2;
    constexpr int code = 12;
    constexpr int qualifier = 13;
    return ::ioctl(descriptor, SG_IO, &request) == 0 && request.sb_len_wr > qualifier
           && (sense.at(key) & 0xf) == 2 && sense.at(code) == 4 && sense.at(qualifier) != 2
           && sense.at(qualifier) != 3;
}

}

bool DeviceFile::exists() const
{
    struct stat status = {};
    return ::stat(QFile::encodeName(m_path).constData(), &status) == 0;
}

Failure DeviceFile::noPermission() const
{
    const QString owner = QFileInfo(m_path).group();
    const bool isAdvisable = !owner.isEmpty() && owner != QLatin1String("root");
    const QString group = isAdvisable ? owner : QStringLiteral("cdrom");
    return Failure{
        QStringLiteral("You may not use %1. Its users are in the group %2: have yourself "
                       "added to it (sudo usermod -aG %2 $USER) and sign in again.")
            .arg(m_path, group)};
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
        return isBecomingReady(file.descriptor()) ? Tray::SpinningUp : Tray::Closed;
    default:
        return Tray::Unknown;
    }
}

bool DeviceFile::eject() const
{
    const OpenFile file(m_path, O_RDONLY);
    return file.isOpen() && ::ioctl(file.descriptor(), CDROM_LOCKDOOR, 0) == 0
           && ::ioctl(file.descriptor(), CDROMEJECT) == 0;
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
