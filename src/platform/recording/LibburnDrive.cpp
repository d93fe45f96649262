#include "LibburnDrive.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QMap>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <thread>
#include <unistd.h>

#include <libburn/libburn.h>

namespace {

constexpr qint64 blockSize = 2048;

// Of libburn's list of codes.
constexpr int transferFailed = 0x2010c;
constexpr int connectionLost = 0x201a6;

// Those that were left to libburn, by device path: it knows no second one of that path. They are
// not touched when the program ends. The thread that serves libburn.
QMap<QString, std::shared_ptr<LibburnDrive>> &abandoned()
{
    static auto *drives = new QMap<QString, std::shared_ptr<LibburnDrive>>;
    return *drives;
}

// Those of this program that have the device file open.
QList<int> descriptorsOf(const DeviceFile &file)
{
    struct stat device = {};
    if (::stat(QFile::encodeName(file.path()).constData(), &device) != 0)
        return {};
    QList<int> descriptors;
    const QStringList open =
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System);
    for (const QString &name : open) {
        struct stat status = {};
        if (::fstat(name.toInt(), &status) == 0 && S_ISBLK(status.st_mode)
            && status.st_rdev == device.st_rdev)
            descriptors.append(name.toInt());
    }
    return descriptors;
}

// libburn lets child processes inherit its open drives: a browser that is started to show a page
// would hold the drive as long as it runs.
void keepFromChildren(const DeviceFile &file)
{
    for (const int descriptor : descriptorsOf(file))
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

// A drive that did not even say what it is stays in libburn's list, open and out of reach, so that
// its path could not be used again: libburn begins anew.
void forgetDrives(const DeviceFile &file)
{
    LibburnMessages::restart();
    for (const int descriptor : descriptorsOf(file))
        ::close(descriptor);
}

}

Result<std::shared_ptr<LibburnDrive>> LibburnDrive::open(const DeviceFile &file)
{
    if (!LibburnMessages::isReady())
        return Failure{QStringLiteral("libburn cannot be used.")};
    // libburn waits six seconds for a drive that is in use; the system knows at once.
    if (const Result<> usable = checkUsable(file); !usable)
        return usable.failure();
    std::shared_ptr<LibburnDrive> drive(new LibburnDrive(file));
    QByteArray path = QFile::encodeName(file.path());
    std::array<char, BURN_DRIVE_ADR_LEN> address{};
    if (burn::burn_drive_convert_fs_adr(path.data(), address.data()) <= 0
        || burn::burn_drive_scan_and_grab(&drive->m_infos, address.data(), 0) <= 0) {
        const Failure failure = drive->failure(QStringLiteral("The recorder cannot be used"));
        if (!drive->m_infos && abandoned().isEmpty())
            forgetDrives(file);
        return failure;
    }
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
    if (!m_file.exists() || isDisconnected())
        return Failure{QStringLiteral("The recorder was disconnected. What was being written is "
                                      "not usable.")};
    const QString complaint = m_messages.complaint();
    if (complaint.contains(QLatin1String("[2 3A"), Qt::CaseInsensitive)
        || complaint.contains(QLatin1String("Medium not present"), Qt::CaseInsensitive))
        return Failure{QStringLiteral("The medium was taken out of the recorder.")};
    return Failure{complaint.isEmpty() ? what + QLatin1Char('.')
                                       : QStringLiteral("%1: %2").arg(what, complaint)};
}

void LibburnDrive::abandon(int endCode)
{
    m_abandoned = true;
    m_endCode = endCode;
    abandoned().insert(m_file.path(), shared_from_this());
    LibburnMessages::setMuted(askedInVain, true);
}

// libburn asks a drive each second, and its thread ends a little after it has said so.
bool LibburnDrive::recover(std::chrono::milliseconds patience)
{
    constexpr std::chrono::milliseconds lookEvery(100);
    const QDeadlineTimer end(patience);
    do {
        const bool idle = burn::burn_drive_get_status(handle(), nullptr) == burn::BURN_DRIVE_IDLE;
        m_abandoned = !idle || (m_endCode != 0 && !m_messages.contains(m_endCode));
        std::this_thread::sleep_for(lookEvery);
    } while (m_abandoned && !end.hasExpired());
    return !m_abandoned;
}

Result<> LibburnDrive::checkUsable(const DeviceFile &file, std::chrono::milliseconds patience)
{
    if (LibburnDrive *left = abandoned().value(file.path()).get(); left && !left->recover(patience))
        return Failure{
            QStringLiteral("The recorder does not answer any more. Switch it off and on, "
                           "or take its medium out, and try again.")};
    abandoned().remove(file.path()); // lets go of it
    LibburnMessages::setMuted(askedInVain, !abandoned().isEmpty());
    return file.checkUsable();
}

bool LibburnDrive::isDisconnected() const
{
    return m_messages.contains(connectionLost) || m_messages.contains(transferFailed);
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

// By the sense data in libburn's message, which stands in brackets or in words: a blank check, an
// address that is out of range, a medium that is not formatted.
bool LibburnDrive::foundNothingWritten() const
{
    const QString complaint = m_messages.complaint();
    return std::ranges::any_of(
        std::to_array({"[8 ", "Sense Key 8", "[5 21 ", " 30 10]", "ASC 30 ASCQ 10", "[3 31 00]"}),
        [&complaint](const char *sign) { return complaint.contains(QLatin1String(sign)); });
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
