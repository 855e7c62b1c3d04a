#include "CopierJob.h"

#include "CD2CD.h"

#include "base/App.h"
#include "engine/writer/CDWriterPro.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QThread>

#include <cmath>

namespace {
// 1x of a CD in kB/s, and of a DVD.
constexpr qint32 CdStep = 176;
constexpr qint32 DvdStep = 1385;
// How long the pregap of the first track takes, shown as sectors counting up to 0.
constexpr qint32 LeadInSectors = 150;
} // namespace

CopierJob::CopierJob(CD2CD *owner)
    : m_owner(owner) {}

CopierJob::~CopierJob() {
    cancel();
    wait();
}

void CopierJob::start(Finisher finisher) {
    m_thread.reset(QThread::create([this, finisher = std::move(finisher)] {
        JobOutcome outcome = run();
        if (outcome.kind == JobOutcome::Completed)
            reachFull();
        m_waiting.store(false);
        post([finisher, outcome](CD2CD *) { finisher(outcome); });
    }));
    m_thread->setObjectName(QStringLiteral("Tessaly copy job"));
    m_thread->start();
}

void CopierJob::wait() {
    if (m_thread)
        m_thread->wait();
}

void CopierJob::post(std::function<void(CD2CD *)> event) {
    CD2CD *owner = m_owner;
    QMetaObject::invokeMethod(
        owner, [owner, event = std::move(event)] { event(owner); }, Qt::QueuedConnection);
}

void CopierJob::setShare(double from, double to) {
    m_from = from;
    m_to = to;
}

void CopierJob::progress(qint64 done, qint64 total) {
    if (m_full.load())
        return;
    const double share = total > 0 ? double(std::min(done, total)) / double(total) : 1.0;
    // Below 100: only the job's end (or the closing of its disc) says 100.
    const double percent = std::min(99.9, m_from + (m_to - m_from) * share);
    const qint32 tenth = qint32(std::floor(percent * 10));
    if (tenth == m_lastTenth)
        return;
    m_lastTenth = tenth;
    post([percent](CD2CD *c) { c->reportPercent(percent); });
}

void CopierJob::setSectors(qint32 track, qint32 sector, qint32 sectors) {
    m_track.store(track);
    m_sector.store(sector);
    m_sectors.store(sectors);
}

void CopierJob::reachFull() {
    if (m_full.exchange(true))
        return;
    post([](CD2CD *c) { c->reportPercent(100.0); });
}

qint32 CopierJob::speedOf(qint32 code, qint32 mediaType) {
    static const qint32 factors[] = {1, 2, 4, 6, 8, 10, 12, 14, 16, 18};
    if (code < 0 || code > 9)
        return 0; // the drive's best
    const bool cd = mediaType == CDWriterPro::MediaCDR || mediaType == CDWriterPro::MediaCDRW;
    return factors[code] * (cd ? CdStep : DvdStep);
}

QString CopierJob::cacheFile(const char *kind) {
    const QString folder = App::pathOf(QStringLiteral("/Cache"));
    QDir().mkpath(folder);
    static std::atomic<qint32> serial{0};
    // The name carries the pid, which lets the next start sweep what a crash left.
    return QDir(folder).filePath(QStringLiteral("%1-%2-%3%4.cache")
                                     .arg(QLatin1String(kind))
                                     .arg(QCoreApplication::applicationPid())
                                     .arg(QDateTime::currentMSecsSinceEpoch())
                                     .arg(serial.fetch_add(1)));
}

JobOutcome CopierJob::burn(Recorder &recorder, const std::vector<TrackSource *> &tracks, bool test,
                           qint32 speedCode) {
    const MediumState st = recorder.medium();
    if (!st.present())
        return JobOutcome::failed(
            3, QStringLiteral("There is no disc in %1.").arg(recorder.product()));
    if (st.discStatus != CDWriterPro::DiscEmpty)
        return JobOutcome::failed(
            3, QStringLiteral("The disc in %1 is not blank.").arg(recorder.product()));
    WritePlan plan;
    plan.tracks = tracks;
    plan.startAddress = std::max(0, st.nextWritableAddress);
    plan.testWrite = test;
    plan.closeSession = true;
    plan.finalize = true; // a copy is a finished disc, as the original was
    plan.speed = speedOf(speedCode, st.mediaType);
    m_trackStarts.clear();
    qint64 total = 0;
    for (const TrackSource *t : tracks) {
        m_trackStarts.push_back(total);
        total += t->blockCount();
    }
    setSectors(1, -LeadInSectors, qint32(total));
    if (JobOutcome refused = recorder.precheck(plan); refused.kind != JobOutcome::Completed)
        return refused;
    return recorder.write(plan, *this);
}

void CopierJob::trackStarted(qint32 trackNumber) {
    m_track.store(trackNumber);
}

void CopierJob::trackProgress(qint32 trackNumber, qint64 blocksWritten, qint64) {
    const size_t i = size_t(std::max(1, trackNumber) - 1);
    const qint64 before = i < m_trackStarts.size() ? m_trackStarts[i] : 0;
    const qint32 sector = qint32(before + blocksWritten);
    m_track.store(trackNumber);
    // Sector 0 is still the lead-in's end; the first written sector counts 1.
    if (sector > 0)
        m_sector.store(sector);
    progress(sector, m_sectors.load());
}

void CopierJob::closingSession() {
    m_sector.store(m_sectors.load());
    reachFull();
}

JobOutcome CopierJob::awaitBlankDisc(Recorder &recorder, qint32 address) {
    recorder.lockTray(false);
    recorder.moveTray(false);
    m_waiting.store(true);
    const QString name = recorder.product();
    post([address, name](CD2CD *c) { c->askForBlankDisc(address, name); });
    while (!cancelRequested()) {
        const MediumState st = recorder.medium();
        if (st.present() && st.discStatus == CDWriterPro::DiscEmpty) {
            m_waiting.store(false);
            return JobOutcome::completed();
        }
        QThread::msleep(100);
    }
    m_waiting.store(false);
    return JobOutcome::cancelled();
}
