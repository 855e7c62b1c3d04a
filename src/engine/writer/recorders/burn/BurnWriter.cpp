#include "BurnWriter.h"

#include "BurnDrive.h"
#include "DriveSense.h"
#include "OverwriteSessions.h"

#include <QMutex>
#include <QThread>

namespace {
constexpr qint64 Block = 2048;
constexpr int FifoBytes = 4 << 20;
// Many drives and kernels can't read the last blocks of a track written track at once on a CD;
// libburn's example client and xorriso pad each data track by 300 KiB for that.
constexpr int CdDataPadBytes = 300 * 1024;

bool isCd(const BurnMedium::Assessment &medium) {
    return medium.profile >= 0x08 && medium.profile <= 0x0a;
}

qint64 padBlocks(const BurnMedium::Assessment &medium, const TrackSource *track) {
    return isCd(medium) && track->mode() != 0 ? CdDataPadBytes / Block : 0;
}

QMutex hookMutex;
BurnWriter::VerifyHook verifyHook;

QString writeTypeName(burn::burn_write_types t) {
    switch (t) {
    case burn::BURN_WRITE_SAO:
        return QStringLiteral("SAO");
    case burn::BURN_WRITE_TAO:
        return QStringLiteral("TAO");
    case burn::BURN_WRITE_RAW:
        return QStringLiteral("RAW");
    default:
        return QStringLiteral("none");
    }
}
} // namespace

void BurnWriter::setBeforeVerifyHook(VerifyHook hook) {
    QMutexLocker lock(&hookMutex);
    verifyHook = std::move(hook);
}

BurnWriter::BurnWriter(const WritePlan &plan, JobMonitor &monitor)
    : m_plan(plan)
    , m_monitor(monitor) {}

BurnWriter::~BurnWriter() {
    // The disc goes first: it holds the session, which holds the tracks and their sources.
    m_disc.reset();
    m_session.reset();
    m_tracks.clear();
    m_sources.clear();
}

bool BurnWriter::build(BurnDrive &drive, const BurnMedium::Assessment &medium) {
    burn::burn_drive *d = drive.get();
    m_opts.reset(burn::burn_write_opts_new(d));
    m_disc.reset(burn::burn_disc_create());
    m_session.reset(burn::burn_session_create());
    if (!m_opts || !m_disc || !m_session)
        return false;
    burn::burn_write_opts_set_simulate(m_opts.get(), m_plan.testWrite ? 1 : 0);
    burn::burn_write_opts_set_underrun_proof(m_opts.get(), m_plan.burnProof ? 1 : 0);
    burn::burn_write_opts_set_perform_opc(m_opts.get(), 1);
    if (medium.overwriteable) {
        // Written at an address of our choosing; sessions are a matter of layout there, so
        // libburn's multi-session flag (which such media refuse) stays off.
        burn::burn_write_opts_set_multi(m_opts.get(), 0);
        burn::burn_write_opts_set_start_byte(m_opts.get(), off_t(m_plan.startAddress) * Block);
    } else {
        burn::burn_write_opts_set_multi(m_opts.get(), m_plan.finalize ? 0 : 1);
    }
    // 0 asks for the drive's best speed.
    burn::burn_drive_set_speed(d, 0, m_plan.speed > 0 ? m_plan.speed : 0);
    for (TrackSource *source : m_plan.tracks) {
        auto record = std::make_shared<TrackFeed::Record>();
        BurnLibrary::SourcePtr feed = TrackFeed::create(source, record);
        if (!feed)
            return false;
        const int chunk = source->mode() == 0 ? 2352 : 2048;
        BurnLibrary::SourcePtr fifo(
            burn::burn_fifo_source_new(feed.get(), chunk, std::max(2, FifoBytes / chunk), 0));
        BurnLibrary::TrackPtr track(burn::burn_track_create());
        if (!fifo || !track)
            return false;
        // libburn writes CD data tracks in Mode 1 only; a Mode 2 XA request carries the same
        // 2048-byte blocks and is written as Mode 1.
        burn::burn_track_define_data(track.get(), 0, int(padBlocks(medium, source) * Block), 1,
                                     source->mode() == 0 ? BURN_AUDIO | BURN_COPY : BURN_MODE1);
        if (burn::burn_track_set_source(track.get(), fifo.get()) != burn::BURN_SOURCE_OK ||
            burn::burn_session_add_track(m_session.get(), track.get(), BURN_POS_END) <= 0)
            return false;
        m_sources.push_back(std::move(feed));
        m_sources.push_back(std::move(fifo));
        m_tracks.push_back(std::move(track));
        m_records.push_back(std::move(record));
    }
    m_lastPercent.assign(m_plan.tracks.size(), -1);
    return burn::burn_disc_add_session(m_disc.get(), m_session.get(), BURN_POS_END) > 0;
}

JobOutcome BurnWriter::check(BurnDrive &drive, const BurnMedium::Assessment &medium) {
    const MediumState &st = medium.state;
    if (!st.present())
        return JobOutcome::driveFailure(1033, QStringLiteral("No medium in the drive"),
                                        DriveSense::senseText({0x2, 0x3A, 0x00}));
    const bool plainImageOnBlank =
        medium.overwriteable && medium.sessions.isEmpty() && m_plan.startAddress == 0;
    if (st.nextWritableAddress < 0)
        return JobOutcome::driveFailure(1032, QStringLiteral("The medium takes no more data"),
                                        DriveSense::senseText({0x5, 0x30, 0x05}));
    // Only data is laid out for an address; audio goes wherever the drive continues.
    const bool addressBound = std::any_of(m_plan.tracks.begin(), m_plan.tracks.end(),
                                          [](const TrackSource *t) { return t->mode() != 0; });
    if (addressBound && m_plan.startAddress != st.nextWritableAddress && !plainImageOnBlank)
        return JobOutcome::driveFailure(
            1038,
            QStringLiteral("The track was laid out for block %1, the medium continues at %2")
                .arg(m_plan.startAddress)
                .arg(st.nextWritableAddress),
            DriveSense::senseText({0x5, 0x21, 0x02}));
    qint64 total = 0;
    for (const TrackSource *t : m_plan.tracks)
        total += t->blockCount() + padBlocks(medium, t);
    const qint64 free = plainImageOnBlank ? st.capacityBlocks : st.freeBlocks;
    if (total > free)
        return JobOutcome::driveFailure(
            1021,
            QStringLiteral("The tracks need %1 blocks, the medium has %2 free")
                .arg(total)
                .arg(free),
            DriveSense::senseText({0x5, 0x21, 0x00}));
    if (!build(drive, medium))
        return JobOutcome::failed(2, QStringLiteral("libburn could not set up the write"));
    return chooseWriteType(medium);
}

JobOutcome BurnWriter::chooseWriteType(const BurnMedium::Assessment &medium) {
    char reasons[BURN_REASONS_LEN] = {};
    // bit1: the reasons come back here; no message is queued for them.
    const burn::burn_write_types type =
        burn::burn_write_opts_auto_write_type(m_opts.get(), m_disc.get(), reasons, 2);
    const QString why = QString::fromLocal8Bit(reasons).trimmed();
    if (type == burn::BURN_WRITE_NONE) {
        m_monitor.log(QStringLiteral("libburn refuses the write: %1").arg(why));
        return DriveSense::failure(QStringLiteral("The drive refuses this write: %1").arg(why),
                                   {why});
    }
    m_monitor.log(
        QStringLiteral("Write type %1 (profile %2h%3): %4")
            .arg(writeTypeName(type))
            .arg(medium.profile, 4, 16, QLatin1Char('0'))
            .arg(medium.overwriteable ? QStringLiteral(", written at any address") : QString())
            .arg(why));
    return JobOutcome::completed();
}

void BurnWriter::report(qint32 track, qint64 done, qint64 total) {
    if (track < 1 || size_t(track) > m_lastPercent.size() || total <= 0)
        return;
    done = std::clamp<qint64>(done, 0, total);
    qint32 &last = m_lastPercent[size_t(track - 1)];
    const qint32 percent = qint32(done * 100 / total);
    // Every whole per cent the drive passed is told, so that a window sees each step even when
    // the drive ran through several between two looks.
    for (qint32 p = last + 1; p < percent; ++p)
        m_monitor.trackProgress(track, (total * p + 99) / 100, total);
    if (percent != last || done == total)
        m_monitor.trackProgress(track, done, total);
    last = percent;
}

void BurnWriter::startTracksUpTo(qint32 track) {
    while (m_started < track) {
        m_monitor.trackStarted(++m_started);
        report(m_started, 0, m_plan.tracks[size_t(m_started - 1)]->blockCount());
    }
}

void BurnWriter::closeTracksUpTo(qint32 track) {
    while (m_closed < track && m_closed < m_started) {
        ++m_closed;
        const qint64 blocks = m_plan.tracks[size_t(m_closed - 1)]->blockCount();
        report(m_closed, blocks, blocks);
        m_monitor.closingTrack(m_closed);
    }
}

JobOutcome BurnWriter::follow(BurnDrive &drive) {
    burn::burn_drive *d = drive.get();
    bool cancelled = false;
    while (burn::burn_drive_get_status(d, nullptr) == burn::BURN_DRIVE_SPAWNING)
        QThread::msleep(10);
    for (;;) {
        burn::burn_progress p{};
        const burn::burn_drive_status status = burn::burn_drive_get_status(d, &p);
        if (status == burn::BURN_DRIVE_IDLE)
            break;
        if (!cancelled && m_monitor.cancelRequested()) {
            cancelled = true;
            m_monitor.log(QStringLiteral("Cancelling: the drive is told to stop."));
            burn::burn_drive_cancel(d);
            for (auto &r : m_records)
                r->stopped.store(true);
        }
        const qint32 track = std::clamp(p.track + 1, 1, qint32(m_plan.tracks.size()));
        if (status == burn::BURN_DRIVE_WRITING || status == burn::BURN_DRIVE_CLOSING_TRACK ||
            status == burn::BURN_DRIVE_CLOSING_SESSION) {
            closeTracksUpTo(track - 1);
            startTracksUpTo(track);
            if (status == burn::BURN_DRIVE_WRITING && m_closed < track)
                report(track, p.sector, m_plan.tracks[size_t(track - 1)]->blockCount());
            if (status == burn::BURN_DRIVE_CLOSING_TRACK)
                closeTracksUpTo(track);
            if (status == burn::BURN_DRIVE_CLOSING_SESSION && !m_sessionClosed && !cancelled) {
                startTracksUpTo(qint32(m_plan.tracks.size()));
                closeTracksUpTo(qint32(m_plan.tracks.size()));
                m_sessionClosed = true;
                m_monitor.closingSession();
            }
        }
        QThread::msleep(50);
    }
    return cancelled ? JobOutcome::cancelled() : JobOutcome::completed();
}

JobOutcome BurnWriter::run(std::unique_ptr<BurnDrive> &drive, const BurnMedium::Assessment &medium,
                           const Regrab &regrab) {
    if (JobOutcome refused = check(*drive, medium); refused.kind != JobOutcome::Completed)
        return refused;
    qint64 total = 0;
    for (const TrackSource *t : m_plan.tracks)
        total += t->blockCount();
    m_monitor.log(QStringLiteral("%1 at block %2: %3 track(s), %4 blocks%5%6")
                      .arg(drive->address())
                      .arg(m_plan.startAddress)
                      .arg(m_plan.tracks.size())
                      .arg(total)
                      .arg(m_plan.testWrite ? QStringLiteral(", simulation") : QString())
                      .arg(m_plan.burnProof ? QStringLiteral(", buffer protection") : QString()));
    if (!medium.overwriteable && !m_plan.closeSession && !m_plan.finalize)
        m_monitor.log(QStringLiteral("libburn closes every session it writes; the session is "
                                     "closed and the disc stays open."));
    for (const TrackSource *t : m_plan.tracks) {
        if (t->mode() == 2)
            m_monitor.log(QStringLiteral("libburn writes CD data in Mode 1 only: the Mode 2 XA "
                                         "track is written in Mode 1."));
    }

    JobOutcome followed;
    QStringList said;
    bool gaveUp = false;
    for (int attempt = 0;; ++attempt) {
        {
            BurnLibrary::AbortGuard guard;
            burn::burn_disc_write(m_opts.get(), m_disc.get());
            followed = follow(*drive);
        }
        said = BurnLibrary::takeMessages();
        // libburn forgets the worker of a drive's previous job a moment after the drive went
        // idle; a write started in that moment is refused without a fatal error, so "wrote
        // well" would pass it. It is started again once the worker is gone.
        const bool stillBusy =
            said.filter(QStringLiteral("operation is still going on")).size() > 0 &&
            std::all_of(m_records.begin(), m_records.end(),
                        [](const auto &r) { return r->digests.isEmpty(); });
        gaveUp = stillBusy && attempt >= 50;
        if (!stillBusy || gaveUp || followed.kind == JobOutcome::Cancelled)
            break;
        QThread::msleep(100);
    }
    for (const QString &line : said)
        m_monitor.log(QStringLiteral("libburn: %1").arg(line));
    if (followed.kind == JobOutcome::Cancelled)
        return followed;
    for (const auto &r : m_records) {
        if (r->failed.load())
            return JobOutcome::failed(1, QStringLiteral("A source of the track could not be read"));
    }
    if (gaveUp)
        return DriveSense::failure(QStringLiteral("The drive stayed busy: nothing was written"),
                                   said);
    // Audio can't be read back by address: a write is whole only when every frame of every
    // track reached libburn. Nothing is announced as closed before that is known.
    for (size_t i = 0; i < m_records.size(); ++i) {
        const qint64 delivered = m_records[i]->delivered.load();
        if (delivered != m_records[i]->total)
            return DriveSense::failure(QStringLiteral("Track %1 was written only in part (%2 of "
                                                      "%3 bytes reached the drive)")
                                           .arg(i + 1)
                                           .arg(delivered)
                                           .arg(m_records[i]->total),
                                       said);
    }
    // "Wrote well" means only that no fatal error was seen; the read-back below proves it.
    if (!burn::burn_drive_wrote_well(drive->get()))
        return DriveSense::failure(QStringLiteral("The drive reported a failure while writing"),
                                   said);
    // A short write can end between two looks at the drive: its steps are told all the same.
    startTracksUpTo(qint32(m_plan.tracks.size()));
    closeTracksUpTo(qint32(m_plan.tracks.size()));
    if (!m_sessionClosed && (m_plan.closeSession || m_plan.finalize))
        m_monitor.closingSession();
    // A medium written at any address has no disc to close; the windows see the step all the
    // same, in the order they rest on.
    if (m_plan.finalize)
        m_monitor.closingDisc();
    if (m_plan.testWrite)
        return JobOutcome::completed();

    // Audio tracks have no block addresses to read back; a disc of data is compared.
    for (const TrackSource *t : m_plan.tracks) {
        if (t->mode() == 0)
            return JobOutcome::completed();
    }
    drive = regrab(std::move(drive));
    if (!drive)
        return JobOutcome::driveFailure(1002,
                                        QStringLiteral("The drive could not be reached after "
                                                       "writing"),
                                        DriveSense::senseText({0x2, 0x04, 0x00}));
    {
        QMutexLocker lock(&hookMutex);
        if (verifyHook)
            verifyHook(drive->address(), m_plan.startAddress, qint32(total));
    }
    if (JobOutcome verified = verify(*drive, m_plan.startAddress);
        verified.kind != JobOutcome::Completed)
        return verified;
    if (medium.overwriteable && m_plan.startAddress > 0)
        return writeHead(*drive, m_plan.startAddress, qint32(total));
    return JobOutcome::completed();
}

JobOutcome BurnWriter::verify(BurnDrive &drive, qint32 start) {
    m_monitor.log(QStringLiteral("Reading the session back to compare it."));
    std::vector<char> buffer(size_t(TrackFeed::DigestBlocks * Block));
    qint64 lba = start;
    for (size_t t = 0; t < m_plan.tracks.size(); ++t) {
        const qint64 blocks = m_plan.tracks[t]->blockCount();
        const QList<QByteArray> &digests = m_records[t]->digests;
        for (qint64 done = 0, i = 0; done < blocks; ++i) {
            const qint64 n = std::min(TrackFeed::DigestBlocks, blocks - done);
            if (!BurnMedium::readBlocks(drive, qint32(lba + done), qint32(n), buffer.data()))
                return DriveSense::failure(
                    QStringLiteral("The written session could not be read back at block %1")
                        .arg(lba + done),
                    BurnLibrary::takeMessages(), DriveSense::Sense{0x3, 0x11, 0x00});
            if (i >= digests.size() || TrackFeed::digest(buffer.data(), n * Block) != digests[i])
                return JobOutcome::driveFailure(
                    DriveSense::driveCode({0xE, 0x1D, 0x00}),
                    QStringLiteral("The session read back differs from what was written, from "
                                   "block %1 on")
                        .arg(lba + done),
                    DriveSense::senseText({0xE, 0x1D, 0x00}));
            done += n;
        }
        lba += blocks;
    }
    m_monitor.log(QStringLiteral("The session reads back as written."));
    return JobOutcome::completed();
}

JobOutcome BurnWriter::writeHead(BurnDrive &drive, qint32 start, qint32 blocks) {
    QByteArray sessionHead(OverwriteSessions::HeadBlocks * Block, '\0');
    if (!BurnMedium::readBlocks(drive, start, OverwriteSessions::HeadBlocks, sessionHead.data()))
        return DriveSense::failure(QStringLiteral("The new session's head could not be read"),
                                   BurnLibrary::takeMessages(), DriveSense::Sense{0x3, 0x11, 0x00});
    const qint32 own = OverwriteSessions::volumeBlocks(sessionHead.constData() + 16 * Block);
    QByteArray head = OverwriteSessions::head(sessionHead, start, own > 0 ? own : blocks);
    if (burn::burn_random_access_write(drive.get(), 0, head.data(), head.size(), 1) <= 0)
        return DriveSense::failure(QStringLiteral("The disc's head could not be written"),
                                   BurnLibrary::takeMessages(), DriveSense::Sense{0x3, 0x0C, 0x00});
    QByteArray back(head.size(), '\0');
    if (!BurnMedium::readBlocks(drive, 0, OverwriteSessions::HeadBlocks, back.data()) ||
        back != head)
        return JobOutcome::driveFailure(
            DriveSense::driveCode({0xE, 0x1D, 0x00}),
            QStringLiteral("The disc's head reads back differently from what was written"),
            DriveSense::senseText({0xE, 0x1D, 0x00}));
    m_monitor.log(
        QStringLiteral("The disc's head now leads to the session at block %1.").arg(start));
    return JobOutcome::completed();
}
