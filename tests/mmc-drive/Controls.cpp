#include "Controls.h"

#include "SystemCalls.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>

namespace mmc {

long long now()
{
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000LL + time.tv_nsec / 1'000'000;
}

namespace {

std::atomic<Controls *> lastAskedFor = nullptr;

}

Controls *Controls::current()
{
    return lastAskedFor;
}

Controls *Controls::instance()
{
    static std::mutex mutex;
    static std::map<std::string, std::unique_ptr<Controls>> made;
    const std::lock_guard lock(mutex);
    const char *folder = std::getenv("MMC_DRIVE");
    if (!folder || !*folder)
        return lastAskedFor = nullptr;
    std::unique_ptr<Controls> &controls = made[folder];
    if (!controls)
        controls.reset(new Controls(folder));
    return lastAskedFor = controls.get();
}

Controls::Controls(const char *folder)
    : m_folder(std::string(folder) + '/')
{
    m_state = system::open(m_folder + "state", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    m_blocks = system::open(m_folder + "blocks", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_state < 0 || m_blocks < 0 || ftruncate(m_state, sizeof(Registers)) != 0) {
        std::perror("MMC_DRIVE");
        std::abort();
    }
    void *memory = mmap(nullptr, sizeof(Registers), PROT_READ | PROT_WRITE, MAP_SHARED, m_state, 0);
    m_registers = static_cast<Registers *>(memory);
    system::fstat(m_state, &m_identity);
}

bool Controls::isDrive(int file) const
{
    struct stat status = {};
    return system::fstat(file, &status) == 0 && status.st_ino == m_identity.st_ino
           && status.st_dev == m_identity.st_dev;
}

// A lock stands for what the kernel does with O_EXCL: the second one to ask for it is refused.
int Controls::openDrive(int flags) const
{
    if (fault("denied")) {
        errno = EACCES;
        return -1;
    }
    const int file = system::open(m_folder + "state", O_RDWR | (flags & O_CLOEXEC), 0);
    if (file >= 0 && (flags & O_EXCL) && (fault("busy") || flock(file, LOCK_EX | LOCK_NB) != 0)) {
        close(file);
        errno = EBUSY;
        return -1;
    }
    return file;
}

bool Controls::isGone()
{
    const std::optional<long> gone = fault("gone");
    if (!gone && !fault("gone-reading") && !fault("gone-after"))
        m_registers->lost = false;
    return m_registers->lost || (gone && *gone < 0);
}

void Controls::takeInsertions()
{
    const std::string order = text("insert");
    if (order.empty())
        return;
    unlink((m_folder + "insert").c_str());
    std::istringstream words(order);
    std::string name;
    int capacity = 0;
    std::string state;
    words >> name >> capacity >> state;
    Registers &registers = *m_registers;
    registers.medium = {};
    registers.trayOpen = false;
    registers.cueBytes = 0;
    if (!clear())
        std::perror("MMC_DRIVE");
    for (const MediumKind &kind : mediumKinds()) {
        if (name != kind.name)
            continue;
        registers.medium.insert(kind, capacity);
        registers.medium.formatted = kind.overwritable && state != "unformatted";
        registers.writeSpeed = kind.singleSpeed * kind.factors[0] / 10;
    }
}

std::optional<long> Controls::fault(const char *name) const
{
    std::istringstream lines(text("faults"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string found;
        long value = -1;
        words >> found;
        if (found != name)
            continue;
        std::string number;
        if (words >> number)
            value = std::strtol(number.c_str(), nullptr, 0);
        return value;
    }
    return std::nullopt;
}

bool Controls::isFaulty(const char *name, long from, long count) const
{
    const std::optional<long> block = fault(name);
    return block && *block >= from && *block < from + count;
}

std::optional<long> Controls::secondsOf(const char *name) const
{
    const std::optional<long> seconds = fault(name);
    struct stat status = {};
    if (!seconds || system::stat((m_folder + "faults").c_str(), &status) != 0)
        return std::nullopt;
    const long left = status.st_mtime + *seconds - time(nullptr);
    return left > 0 ? std::optional(left) : std::nullopt;
}

void Controls::announce() const
{
    const int file =
        system::open(m_folder + "event", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file >= 0)
        close(file);
}

bool Controls::clear() const
{
    unlink((m_folder + "packs").c_str());
    return ftruncate(m_blocks, 0) == 0;
}

void Controls::log(const std::uint8_t *command, int length) const
{
    std::string line;
    for (int i = 0; i < length; ++i) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02x ", command[i]);
        line += hex;
    }
    line.back() = '\n';
    append("commands", line, 0);
}

void Controls::append(const char *name, const std::string &bytes, int flags) const
{
    const int file = system::open(m_folder + name, O_WRONLY | O_APPEND | O_CLOEXEC | flags, 0600);
    if (file < 0)
        return;
    if (write(file, bytes.data(), bytes.size()) < 0)
        std::perror("MMC_DRIVE");
    close(file);
}

std::string Controls::text(const char *name) const
{
    const int file = system::open(m_folder + name, O_RDONLY | O_CLOEXEC, 0);
    if (file < 0)
        return {};
    std::string all;
    char buffer[1024];
    for (ssize_t got; (got = read(file, buffer, sizeof buffer)) > 0;)
        all.append(buffer, static_cast<std::size_t>(got));
    close(file);
    return all;
}

}
