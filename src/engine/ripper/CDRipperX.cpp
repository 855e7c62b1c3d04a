#include "CDRipperX.h"

#include "DriveWatcher.h"
#include "TrackPlayer.h"
#include "WaveEncoder.h"

#include <QDebug>

CDRipperX::CDRipperX(QObject *parent)
    : QObject(parent)
    , m_watcher(std::make_unique<DriveWatcher>())
    , m_player(std::make_unique<TrackPlayer>()) {
    m_drives = RipDrives::scan(&m_refused);
    for (const QString &refusal : std::as_const(m_refused))
        qInfo().noquote() << "Ripper: a drive can't be opened for reading:" << refusal;
}

CDRipperX::~CDRipperX() {
    m_job.reset(); // cancels and waits
    m_player.reset();
}

qint16 CDRipperX::DriveCount() const {
    return qint16(m_drives.size());
}

QString CDRipperX::DriveLetter(qint32 index) const {
    return m_drives.value(index).letter;
}
QString CDRipperX::DriveVendor(qint32 index) const {
    return m_drives.value(index).vendor;
}
QString CDRipperX::DriveProduct(qint32 index) const {
    return m_drives.value(index).product;
}

bool CDRipperX::SelectDrive(qint32 index) {
    if (index < 0 || index >= m_drives.size() || m_job)
        return false;
    if (index != m_current)
        m_player->stop();
    m_current = index;
    m_toc = {};
    m_watcher->watch(m_drives[index]);
    return true;
}

bool CDRipperX::ReadTOC() {
    m_toc = {};
    if (m_current < 0)
        return false;
    const auto toc = RipDrives::readToc(m_drives[m_current]);
    if (toc)
        m_toc = *toc;
    return toc.has_value();
}

const RipTrack *CDRipperX::track(qint32 number) const {
    return number >= 1 && number <= m_toc.tracks.size() ? &m_toc.tracks[number - 1] : nullptr;
}

qint16 CDRipperX::TrackCount() const {
    return qint16(m_toc.tracks.size());
}
qint32 CDRipperX::TrackStartFrame(qint32 t) const {
    return track(t) ? track(t)->start : 0;
}
qint32 CDRipperX::TrackLengthFrames(qint32 t) const {
    return track(t) ? track(t)->length : 0;
}
bool CDRipperX::TrackIsAudio(qint32 t) const {
    return track(t) && track(t)->audio;
}
bool CDRipperX::TrackCopyProtected(qint32 t) const {
    return track(t) && !track(t)->copyPermitted;
}

QString CDRipperX::FramesToTime(qint32 frames) {
    // Minutes, seconds and frames (75 a second), as a CD player counts.
    const qint32 f = qMax(0, frames);
    return QStringLiteral("%1:%2.%3")
        .arg(f / (60 * 75), 2, 10, QLatin1Char('0'))
        .arg(f / 75 % 60, 2, 10, QLatin1Char('0'))
        .arg(f % 75, 2, 10, QLatin1Char('0'));
}

qint16 CDRipperX::MaxReadSpeed() const {
    return m_current < 0 ? qint16(0) : RipDrives::maxReadSpeed(m_drives[m_current]);
}

void CDRipperX::SetReadSpeed(qint32 value) {
    m_speed = qint16(qBound(0, value, 255));
}

qint32 CDRipperX::Status() const {
    switch (m_player->state()) {
    case TrackPlayer::Playing:
        return StatusPlaying;
    case TrackPlayer::Paused:
        return StatusPaused;
    case TrackPlayer::Stopped:
        break;
    }
    return m_watcher->present() == 1 ? StatusLoaded : StatusNoDisc;
}

void CDRipperX::EjectDisc() {
    if (m_current < 0 || m_job)
        return;
    m_player->stop();
    m_watcher->moveTray(false);
}

void CDRipperX::LoadDisc() {
    if (m_current >= 0)
        m_watcher->moveTray(true);
}

qint16 CDRipperX::CurrentTrack() const {
    return m_player->track();
}
qint32 CDRipperX::CurrentFrame() const {
    return m_player->frame();
}

void CDRipperX::PlayTrack(qint32 number) {
    const RipTrack *t = track(number);
    if (!t || !t->audio || m_current < 0)
        return;
    QString error;
    if (!m_player->play(m_drives[m_current], qint16(number), t->start, t->start + t->length - 1,
                        m_output, &error))
        emit PlayFailed(error);
}

void CDRipperX::PausePlay() {
    m_player->pause();
}
void CDRipperX::ResumePlay() {
    m_player->resume();
}
void CDRipperX::StopPlay() {
    m_player->stop();
}

void CDRipperX::ClearExtractionQueue() {
    if (!m_job)
        m_queue.clear();
}

bool CDRipperX::AddExtractionTrack(qint32 number, const QString &fileName, qint32 queueId) {
    const RipTrack *t = track(number);
    if (m_job || !t || !t->audio || fileName.isEmpty())
        return false;
    m_queue.append({qint16(number), fileName, qint16(queueId), t->start, t->start + t->length - 1});
    return true;
}

bool CDRipperX::StartExtraction() {
    if (m_job || m_queue.isEmpty() || m_current < 0 || (m_useEncoder && !m_encoder))
        return false;
    m_player->stop();
    ExtractionJob::Setup setup;
    setup.drive = m_drives[m_current];
    setup.items = m_queue;
    setup.encoder = m_useEncoder ? m_encoder : std::make_shared<WaveEncoder>();
    setup.speed = m_speed;
    setup.filter = m_filter;
    m_job = std::make_unique<ExtractionJob>(this, std::move(setup));
    m_job->start();
    return true;
}

void CDRipperX::CancelExtraction() {
    if (m_job)
        m_job->cancel();
}

void CDRipperX::extractionFinished() {
    // Both threads are at their end: the encoder posted this as its last act.
    m_job.reset();
    emit ExtractionEnd();
}
