#include "LibburnErase.h"

#include "DRKeys.h"
#include "DriveDescription.h"

#include <QElapsedTimer>

#include <algorithm>
#include <sys/types.h>
#include <thread>

#include <libburn/libburn.h>

namespace {

constexpr std::chrono::milliseconds lookEvery(50);
constexpr qint64 lossPatience = 5000;               // ms; a short hiccup of the bus is none
constexpr qsizetype mostInVain = 5;                 // seconds
constexpr qint64 longest = 4 * 3600 * qint64(1000); // ms; far more than a medium takes
constexpr int wholeProgress = 0x10000;
constexpr qint64 blockSize = 2048;
constexpr qint64 alignment = 16;      // blocks that DVD and BD write together
constexpr qint64 writtenAtOnce = 256; // blocks
constexpr int dvdPlusRw = 0x1a;

}

Result<> LibburnErase::run(EraseType type)
{
    const int profile = m_drive.profile();
    if (DriveDescription::isOverwritable(profile)) {
        if (DriveDescription::needsFormatting(m_drive))
            return format(DRStatusStateErasing, 1);
        // One whose formatting was broken off takes nothing behind that place until it goes on.
        if (profile == dvdPlusRw
            && (type == EraseType::Complete || DriveDescription::isUnformatted(m_drive)))
            if (Result<> formatted = format(DRStatusStateErasing, 0); !formatted)
                return formatted;
        const qint64 all = DriveDescription::freeBlocks(m_drive) / alignment * alignment;
        return overwrite(type == EraseType::Quick ? std::min(DriveDescription::volumeStart, all)
                                                  : all);
    }
    m_drive.messages().forget();
    m_report.beginPhase(DRStatusStateErasing, 0, 1, wholeProgress, 0);
    burn::burn_disc_erase(m_drive.handle(), type == EraseType::Quick ? 1 : 0);
    return follow();
}

Result<> LibburnErase::format(QLatin1StringView state, double share)
{
    constexpr int toDefaultSize = 3 << 1;
    constexpr int withoutCertification = 1 << 6;
    m_drive.messages().forget();
    m_report.beginPhase(state, 0, share, wholeProgress, 0);
    burn::burn_disc_format(m_drive.handle(), 0, toDefaultSize | withoutCertification);
    return follow();
}

Result<> LibburnErase::follow()
{
    int reported = 0;
    QElapsedTimer lost;
    QElapsedTimer whole;
    whole.start();
    burn::burn_progress progress = {};
    while (burn::burn_drive_get_status(m_drive.handle(), &progress) != burn::BURN_DRIVE_IDLE) {
        const int done = std::clamp(progress.sector, reported, wholeProgress);
        // Whether it was cancelled is asked in the end: the drive does not stop.
        std::ignore = m_report.advance(done - std::exchange(reported, done));
        if (m_drive.file().exists())
            lost.invalidate();
        else if (!lost.isValid())
            lost.start();
        if ((lost.isValid() && lost.hasExpired(lossPatience)) || whole.hasExpired(longest)
            || m_drive.messages().count(LibburnDrive::askedInVain) >= mostInVain) {
            m_drive.abandon(); // libburn asks for its progress without end
            return m_drive.failure(QStringLiteral("The drive does not go on"));
        }
        std::this_thread::sleep_for(lookEvery);
    }
    // libburn's thread ends after it has said so, and later where it could not ask the drive.
    const bool gone = !m_drive.file().exists() || m_drive.isDisconnected();
    std::this_thread::sleep_for(gone ? std::chrono::seconds(2) : lookEvery);
    const bool went = burn::burn_drive_wrote_well(m_drive.handle()) > 0;
    if (went && m_drive.assessAgain()
        && burn::burn_disc_get_status(m_drive.handle()) == burn::BURN_DISC_BLANK)
        return m_report.checkStopped();
    return m_drive.failure(QStringLiteral("The drive did not erase the medium"));
}

Result<> LibburnErase::overwrite(qint64 blocks)
{
    QByteArray zeros(writtenAtOnce * blockSize, '\0');
    m_drive.messages().forget();
    m_report.beginPhase(DRStatusStateErasing, 0, 1, blocks * blockSize, 0);
    Result<> going = Done{};
    for (qint64 block = 0; going && block < blocks; block += writtenAtOnce) {
        const qint64 count = std::min(writtenAtOnce, blocks - block);
        if (burn::burn_random_access_write(m_drive.handle(), block * blockSize, zeros.data(),
                                           count * blockSize, 0)
            <= 0)
            return m_drive.failure(QStringLiteral("The medium cannot be overwritten"));
        going = m_report.advance(count * blockSize);
    }
    // A cancelled job, too, leaves nothing in the drive's buffer.
    constexpr int flush = 1;
    if (burn::burn_random_access_write(m_drive.handle(), 0, zeros.data(), 0, flush) <= 0)
        return m_drive.failure(QStringLiteral("The medium cannot be overwritten"));
    return going ? m_report.checkStopped() : going;
}
