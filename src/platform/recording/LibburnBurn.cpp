#include "LibburnBurn.h"

#include "DRKeys.h"
#include "DiscVerifier.h"
#include "DriveDescription.h"
#include "LibburnErase.h"
#include "MmcProfile.h"

#include <QElapsedTimer>

#include <array>
#include <cmath>
#include <sys/types.h>
#include <thread>

#include <libburn/libburn.h>

namespace {

constexpr std::chrono::milliseconds lookEvery(50);

// How long, in ms, libburn may take: to say that a burn has ended that it may not have begun, and
// to end when the drive is gone or says that it has nothing more to do.
constexpr qint64 refusalPatience = 1000;
constexpr qint64 endPatience = 60000;

// Of the burn's percentage, where verifying begins.
constexpr double verifyShare = 0.5;

// What is reported while writing, in this order and none left out.
constexpr std::array phases{DRStatusStateSessionOpen, DRStatusStateTrackOpen,
                            DRStatusStateTrackWrite, DRStatusStateTrackClose,
                            DRStatusStateSessionClose};
enum Phase { SessionOpen, TrackOpen, TrackWrite, TrackClose, SessionClose };

// Four seconds, IEC 60908. libburn announces as much to the drive and leaves the rest to its
// caller.
constexpr qint64 shortestCdTrack = 300;

bool isCd(int profile)
{
    constexpr int firstDvd = 0x10;
    return profile < firstDvd;
}

// KB per second. A CD turns past 75 sectors a second, whatever is in them.
double singleSpeedOf(int profile, qint64 sectorSize)
{
    constexpr int firstBluRay = 0x40;
    return isCd(profile)           ? 0.075 * static_cast<double>(sectorSize)
           : profile < firstBluRay ? 1385.0
                                   : 4495.625;
}

Phase phaseOf(burn::burn_drive_status status, qint64 taken)
{
    switch (status) {
    case burn::BURN_DRIVE_WRITING_LEADIN:
    case burn::BURN_DRIVE_WRITING_PREGAP:
        return TrackOpen;
    case burn::BURN_DRIVE_CLOSING_TRACK:
        return TrackClose;
    case burn::BURN_DRIVE_CLOSING_SESSION:
    case burn::BURN_DRIVE_WRITING_LEADOUT:
        return SessionClose;
    case burn::BURN_DRIVE_WRITING:
        return taken > 0 ? TrackWrite : TrackOpen;
    default:
        return SessionOpen;
    }
}

}

// The disc as libburn is told of it, and how it is to be written.
struct LibburnBurn::Disc
{
    explicit Disc(burn::burn_drive *drive)
        : options(burn::burn_write_opts_new(drive))
    {
        burn::burn_disc_add_session(disc, session, BURN_POS_END);
    }
    ~Disc()
    {
        burn::burn_write_opts_free(options);
        for (burn::burn_track *track : std::as_const(tracks))
            burn::burn_track_free(track);
        burn::burn_session_free(session);
        burn::burn_disc_free(disc);
    }
    Disc(const Disc &) = delete;
    Disc &operator=(const Disc &) = delete;

    burn::burn_write_opts *options;
    burn::burn_disc *disc = burn::burn_disc_create();
    burn::burn_session *session = burn::burn_session_create();
    QList<burn::burn_track *> tracks;
};

qint64 LibburnBurn::byteCount() const
{
    return m_layout.blockCount() * sectorSize();
}

qint64 LibburnBurn::sectorSize() const
{
    return m_layout.isAudio() ? AudioSource::sectorSize : TrackContent::blockSize;
}

Result<> LibburnBurn::run()
{
    if (Result<> formatted = formatIfNeeded(); !formatted)
        return formatted;
    auto feed = std::make_unique<DiscFeed>(m_layout, isCd(m_drive.profile()) ? shortestCdTrack : 0,
                                           m_report.stopToken());
    auto disc = std::make_unique<Disc>(m_drive.handle());
    Result<> done = compose(*disc, *feed);
    if (done)
        done = setOptions(*disc);
    if (done)
        done = write(*disc, *feed);
    if (m_drive.isAbandoned()) { // libburn's thread may use them yet
        std::ignore = disc.release();
        std::ignore = feed.release();
    }
    if (!done)
        return done;
    if (Result<> going = m_report.checkStopped(); !going)
        return going;
    if (m_request.verify)
        if (Result<> same = verify(*feed); !same)
            return same;
    m_report.setState(DRStatusStateFinishing);
    return m_report.checkStopped();
}

Result<> LibburnBurn::formatIfNeeded()
{
    if (!DriveDescription::needsFormatting(m_drive))
        return Done{};
    if (Result<> formatted = LibburnErase(m_drive, m_report).format(DRStatusStatePreparing, 0);
        !formatted)
        return formatted;
    const MmcProfile *profile = MmcProfile::find(m_drive.profile()); // some is kept in reserve now
    return m_layout.checkFits(profile ? QString(profile->mediaClass) : QString(),
                              DriveDescription::freeBlocks(m_drive));
}

Result<> LibburnBurn::compose(Disc &disc, DiscFeed &feed) const
{
    const bool audio = m_layout.isAudio();
    for (const qint64 blocks : m_layout.trackLengths()) {
        burn::burn_track *track = burn::burn_track_create();
        disc.tracks.append(track);
        burn::burn_track_define_data(track, 0, 0, 1, audio ? BURN_AUDIO : BURN_MODE1);
        burn::burn_source *source = feed.sourceOf(blocks);
        const bool set =
            source && burn::burn_track_set_source(track, source) == burn::BURN_SOURCE_OK;
        if (source)
            burn::burn_source_free(source); // the track keeps its own reference
        if (!set || burn::burn_session_add_track(disc.session, track, BURN_POS_END) <= 0)
            return m_drive.failure(QStringLiteral("The disc's tracks cannot be described"));
    }
    return Done{};
}

// Audio is written disc-at-once, so that there are no gaps and CD-Text has its place; of data,
// libburn knows best what drive and medium can do. Media that can be overwritten can always be
// added to, and know no sessions that could be left open.
Result<> LibburnBurn::setOptions(Disc &disc) const
{
    burn::burn_write_opts *options = disc.options;
    QByteArray packs = m_layout.cdTextPacks();
    burn::burn_write_opts_set_underrun_proof(options, 1);
    const bool leftOpen =
        m_request.appendable && !DriveDescription::isOverwritable(m_drive.profile());
    burn::burn_write_opts_set_multi(options, leftOpen ? 1 : 0);
    burn::burn_write_opts_set_obs_pad(options, 1);
    constexpr int packSize = 18;
    if (!packs.isEmpty()
        && burn::burn_write_opts_set_leadin_text(options,
                                                 reinterpret_cast<unsigned char *>(packs.data()),
                                                 static_cast<int>(packs.size() / packSize), 0)
               <= 0)
        return m_drive.failure(QStringLiteral("The CD-Text is not accepted"));
    std::array<char, BURN_REASONS_LEN> reasons{};
    const bool chosen =
        m_layout.isAudio()
            ? burn::burn_write_opts_set_write_type(options, burn::BURN_WRITE_SAO,
                                                   burn::BURN_BLOCK_SAO)
            : burn::burn_write_opts_auto_write_type(options, disc.disc, reasons.data(), 2)
                  != burn::BURN_WRITE_NONE;
    if (!chosen || burn::burn_precheck_write(options, disc.disc, reasons.data(), 1) <= 0)
        return Failure{QStringLiteral("The drive cannot write this on the medium: %1")
                           .arg(QString::fromLocal8Bit(reasons.data()).simplified())};
    burn::burn_drive_set_speed(m_drive.handle(), 0, static_cast<int>(std::ceil(m_request.speed)));
    return Done{};
}

void LibburnBurn::enterUpTo(int phase)
{
    while (m_phase < phase) {
        ++m_phase;
        const QLatin1StringView state = phases.at(static_cast<size_t>(m_phase));
        if (m_phase == TrackWrite)
            m_report.beginPhase(state, 0, m_request.verify ? verifyShare : 1, byteCount(),
                                singleSpeedOf(m_drive.profile(), sectorSize()));
        else
            m_report.setState(state);
    }
}

Result<> LibburnBurn::advance(qint64 bytes)
{
    Result<> going = m_report.advance(bytes);
    m_speed = m_report.currentSpeed();
    return going;
}

Result<> LibburnBurn::write(Disc &disc, DiscFeed &feed)
{
    enterUpTo(SessionOpen);
    feed.queue().waitForReserve(m_report.stopToken());
    if (Result<> going = m_report.checkStopped(); !going)
        return going;
    if (Result<> ready = feed.queue().reason(); !ready)
        return ready;
    m_drive.messages().forget();
    burn::burn_disc_write(disc.options, disc.disc);
    return follow(feed);
}

// What libburn's own thread is doing. It may still use the drive when that says it is idle, and
// has ended for sure only when it says so itself.
class LibburnBurn::Worker
{
public:
    // Right after burn_disc_write(): where that has a thread begin, the drive is not idle any more.
    explicit Worker(LibburnDrive &drive)
        : m_drive(drive)
        , m_begun(burn::burn_drive_get_status(drive.handle(), nullptr) != burn::BURN_DRIVE_IDLE)
    {
        m_idle.start();
    }

    enum class State { Working, Ended, Refused, Lost };
    [[nodiscard]] State look()
    {
        m_status = burn::burn_drive_get_status(m_drive.handle(), nullptr);
        const bool idle = m_status == burn::BURN_DRIVE_IDLE;
        if (idle && m_drive.messages().contains(LibburnDrive::writeThreadEnded))
            return State::Ended;
        if (!idle)
            m_idle.restart();
        if (m_drive.file().exists())
            m_gone.invalidate();
        else if (!m_gone.isValid())
            m_gone.start();
        if (m_gone.isValid() && m_gone.hasExpired(endPatience))
            return State::Lost;
        if (!m_idle.hasExpired(m_begun ? endPatience : refusalPatience))
            return State::Working;
        return m_begun ? State::Lost : State::Refused;
    }
    [[nodiscard]] burn::burn_drive_status status() const { return m_status; }

private:
    LibburnDrive &m_drive;
    const bool m_begun;
    burn::burn_drive_status m_status = burn::BURN_DRIVE_IDLE;
    QElapsedTimer m_idle;
    QElapsedTimer m_gone;
};

// Until libburn's thread has ended, or it must be left to itself.
Result<> LibburnBurn::follow(DiscFeed &feed)
{
    Result<> stopped = Done{};
    qint64 reported = 0;
    const auto stopWriting = [&] {
        feed.queue().close();
        burn::burn_drive_cancel(m_drive.handle());
    };
    Worker worker(m_drive);
    for (Worker::State state; (state = worker.look()) != Worker::State::Ended;) {
        if (state == Worker::State::Refused)
            return m_drive.failure(QStringLiteral("The drive refused to write"));
        if (state == Worker::State::Lost) {
            stopWriting();
            m_drive.abandon(LibburnDrive::writeThreadEnded);
            return m_drive.failure(QStringLiteral("The drive does not answer any more"));
        }
        const qint64 taken = feed.queue().taken();
        enterUpTo(phaseOf(worker.status(), taken));
        Result<> going = m_phase == TrackWrite ? advance(taken - std::exchange(reported, taken))
                                               : m_report.checkStopped();
        if (going)
            going = feed.queue().reason();
        if (stopped && !going) {
            stopped = going;
            stopWriting();
        }
        std::this_thread::sleep_for(lookEvery);
    }
    if (Result<> written = result(stopped, feed.queue()); !written)
        return written;
    enterUpTo(TrackWrite);
    if (Result<> going = advance(byteCount() - reported); !going)
        return going;
    enterUpTo(SessionClose);
    return Done{};
}

Result<> LibburnBurn::result(const Result<> &stopped, SectorQueue &queue) const
{
    if (!stopped)
        return stopped;
    if (Result<> read = queue.reason(); !read)
        return read;
    if (burn::burn_drive_wrote_well(m_drive.handle()) <= 0)
        return m_drive.failure(QStringLiteral("The disc could not be written"));
    if (queue.taken() != byteCount())
        return Failure{QStringLiteral("Only %1 of %2 bytes were written.")
                           .arg(queue.taken())
                           .arg(byteCount())};
    return queue.waitForEnd();
}

Result<> LibburnBurn::verify(const DiscFeed &feed)
{
    if (!m_drive.assessAgain())
        return m_drive.failure(QStringLiteral("The written disc cannot be read"));
    m_report.beginPhase(DRStatusStateVerifying, verifyShare, 1, byteCount(),
                        singleSpeedOf(m_drive.profile(), sectorSize()));
    m_speed = 0; // nothing is written any more
    const Advance step = [this](qint64 bytes) { return m_report.advance(bytes); };
    DiscVerifier verifier(m_drive, step);
    return m_layout.isAudio() ? verifier.verifyAudio(feed)
                              : verifier.verifyData(m_layout.tracks().first());
}
