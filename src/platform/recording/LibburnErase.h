// Makes the medium in a real drive blank, in the way of its kind: CD-RW and DVD-RW are erased by
// the drive, media that can be overwritten are. The thread that serves libburn.
#pragma once

#include "JobReport.h"
#include "LibburnDrive.h"
#include "Recorder.h"

class LibburnErase
{
public:
    LibburnErase(LibburnDrive &drive, JobReport &report)
        : m_drive(drive)
        , m_report(report)
    {
    }

    // A drive cannot be interrupted while it erases by itself: a cancelled job ends with it.
    [[nodiscard]] Result<> run(EraseType type);

    // Formats what has never been; it is blank afterwards. state: what the job reports meanwhile;
    // share: the part of the whole job that it is, 0.0 to 1.0.
    [[nodiscard]] Result<> format(QLatin1StringView state, double share);

private:
    [[nodiscard]] Result<> follow();
    [[nodiscard]] Result<> overwrite(qint64 blocks);

    LibburnDrive &m_drive;
    JobReport &m_report;
};
