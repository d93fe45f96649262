// The folder through which the drive is controlled, named by MMC_DRIVE, and what it keeps there.
// README.md tells of its files.
#pragma once

#include "Medium.h"

#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace mmc {

// What is kept between commands, in memory shared by all processes.
struct Registers
{
    Medium medium;
    std::uint8_t writeParameters[52]; // mode page 5
    std::uint8_t cueSheet[8192];
    int cueBytes;   // of the cue sheet; 0: none was sent
    int nextBlock;  // of a session that is written by its cue sheet
    int writeSpeed; // KB per second
    bool trayOpen;
    bool locked;
    bool lost;         // the fault "gone" has happened
    long long readyAt; // ms of the monotonic clock: until then the drive is at work
};

class Controls
{
public:
    // Those of the folder that MMC_DRIVE names now; null where it names none.
    [[nodiscard]] static Controls *instance();

    // The same, but null until they were asked for by name: for calls that concern all files.
    [[nodiscard]] static Controls *current();

    [[nodiscard]] Registers &registers() { return *m_registers; }
    [[nodiscard]] int blocks() const { return m_blocks; }

    // The CD-Text packs in the lead-in, kept in the file "packs".
    [[nodiscard]] std::string packs() const { return text("packs"); }
    void appendPacks(const std::string &packs) const { append("packs", packs, O_CREAT); }

    // Makes the medium's blocks and packs those of a blank one.
    [[nodiscard]] bool clear() const;

    // Whether an open file, or what stat() tells of one, is the drive.
    [[nodiscard]] bool isDrive(int file) const;
    [[nodiscard]] int openDrive(int flags) const; // -1 and errno
    [[nodiscard]] bool isGone();

    // Does what the file "insert" asks for.
    void takeInsertions();

    // The value of a fault: -1 where none is given; nothing where the fault is not there.
    [[nodiscard]] std::optional<long> fault(const char *name) const;
    [[nodiscard]] bool isFaulty(const char *name, long from, long count) const; // of blocks
    [[nodiscard]] std::optional<long> secondsOf(const char *name) const;        // still to wait

    // Tells those who watch the folder that the medium or the drive has changed.
    void announce() const;

    // Appends the command to the file "commands", where there is one.
    void log(const std::uint8_t *command, int length) const;

    [[nodiscard]] const std::string &folder() const { return m_folder; }

private:
    explicit Controls(const char *folder);

    [[nodiscard]] std::string text(const char *name) const;
    void append(const char *name, const std::string &bytes, int flags) const;

    std::string m_folder;
    Registers *m_registers = nullptr;
    int m_state = -1;
    int m_blocks = -1;
    struct stat m_identity = {};
};

[[nodiscard]] long long now(); // ms

}
