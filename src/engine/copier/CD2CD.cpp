#include "CD2CD.h"

#include "BlankDiscHandler.h"
#include "CueBurnJob.h"
#include "CueSheet.h"
#include "DiscCopyJob.h"
#include "DiscReadJob.h"

#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/Recorder.h"

#include <QFileInfo>

namespace {
constexpr qint32 FileDriveHost = 254;
constexpr qint32 ImageRecorderHost = 255;
constexpr qint32 UnknownHost = 253;

qint32 addressOf(qint32 host, qint32 target, qint32 unit) {
    return ((host & 0xff) << 16) | ((target & 0xff) << 8) | (unit & 0xff);
}

// A drive of the machine by its SCSI address, as the kernel names its device folder.
qint32 scsiAddress(const QString &letter, qint32 fallbackTarget) {
    const QString target =
        QFileInfo(QStringLiteral("/sys/block/%1/device").arg(letter)).symLinkTarget();
    const QStringList hctl = QFileInfo(target).fileName().split(u':');
    if (hctl.size() == 4)
        return addressOf(hctl[0].toInt(), hctl[2].toInt(), hctl[3].toInt());
    return addressOf(UnknownHost, fallbackTarget, 0);
}

QString reasonOf(const JobOutcome &o) {
    if (o.kind == JobOutcome::Cancelled)
        return QStringLiteral("The job was aborted.");
    return o.senseInfo.isEmpty() ? o.errorInfo
                                 : QStringLiteral("%1 (%2)").arg(o.errorInfo, o.senseInfo);
}
} // namespace

CD2CD::CD2CD(CDWriterPro *writer, QObject *parent)
    : QObject(parent)
    , m_writer(writer) {
    // The writer's scan is the process's one; it runs here only if nobody started it yet.
    if (m_writer && m_writer->DriveCount() == 0)
        m_writer->InitializeDrives(true);
    // The drives go with the writer: a job must not outlive them.
    if (m_writer)
        connect(m_writer, &QObject::destroyed, this, [this] {
            if (m_job) {
                m_job->cancel();
                m_job->wait();
                m_job.reset();
            }
            m_claimedA = m_claimedB = nullptr; // gone with the writer
        });
}

CD2CD::~CD2CD() {
    if (m_job) {
        m_job->cancel();
        m_job->wait();
        m_job.reset();
        if (m_claimedA)
            m_claimedA->releaseClaim();
        if (m_claimedB)
            m_claimedB->releaseClaim();
    }
}

qint32 CD2CD::DeviceCount() const {
    return m_writer ? m_writer->DriveCount() : 0;
}

qint32 CD2CD::DeviceAddress(qint32 index) const {
    if (!m_writer || index < 0 || index >= m_writer->DriveCount())
        return -1;
    const QString letter = m_writer->DriveLetter(index);
    if (m_writer->isVirtualDrive(index))
        return addressOf(ImageRecorderHost, letter == u"IMG" ? 0 : letter.mid(3).toInt() - 1, 0);
    if (letter == u"FILE") {
        qint32 before = 0;
        for (qint32 i = 0; i < index; ++i)
            before += m_writer->DriveLetter(i) == u"FILE" ? 1 : 0;
        return addressOf(FileDriveHost, before, 0);
    }
    return scsiAddress(letter, index);
}

Recorder *CD2CD::recorderAt(qint32 address) const {
    for (qint32 i = 0; i < DeviceCount(); ++i)
        if (DeviceAddress(i) == address)
            return m_writer->recorder(i);
    return nullptr;
}

qint32 CD2CD::queryText(qint32 address, const QString &text) {
    m_result = recorderAt(address) ? text : QString();
    return qint32(m_result.size());
}

qint32 CD2CD::QueryVendor(qint32 address) {
    const Recorder *r = recorderAt(address);
    return queryText(address, r ? r->vendor() : QString());
}

qint32 CD2CD::QueryProduct(qint32 address) {
    const Recorder *r = recorderAt(address);
    return queryText(address, r ? r->product() : QString());
}

qint32 CD2CD::QueryRevision(qint32 address) {
    const Recorder *r = recorderAt(address);
    return queryText(address, r ? r->revision() : QString());
}

QString CD2CD::listLine(qint32 address) {
    const qint32 vendor = QueryVendor(address);
    const QString v = ResultText().left(vendor);
    const qint32 product = QueryProduct(address);
    const QString p = ResultText().left(product);
    const qint32 revision = QueryRevision(address);
    return QStringLiteral("%1:%2:%3  %4%5%6")
        .arg((address >> 16) & 0xff)
        .arg((address >> 8) & 0xff)
        .arg(address & 0xff)
        .arg(v.leftJustified(8, u' '), p.leftJustified(24, u' '), ResultText().left(revision));
}

void CD2CD::SelectDevice(qint32 address) {
    if (recorderAt(address))
        m_selected = address;
}

qint32 CD2CD::MaxSpeedCode() const {
    const Recorder *r = recorderAt(m_selected);
    if (!r)
        return 0;
    const QList<qint32> speeds = r->writeSpeeds();
    const MediumState st = r->medium();
    qint32 code = 0;
    for (qint32 c = 9; c > 0 && code == 0; --c)
        if (!speeds.isEmpty() && speeds.first() >= CopierJob::speedOf(c, st.mediaType))
            code = c;
    return code;
}

qint32 CD2CD::refuse(qint32 code, const QString &why) {
    m_result = why;
    return code;
}

qint32 CD2CD::startJob(std::unique_ptr<CopierJob> job, Recorder *a, Recorder *b) {
    if (!a->tryClaim())
        return refuse(-3, QStringLiteral("%1 is busy with another job.").arg(a->product()));
    if (b && b != a && !b->tryClaim()) {
        a->releaseClaim();
        return refuse(-3, QStringLiteral("%1 is busy with another job.").arg(b->product()));
    }
    m_claimedA = a;
    m_claimedB = b != a ? b : nullptr;
    m_job = std::move(job);
    m_job->start([this](const JobOutcome &o) {
        // The writer's end may have taken the job already.
        if (m_job) {
            m_job->wait();
            m_job.reset();
        }
        for (Recorder *r : {m_claimedA, m_claimedB})
            if (r)
                r->releaseClaim();
        m_claimedA = m_claimedB = nullptr;
        if (m_writer)
            emit m_writer->trayMoved(); // the disc may have changed: the frame looks again
        if (o.kind == JobOutcome::Completed)
            emit JobComplete();
        else
            emit JobFailed(reasonOf(o));
    });
    return 0;
}

qint32 CD2CD::CopyDisc(qint32 source, qint32 destination, qint32 speed, qint32 test, qintptr) {
    Recorder *from = recorderAt(source), *to = recorderAt(destination);
    if (m_job)
        return refuse(-1, QStringLiteral("A job is running already."));
    if (!from || !to)
        return refuse(-2, QStringLiteral("There is no such drive."));
    if (!to->isRecorder())
        return refuse(-2, QStringLiteral("%1 can't write discs.").arg(to->product()));
    if (from == to && !m_handler)
        return refuse(-2,
                      QStringLiteral("A copy on one drive needs someone to put in a blank disc."));
    DiscCopyJob::Setup setup{from, to, destination, test != 0, speed};
    return startJob(std::make_unique<DiscCopyJob>(this, setup), from, to);
}

qint32 CD2CD::SubmitAudioJob(qint32 address, const QString &cueFile, qint32 speed, qint32 test,
                             qintptr) {
    Recorder *r = recorderAt(address);
    if (m_job)
        return refuse(-1, QStringLiteral("A job is running already."));
    if (!r || !r->isRecorder())
        return refuse(-2, QStringLiteral("There is no recorder at this address."));
    // Read before the drive is touched: a sheet it can't write is refused here.
    CueSheet sheet = CueSheet::load(cueFile);
    if (!sheet.ok())
        return refuse(-4, sheet.error());
    return startJob(std::make_unique<CueBurnJob>(this, *r, std::move(sheet), test != 0, speed), r,
                    nullptr);
}

qint32 CD2CD::ReadDiscToFile(qint32 address, const QString &path, qint32 flag) {
    Recorder *r = recorderAt(address);
    if (m_job)
        return refuse(-1, QStringLiteral("A job is running already."));
    if (!r)
        return refuse(-2, QStringLiteral("There is no such drive."));
    if (path.trimmed().isEmpty())
        return refuse(-4, QStringLiteral("No file was named to save the disc to."));
    if (flag != 0 && flag != 1)
        return refuse(-4,
                      QStringLiteral("Flag %1 names no kind of file (0 ISO, 1 BIN).").arg(flag));
    return startJob(std::make_unique<DiscReadJob>(this, *r, path, flag), r, nullptr);
}

void CD2CD::AbortJob() {
    if (m_job)
        m_job->cancel();
}

qint32 CD2CD::ReadProgress(qint32 &Track, qint32 &Sector, qint32 &Sectors) const {
    if (!m_job)
        return 0;
    Track = m_job->track();
    Sector = m_job->currentSector();
    Sectors = m_job->totalSectors();
    return 1;
}

qint32 CD2CD::TotalSectors() const {
    return m_job ? m_job->totalSectors() : 0;
}

qint32 CD2CD::CurrentSector() const {
    return m_job ? m_job->currentSector() : 0;
}

qint32 CD2CD::DiscState(qint32 address) {
    const Recorder *r = recorderAt(address);
    const MediumState st = r ? r->medium() : MediumState{};
    if (!st.present())
        return StateNoDisc;
    if (st.discStatus == CDWriterPro::DiscEmpty)
        return StateBlank;
    return st.nextWritableAddress >= 0 ? StateAppendable : StateFull;
}

void CD2CD::EjectTray(qint32 address) {
    Recorder *r = recorderAt(address);
    // A drive in a job keeps its disc, unless the copy asked for the disc to change.
    if (!r || (r->claimed() && !(m_job && m_job->waitingForDisc())))
        return;
    r->moveTray(false);
    if (m_writer)
        emit m_writer->trayMoved();
}

void CD2CD::CloseTray(qint32 address) {
    Recorder *r = recorderAt(address);
    if (!r || (r->claimed() && !(m_job && m_job->waitingForDisc())))
        return;
    r->moveTray(true);
    if (m_writer)
        emit m_writer->trayMoved();
}

void CD2CD::LockTray(qint32 address) {
    if (Recorder *r = recorderAt(address))
        r->lockTray(true);
}

void CD2CD::UnlockTray(qint32 address) {
    if (Recorder *r = recorderAt(address))
        r->lockTray(false);
}

bool CD2CD::TrayLocked(qint32 address) const {
    const Recorder *r = recorderAt(address);
    return r && r->trayLocked();
}

void CD2CD::reportPercent(double percent) {
    emit PercentDone(percent);
}

void CD2CD::askForBlankDisc(qint32 address, const QString &driveName) {
    if (m_handler)
        m_handler->blankDiscWanted(address, driveName);
}
