// What this library puts in the place of the system's calls: /dev/sr0 is the emulated drive.
#include "Drive.h"
#include "SystemCalls.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/cdrom.h>
#include <mutex>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace mmc {

namespace {

constexpr unsigned cdromGroup = 24; // of Debian
constexpr unsigned cdromMajor = 11;

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

bool isDrivePath(const char *path)
{
    return path && std::strcmp(path, "/dev/sr0") == 0 && Controls::instance();
}

template <typename Stat>
void describe(Stat *status)
{
    status->st_mode = S_IFBLK | 0660;
    status->st_rdev = makedev(cdromMajor, 0);
    status->st_uid = 0;
    status->st_gid = cdromGroup;
    status->st_size = 0;
}

// What stat() or one of its kind tells of a path.
template <typename Stat>
int statOf(const char *name, const char *path, Stat *status)
{
    const auto real = next<int(const char *, Stat *)>(name);
    if (!isDrivePath(path))
        return real(path, status);
    if (Controls::instance()->isGone()) {
        errno = ENOENT;
        return -1;
    }
    const int result = real((Controls::instance()->folder() + "state").c_str(), status);
    describe(status);
    return result;
}

template <typename Stat>
int statOf(const char *name, int file, Stat *status)
{
    const int result = next<int(int, Stat *)>(name)(file, status);
    if (result == 0 && Controls::current() && Controls::current()->isDrive(file))
        describe(status);
    return result;
}

int openAs(const char *name, const char *path, int flags, mode_t mode)
{
    if (!isDrivePath(path))
        return next<int(const char *, int, ...)>(name)(path, flags, mode);
    if (Controls::instance()->isGone()) {
        errno = ENOENT;
        return -1;
    }
    return Controls::instance()->openDrive(flags);
}

void fill(const Sense &sense, sg_io_hdr_t &header)
{
    std::uint8_t bytes[18] = {0x70, 0, sense.key, 0, 0, 0,         0,
                              10,   0, 0,         0, 0, sense.asc, sense.ascq};
    if (sense.progress >= 0) {
        bytes[15] = 0x80;
        bytes[16] = static_cast<std::uint8_t>(sense.progress >> 8);
        bytes[17] = static_cast<std::uint8_t>(sense.progress);
    }
    header.status = 2; // check condition
    header.masked_status = 1;
    header.driver_status = 8; // sense data
    header.sb_len_wr = static_cast<unsigned char>(header.mx_sb_len < sizeof bytes ? header.mx_sb_len
                                                                                  : sizeof bytes);
    header.info = SG_INFO_CHECK;
    std::memcpy(header.sbp, bytes, header.sb_len_wr);
}

int execute(Controls &controls, sg_io_hdr_t &header)
{
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    header.status = header.masked_status = header.sb_len_wr = 0;
    header.host_status = header.driver_status = 0;
    header.info = SG_INFO_OK;
    header.duration = 1;
    Drive drive(
        controls, header.cmdp, header.cmd_len,
        {static_cast<std::uint8_t *>(header.dxferp), header.dxferp ? header.dxfer_len : 0U});
    const Sense sense = drive.run();
    if (sense.key != 0)
        fill(sense, header);
    header.resid = header.dxfer_direction == SG_DXFER_FROM_DEV
                       ? static_cast<int>(header.dxfer_len - drive.replied())
                       : 0;
    return 0;
}

int control(Controls &controls, unsigned long request, void *argument)
{
    switch (request) {
    case SG_IO:
        return execute(controls, *static_cast<sg_io_hdr_t *>(argument));
    case SG_GET_VERSION_NUM:
        *static_cast<int *>(argument) = 30536;
        return 0;
    case SG_GET_TIMEOUT:
        return 6000;
    case SG_GET_RESERVED_SIZE:
        *static_cast<int *>(argument) = 64 * 1024;
        return 0;
    case SG_SET_TIMEOUT:
    case SG_SET_RESERVED_SIZE:
        return 0;
    case 0x5382:
        std::memset(argument, 0, 8);
        return 0; // SCSI_IOCTL_GET_IDLUN
    case 0x5386:
        *static_cast<int *>(argument) = 0;
        return 0; // SCSI_IOCTL_GET_BUS_NUMBER
    case CDROM_DRIVE_STATUS:
        controls.takeInsertions();
        return controls.registers().trayOpen             ? CDS_TRAY_OPEN
               : controls.secondsOf("not-ready")         ? CDS_DRIVE_NOT_READY
               : controls.registers().medium.isPresent() ? CDS_DISC_OK
                                                         : CDS_NO_DISC;
    case CDROM_LOCKDOOR:
        controls.registers().locked = argument != nullptr;
        return 0;
    case CDROMEJECT:
        controls.registers().trayOpen = true;
        controls.announce();
        return 0;
    default:
        errno = ENOTTY;
        return -1;
    }
}

}

int system::open(const std::string &path, int flags, unsigned mode)
{
    return next<int(const char *, int, ...)>("open64")(path.c_str(), flags, mode);
}

int system::stat(const char *path, struct ::stat *status)
{
    return next<int(const char *, struct ::stat *)>("stat")(path, status);
}

int system::fstat(int file, struct ::stat *status)
{
    return next<int(int, struct ::stat *)>("fstat")(file, status);
}

int system::usleep(unsigned microseconds)
{
    return next<int(useconds_t)>("usleep")(microseconds);
}

}

using namespace mmc;

extern "C" {

#define MMC_OPEN(name)                                                                             \
    int name(const char *path, int flags, ...)                                                     \
    {                                                                                              \
        va_list rest;                                                                              \
        va_start(rest, flags);                                                                     \
        const mode_t mode = va_arg(rest, mode_t);                                                  \
        va_end(rest);                                                                              \
        return openAs(#name, path, flags, mode);                                                   \
    }
MMC_OPEN(open)
MMC_OPEN(open64)
#undef MMC_OPEN

// What glibc's headers make of open() where the flags are not known.
int __open_2(const char *path, int flags)
{
    return openAs("open", path, flags, 0);
}

int __open64_2(const char *path, int flags)
{
    return openAs("open64", path, flags, 0);
}

int stat(const char *path, struct stat *status) noexcept
{
    return statOf("stat", path, status);
}

int stat64(const char *path, struct stat64 *status) noexcept
{
    return statOf("stat64", path, status);
}

int lstat(const char *path, struct stat *status) noexcept
{
    return statOf("lstat", path, status);
}

int lstat64(const char *path, struct stat64 *status) noexcept
{
    return statOf("lstat64", path, status);
}

int fstat(int file, struct stat *status) noexcept
{
    return statOf("fstat", file, status);
}

int fstat64(int file, struct stat64 *status) noexcept
{
    return statOf("fstat64", file, status);
}

// What programs built with older versions of glibc call instead.
int __xstat(int, const char *path, struct stat *status) noexcept
{
    return statOf("stat", path, status);
}

int __lxstat(int, const char *path, struct stat *status) noexcept
{
    return statOf("lstat", path, status);
}

int __fxstat(int, int file, struct stat *status) noexcept
{
    return statOf("fstat", file, status);
}

int access(const char *path, int mode) noexcept
{
    if (!isDrivePath(path))
        return next<int(const char *, int)>("access")(path, mode);
    Controls &controls = *Controls::instance();
    errno = controls.isGone() ? ENOENT : EACCES;
    return controls.isGone() || controls.fault("denied") ? -1 : 0;
}

// Who burns waits long for real drives: here that time passes ten times as fast.
int usleep(useconds_t microseconds)
{
    return system::usleep(Controls::current() ? microseconds / 10 : microseconds);
}

unsigned sleep(unsigned seconds)
{
    return static_cast<unsigned>(usleep(seconds * 1'000'000));
}

int ioctl(int file, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void *argument = va_arg(rest, void *);
    va_end(rest);
    Controls *controls = Controls::current();
    if (!controls || !controls->isDrive(file))
        return next<int(int, unsigned long, ...)>("ioctl")(file, request, argument);
    if (controls->isGone()) {
        errno = ENODEV;
        return -1;
    }
    return control(*controls, request, argument);
}
}
