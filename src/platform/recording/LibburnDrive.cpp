#include "LibburnDrive.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <thread>

#include <libburn/libburn.h>

namespace {

constexpr qint64 blockSize = 2048;

// Of libburn's list of codes.
constexpr int transferFailed = 0x2010c;
constexpr int connectionLost = 0x201a6;

// libburn lets child processes inherit its open drives. A disc-image job that is started during a
// burn would hold the drive until it ends.
void keepFromChildren(const DeviceFile &file)
{
    struct stat device = {};
    if (::stat(QFile::encodeName(file.path()).constData(), &device) != 0)
        return;
    const QStringList open =
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System);
    for (const QString &name : open) {
        struct stat status = {};
        const int descriptor = name.toInt();
        if (::fstat(descriptor, &status) == 0 && S_ISBLK(status.st_mode)
            && status.st_rdev == device.st_rdev)
            ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
}

}

Result<std::shared_ptr<LibburnDrive>> LibburnDrive::open(const DeviceFile &file)
{
    if (!LibburnMessages::isReady())
        return Failure{QStringLiteral("libburn cannot be used.")};
    // libburn waits six seconds for a drive that is in use; the system knows at once.
    if (const Result<> usable = file.checkUsable(); !usable)
        return usable.failure();
    std::shared_ptr<LibburnDrive> drive(new LibburnDrive(file));
    QByteArray path = QFile::encodeName(file.path());
    std::array<char, BURN_DRIVE_ADR_LEN> address{};
    if (burn::burn_drive_convert_fs_adr(path.data(), address.data()) <= 0
        || burn::burn_drive_scan_and_grab(&drive->m_infos, address.data(), 0) <= 0)
        return drive->failure(QStringLiteral("The recorder cannot be used"));
    keepFromChildren(file);
    return drive;
}

LibburnDrive::~LibburnDrive()
{
    if (!m_infos || m_abandoned)
        return;
    burn::burn_drive_release(m_infos[0].drive, m_eject ? 1 : 0);
    burn::burn_drive_info_free(m_infos);
}

burn::burn_drive *LibburnDrive::handle() const
{
    return m_infos[0].drive;
}

Failure LibburnDrive::failure(const QString &what) const
{
    if (!m_file.exists() || m_messages.contains(connectionLost)
        || m_messages.contains(transferFailed))
        return Failure{QStringLiteral("The recorder was disconnected. What was being written is "
                                      "not usable.")};
    const QString complaint = m_messages.complaint();
    if (complaint.contains(QLatin1String("[2 3A"), Qt::CaseInsensitive)
        || complaint.contains(QLatin1String("Medium not present"), Qt::CaseInsensitive))
        return Failure{QStringLiteral("The medium was taken out of the recorder.")};
    return Failure{complaint.isEmpty() ? what + QLatin1Char('.')
                                       : QStringLiteral("%1: %2").arg(what, complaint)};
}

// libburn asks a drive each second, and its thread ends a little after it has said so.
bool LibburnDrive::recover()
{
    constexpr qint64 patience = 3000; // ms
    constexpr std::chrono::milliseconds lookEvery(100);
    QElapsedTimer waited;
    waited.start();
    do {
        m_abandoned = burn::burn_drive_get_status(handle(), nullptr) != burn::BURN_DRIVE_IDLE;
        std::this_thread::sleep_for(lookEvery);
    } while (m_abandoned && !waited.hasExpired(patience));
    return !m_abandoned;
}

int LibburnDrive::profile() const
{
    int number = 0;
    std::array<char, 80> name{};
    return burn::burn_disc_get_profile(handle(), &number, name.data()) > 0 ? number : 0;
}

bool LibburnDrive::assessAgain()
{
    return burn::burn_drive_re_assess(handle(), 0) > 0;
}

// By the sense data in libburn's message: a blank check, and an address that is out of range.
bool LibburnDrive::foundNothingWritten() const
{
    const QString complaint = m_messages.complaint();
    return complaint.contains(QLatin1String("[8 ")) || complaint.contains(QLatin1String("[5 21 "));
}

Result<> LibburnDrive::readBlocks(qint64 first, qint64 count, char *to)
{
    m_messages.forget();
    off_t got = 0;
    if (burn::burn_read_data(handle(), first * blockSize, to, count * blockSize, &got, 0) > 0)
        return Done{};
    return failure(
        QStringLiteral("Block %1 of the disc cannot be read").arg(first + got / blockSize));
}
