// One burn on a real drive, from the choice of the write mode to the last block compared. The
// thread that serves libburn.
#pragma once

#include "DiscFeed.h"
#include "LibburnDrive.h"
#include "Recorder.h"

#include <atomic>

class LibburnBurn
{
public:
    // speed is set to what is being written, KB per second.
    LibburnBurn(LibburnDrive &drive, const BurnRequest &request, const DiscLayout &layout,
                JobReport &report, std::atomic<double> &speed)
        : m_drive(drive)
        , m_request(request)
        , m_layout(layout)
        , m_report(report)
        , m_speed(speed)
    {
    }

    [[nodiscard]] Result<> run();

private:
    struct Disc;
    class Worker;

    [[nodiscard]] Result<> formatIfNeeded();
    [[nodiscard]] Result<> compose(Disc &disc, DiscFeed &feed) const;
    [[nodiscard]] Result<> setOptions(Disc &disc) const;
    [[nodiscard]] Result<> write(Disc &disc, DiscFeed &feed);
    [[nodiscard]] Result<> follow(DiscFeed &feed);
    [[nodiscard]] Result<> result(const Result<> &stopped, SectorQueue &queue) const;
    [[nodiscard]] Result<> verify(const DiscFeed &feed);
    void enterUpTo(int phase);
    [[nodiscard]] qint64 byteCount() const;
    [[nodiscard]] qint64 sectorSize() const;
    [[nodiscard]] Result<> advance(qint64 bytes);

    LibburnDrive &m_drive;
    const BurnRequest &m_request;
    const DiscLayout &m_layout;
    JobReport &m_report;
    std::atomic<double> &m_speed;
    int m_phase = -1;
};
