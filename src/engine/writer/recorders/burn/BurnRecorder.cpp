#include "BurnRecorder.h"

#include "BurnDrive.h"
#include "BurnWriter.h"
#include "DriveSense.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {
constexpr qint64 Block = 2048;
constexpr qint32 ZeroChunkBlocks = 512; // 1 MiB per write while erasing

// A monitor for the checks that run outside a job: nothing to report, nothing to cancel.
class QuietMonitor : public JobMonitor {
public:
    void trackStarted(qint32) override {}
    void trackProgress(qint32, qint64, qint64) override {}
    void closingTrack(qint32) override {}
    void closingSession() override {}
    void closingDisc() override {}
    bool cancelRequested() const override { return false; }
    void log(const QString &) override {}
};

// Marks the recorder busy for the length of a job, whatever way the job ends.
class BusyScope {
public:
    BusyScope(QMutex &mutex, bool &busy)
        : m_mutex(mutex)
        , m_busy(busy) {
        QMutexLocker lock(&m_mutex);
        m_ok = !m_busy;
        m_busy = true;
    }
    ~BusyScope() {
        QMutexLocker lock(&m_mutex);
        if (m_ok)
            m_busy = false;
    }
    bool ok() const { return m_ok; }

private:
    QMutex &m_mutex;
    bool &m_busy;
    bool m_ok = false;
};

QString trimmed(const char *text) {
    return QString::fromLatin1(text).trimmed();
}

bool isPseudoAddress(const QString &address) {
    return address.startsWith(QLatin1StringView("stdio:"));
}
} // namespace

BurnRecorder::BurnRecorder(Inquiry inquiry)
    : m_inquiry(std::move(inquiry)) {}

BurnRecorder::~BurnRecorder() {
    QMutexLocker lock(&m_mutex);
    m_kept.reset();
}

QString BurnRecorder::letterOf(const QString &address) {
    if (isPseudoAddress(address))
        return QStringLiteral("FILE");
    return QFileInfo(address).fileName();
}

std::vector<BurnRecorder::Inquiry> BurnRecorder::scanMachine(QStringList *notes) {
    std::vector<Inquiry> found;
    if (!BurnLibrary::ensureStarted()) {
        if (notes)
            *notes << QStringLiteral("libburn could not be started: no drive can be used");
        return found;
    }
    burn::burn_drive_info *infos = nullptr;
    unsigned int count = 0;
    int r = 0;
    // The scan answers "not finished" until it has its result.
    while ((r = burn::burn_drive_scan(&infos, &count)) == 0)
        QThread::msleep(10);
    QStringList addresses;
    for (unsigned int i = 0; r > 0 && i < count; ++i) {
        char adr[BURN_DRIVE_ADR_LEN] = {};
        burn::burn_drive_d_get_adr(infos[i].drive, adr);
        Inquiry q;
        q.address = QString::fromLocal8Bit(adr);
        q.vendor = trimmed(infos[i].vendor);
        q.product = trimmed(infos[i].product);
        q.revision = trimmed(infos[i].revision);
        q.writes = infos[i].write_cdr || infos[i].write_cdrw || infos[i].write_dvdr ||
                   infos[i].write_dvdram;
        addresses << q.address;
        found.push_back(q);
        // The scan leaves each drive locked; it is grabbed again for each piece of work.
        burn::burn_drive_info_forget(&infos[i], 0);
    }
    if (infos)
        burn::burn_drive_info_free(infos);
    const QStringList said = BurnLibrary::takeMessages();
    if (r < 0 && notes)
        *notes << QStringLiteral("libburn's drive scan failed: %1")
                      .arg(said.isEmpty() ? QStringLiteral("no reason given")
                                          : said.join(QStringLiteral("; ")));
    // A drive that the scan passed over is named with the reason, so that the user learns why
    // it is missing.
    const QDir dev(QStringLiteral("/dev"));
    for (const QString &name : dev.entryList({QStringLiteral("sr*")}, QDir::System, QDir::Name)) {
        const QString path = dev.filePath(name);
        if (addresses.contains(path))
            continue;
        const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NONBLOCK | O_EXCL);
        QString why;
        if (fd < 0) {
            const int e = errno;
            why = e == EACCES  ? QStringLiteral("no permission to open it (the user may have to "
                                                 "join the group that owns it, often \"cdrom\")")
                  : e == EBUSY ? QStringLiteral("it is busy: another program or a mount uses it")
                               : QString::fromLocal8Bit(strerror(e));
        } else {
            ::close(fd);
            why = said.isEmpty() ? QStringLiteral("libburn does not take it for an MMC drive")
                                 : said.join(QStringLiteral("; "));
        }
        if (notes)
            *notes << QStringLiteral("%1 can't be used: %2").arg(path, why);
    }
    return found;
}

std::unique_ptr<BurnDrive> BurnRecorder::take(bool load, QString *why) const {
    if (m_kept)
        return std::move(m_kept);
    return BurnDrive::grab(m_inquiry.address, load, why);
}

JobOutcome BurnRecorder::unreachable(const QString &why) const {
    return DriveSense::failure(
        QStringLiteral("The drive %1 can't be used: %2").arg(m_inquiry.address, why), {why},
        DriveSense::Sense{0x2, 0x04, 0x00});
}

QString BurnRecorder::mediumIdentity() const {
    if (isPseudoAddress(m_inquiry.address)) {
        // The file is the medium; a missing file is a blank one.
        const QFileInfo f(m_inquiry.address.mid(6));
        return QStringLiteral("%1 %2 %3")
            .arg(m_inquiry.address)
            .arg(f.exists() ? f.size() : -1)
            .arg(f.exists() ? f.lastModified().toMSecsSinceEpoch() : 0);
    }
    // The kernel's view of the tray is cheap and needs no grab.
    const int fd = ::open(QFile::encodeName(m_inquiry.address).constData(), O_RDONLY | O_NONBLOCK);
    if (fd < 0) {
        QMutexLocker lock(&m_mutex);
        return m_assessment && m_assessment->state.present() ? m_assessedIdentity : QString();
    }
    const int status = ::ioctl(fd, CDROM_DRIVE_STATUS, CDSL_CURRENT);
    const int changed = ::ioctl(fd, CDROM_MEDIA_CHANGED, CDSL_CURRENT);
    ::close(fd);
    if (changed == 1)
        m_generation.fetchAndAddRelaxed(1);
    return status == CDS_DISC_OK
               ? QStringLiteral("%1 %2").arg(m_inquiry.address).arg(m_generation.loadRelaxed())
               : QString();
}

std::optional<BurnMedium::Assessment> BurnRecorder::assessed() const {
    const QString identity = mediumIdentity();
    QMutexLocker lock(&m_mutex);
    if (m_busy)
        return m_assessment;
    // Whoever asks about the medium has finished the reads of an import: the drive goes back.
    m_kept.reset();
    if (m_assessment && identity == m_assessedIdentity)
        return m_assessment;
    QString why;
    std::unique_ptr<BurnDrive> drive = take(false, &why);
    if (!drive)
        return std::nullopt;
    m_assessment = BurnMedium::assess(*drive);
    if (!m_capabilities)
        m_capabilities = BurnMedium::capabilities(*drive);
    m_assessedIdentity = identity;
    BurnLibrary::takeMessages();
    return m_assessment;
}

MediumState BurnRecorder::medium() const {
    const auto a = assessed();
    return a ? a->state : MediumState{};
}

QList<qint32> BurnRecorder::writeSpeeds() const {
    const auto a = assessed();
    return a ? a->speeds : QList<qint32>{};
}

bool BurnRecorder::capability(qint32 code) const {
    if (code < 0 || code >= 64)
        return false;
    {
        QMutexLocker lock(&m_mutex);
        if (m_capabilities)
            return (*m_capabilities >> code) & 1;
    }
    assessed();
    QMutexLocker lock(&m_mutex);
    return m_capabilities && ((*m_capabilities >> code) & 1);
}

void BurnRecorder::moveTray(bool close) {
    // A file has no tray.
    if (isPseudoAddress(m_inquiry.address))
        return;
    BusyScope busy(m_mutex, m_busy);
    if (!busy.ok())
        return;
    std::unique_ptr<BurnDrive> drive;
    {
        QMutexLocker lock(&m_mutex);
        m_kept.reset();
        m_assessment.reset();
    }
    // Grabbing with "load" closes the tray; releasing with "eject" opens it.
    QString why;
    drive = BurnDrive::grab(m_inquiry.address, close, &why);
    if (drive && !close)
        drive->ejectOnRelease();
    drive.reset();
    BurnLibrary::takeMessages();
}

bool BurnRecorder::lockTray(bool lock) {
    // A file has no tray; a drive's door lock is the kernel's to set.
    if (isPseudoAddress(m_inquiry.address))
        return false;
    const int fd = ::open(QFile::encodeName(m_inquiry.address).constData(), O_RDONLY | O_NONBLOCK);
    if (fd < 0)
        return false;
    const bool ok = ::ioctl(fd, CDROM_LOCKDOOR, lock ? 1 : 0) == 0;
    ::close(fd);
    if (ok)
        m_locked.store(lock);
    return ok;
}

bool BurnRecorder::readBlocks(qint32 lba, qint32 count, char *buffer) {
    QMutexLocker lock(&m_mutex);
    if (m_busy)
        return false;
    QString why;
    std::unique_ptr<BurnDrive> drive = take(false, &why);
    if (!drive)
        return false;
    const bool ok = BurnMedium::readBlocks(*drive, lba, count, buffer);
    // An import reads block after block: the drive stays grabbed until the next other use.
    m_kept = std::move(drive);
    return ok;
}

JobOutcome BurnRecorder::precheck(const WritePlan &plan) const {
    QMutexLocker lock(&m_mutex);
    if (m_busy)
        return busyOutcome();
    QString why;
    std::unique_ptr<BurnDrive> drive = take(false, &why);
    if (!drive)
        return unreachable(why);
    const BurnMedium::Assessment a = BurnMedium::assess(*drive);
    QuietMonitor quiet;
    BurnWriter writer(plan, quiet);
    const JobOutcome outcome = writer.check(*drive, a);
    BurnLibrary::takeMessages();
    return outcome;
}

JobOutcome BurnRecorder::runJob(const Job &job) {
    BusyScope busy(m_mutex, m_busy);
    if (!busy.ok())
        return busyOutcome();
    QString why;
    std::unique_ptr<BurnDrive> drive;
    {
        QMutexLocker lock(&m_mutex);
        drive = take(false, &why);
    }
    if (!drive)
        return unreachable(why);
    // Meanwhile the medium members answer with the state from before the job.
    const JobOutcome outcome = job(drive, BurnMedium::assess(*drive));
    drive.reset(); // waits until the drive is idle and releases it
    QMutexLocker lock(&m_mutex);
    m_assessment.reset();
    return outcome;
}

JobOutcome BurnRecorder::busyOutcome() {
    return JobOutcome::driveFailure(1002, QStringLiteral("The drive is busy"),
                                    DriveSense::senseText({0x2, 0x04, 0x07}));
}

JobOutcome BurnRecorder::write(const WritePlan &plan, JobMonitor &monitor) {
    return runJob([&](std::unique_ptr<BurnDrive> &drive, const BurnMedium::Assessment &a) {
        BurnWriter writer(plan, monitor);
        return writer.run(drive, a, [this](std::unique_ptr<BurnDrive> d) {
            d.reset(); // released first: a drive is grabbed once at a time
            QString again;
            return BurnDrive::grab(m_inquiry.address, false, &again);
        });
    });
}

JobOutcome BurnRecorder::waitForDrive(BurnDrive &drive, JobMonitor &monitor, const QString &what) {
    burn::burn_drive *d = drive.get();
    while (burn::burn_drive_get_status(d, nullptr) == burn::BURN_DRIVE_SPAWNING)
        QThread::msleep(10);
    bool told = false;
    qint32 lastStep = -1;
    for (;;) {
        burn::burn_progress p{};
        if (burn::burn_drive_get_status(d, &p) == burn::BURN_DRIVE_IDLE)
            break;
        if (!told && monitor.cancelRequested()) {
            told = true;
            monitor.log(QStringLiteral("%1 can't be interrupted once the drive has it; it runs "
                                       "to its end.")
                            .arg(what));
        }
        if (p.sectors > 0)
            monitor.trackProgress(1, p.sector, p.sectors);
        const qint32 step = p.sectors > 0 ? qint32(qint64(p.sector) * 10 / p.sectors) : 0;
        if (step != lastStep) {
            lastStep = step;
            monitor.log(QStringLiteral("%1: %2 %").arg(what).arg(step * 10));
        }
        QThread::msleep(100);
    }
    const QStringList said = BurnLibrary::takeMessages();
    for (const QString &line : said)
        monitor.log(QStringLiteral("libburn: %1").arg(line));
    if (!burn::burn_drive_wrote_well(d))
        return DriveSense::failure(QStringLiteral("%1 failed").arg(what), said,
                                   DriveSense::Sense{0x3, 0x51, 0x00});
    return JobOutcome::completed();
}

JobOutcome BurnRecorder::eraseOverwriteable(BurnDrive &drive, const BurnMedium::Assessment &a,
                                            bool quick, JobMonitor &monitor) {
    // Such a medium is blank when no volume descriptor leads to a session: quick erasing
    // clears the head and the first session's descriptors; full erasing clears every block
    // that sessions used.
    qint32 end = 2 * OverwriteSessions::HeadBlocks;
    if (!quick && !a.sessions.isEmpty())
        end = std::max(end, a.sessions.last().start + a.sessions.last().blocks);
    std::vector<char> zeros(size_t(ZeroChunkBlocks * Block), 0);
    for (qint32 lba = 0; lba < end;) {
        if (lba >= 2 * OverwriteSessions::HeadBlocks && monitor.cancelRequested())
            return JobOutcome::cancelled(); // the medium already reads as blank
        const qint32 n = std::min(ZeroChunkBlocks, end - lba);
        if (burn::burn_random_access_write(drive.get(), off_t(lba) * Block, zeros.data(),
                                           off_t(n) * Block, lba + n >= end ? 1 : 0) <= 0)
            return DriveSense::failure(QStringLiteral("Clearing block %1 failed").arg(lba),
                                       BurnLibrary::takeMessages(),
                                       DriveSense::Sense{0x3, 0x0C, 0x00});
        lba += n;
    }
    monitor.log(QStringLiteral("Cleared blocks 0 to %1.").arg(end - 1));
    return JobOutcome::completed();
}

JobOutcome BurnRecorder::erase(bool quick, JobMonitor &monitor) {
    return runJob([&](std::unique_ptr<BurnDrive> &drive, const BurnMedium::Assessment &a) {
        return eraseWith(*drive, a, quick, monitor);
    });
}

JobOutcome BurnRecorder::eraseWith(BurnDrive &drive, const BurnMedium::Assessment &a, bool quick,
                                   JobMonitor &monitor) {
    if (!a.state.present())
        return JobOutcome::driveFailure(1033, QStringLiteral("No medium in the drive"),
                                        DriveSense::senseText({0x2, 0x3A, 0x00}));
    monitor.log(QStringLiteral("Erasing (%1) the medium of profile %2h in %3")
                    .arg(quick ? QStringLiteral("quick") : QStringLiteral("full"))
                    .arg(a.profile, 4, 16, QLatin1Char('0'))
                    .arg(m_inquiry.address));
    if (a.overwriteable) {
        BurnLibrary::AbortGuard guard;
        int formatStatus = 0, formats = 0;
        off_t formatSize = 0;
        unsigned blockLength = 0;
        if (!drive.isPseudo() &&
            burn::burn_disc_get_formats(drive.get(), &formatStatus, &formatSize, &blockLength,
                                        &formats) > 0 &&
            formatStatus == BURN_FORMAT_IS_UNFORMATTED) {
            // A DVD+RW, DVD-RAM or BD-RE as it comes from the box: erasing it means formatting
            // it (size mode 3: the drive's default size).
            monitor.log(QStringLiteral("The medium is unformatted: it is formatted."));
            burn::burn_disc_format(drive.get(), 0, 3 << 1);
            return waitForDrive(drive, monitor, QStringLiteral("Formatting"));
        }
        return eraseOverwriteable(drive, a, quick, monitor);
    }
    // Only CD-RW and sequential DVD-RW are blanked; write-once media can't be.
    if (a.profile != 0x0a && a.profile != 0x14)
        return JobOutcome::driveFailure(1036,
                                        QStringLiteral("This medium is not rewritable and can't "
                                                       "be erased"),
                                        DriveSense::senseText({0x5, 0x30, 0x05}));
    if (burn::burn_disc_get_status(drive.get()) == burn::BURN_DISC_BLANK) {
        monitor.log(QStringLiteral("The medium is blank already."));
        return JobOutcome::completed();
    }
    if (quick && a.profile == 0x14)
        monitor.log(QStringLiteral("A quickly blanked DVD-RW takes one session written at once "
                                   "(DAO) only; full blanking keeps it open for more sessions."));
    BurnLibrary::AbortGuard guard;
    burn::burn_disc_erase(drive.get(), quick ? 1 : 0);
    return waitForDrive(drive, monitor, QStringLiteral("Blanking"));
}

JobOutcome BurnRecorder::finish(bool closeDisc, JobMonitor &monitor) {
    return runJob([&](std::unique_ptr<BurnDrive> &drive, const BurnMedium::Assessment &a) {
        return finishWith(*drive, a, closeDisc, monitor);
    });
}

JobOutcome BurnRecorder::finishWith(BurnDrive &drive, const BurnMedium::Assessment &a,
                                    bool closeDisc, JobMonitor &monitor) {
    const MediumState &st = a.state;
    if (!st.present())
        return JobOutcome::driveFailure(1033, QStringLiteral("No medium in the drive"),
                                        DriveSense::senseText({0x2, 0x3A, 0x00}));
    if (a.overwriteable || st.discStatus == 2) {
        // A medium written at any address has no open session or disc to close; a closed disc
        // has nothing left open.
        monitor.log(a.overwriteable ? QStringLiteral("Nothing stands open on a medium written "
                                                     "at any address.")
                                    : QStringLiteral("The disc is closed already."));
        monitor.closingSession();
        if (closeDisc)
            monitor.closingDisc();
        return JobOutcome::completed();
    }
    if (st.discStatus == 0)
        return JobOutcome::driveFailure(1042,
                                        QStringLiteral("No session stands open on a blank "
                                                       "disc"),
                                        DriveSense::senseText({0x5, 0x72, 0x00}));
    const bool damaged = burn::burn_disc_next_track_is_damaged(drive.get(), 0) & 1;
    if (!closeDisc && !damaged && st.lastSessionStatus != 1) {
        monitor.log(QStringLiteral("The last session is closed already."));
        monitor.closingSession();
        return JobOutcome::completed();
    }
    BurnLibrary::WriteOptsPtr opts(burn::burn_write_opts_new(drive.get()));
    burn::burn_write_opts_set_write_type(opts.get(), burn::BURN_WRITE_TAO, burn::BURN_BLOCK_MODE1);
    burn::burn_write_opts_set_simulate(opts.get(), 0);
    burn::burn_write_opts_set_multi(opts.get(), closeDisc ? 0 : 1);
    monitor.closingSession();
    if (closeDisc)
        monitor.closingDisc();
    BurnLibrary::AbortGuard guard;
    // Force: close even when the drive saw no damage, which is what closing a disc is.
    const int r = burn::burn_disc_close_damaged(opts.get(), closeDisc ? 1 : 0);
    const QStringList said = BurnLibrary::takeMessages();
    for (const QString &line : said)
        monitor.log(QStringLiteral("libburn: %1").arg(line));
    if (r <= 0)
        return DriveSense::failure(closeDisc ? QStringLiteral("The disc could not be closed")
                                             : QStringLiteral("The session could not be closed"),
                                   said, DriveSense::Sense{0x5, 0x72, 0x00});
    return JobOutcome::completed();
}
