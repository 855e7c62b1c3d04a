#include "ExtractionJob.h"

#include "CDRipperX.h"

#include <QElapsedTimer>
#include <QMetaObject>

namespace {
constexpr qint64 FrameBytes = CDIO_CD_FRAMESIZE_RAW;
constexpr int FramesPerMessage = 25;
constexpr size_t QueueLimit = 64;
constexpr qint64 StatusInterval = 100; // ms: as often as a window can show it
constexpr int Retries = 20;

// Paranoia's callback carries no context: the job of this reading thread.
thread_local ExtractionJob *t_job = nullptr;

void onParanoia(long position, paranoia_cb_mode_t mode) {
    if (t_job)
        t_job->paranoiaReport(position, mode);
}

long onRead(cdrom_drive_t *d, void *p, lsn_t begin, long sectors) {
    return t_job->filteredRead(d, p, begin, sectors);
}
} // namespace

ExtractionJob::ExtractionJob(CDRipperX *ripper, Setup setup)
    : m_ripper(ripper)
    , m_setup(std::move(setup)) {}

ExtractionJob::~ExtractionJob() {
    cancel();
    wait();
}

void ExtractionJob::start() {
    m_encoder = std::thread([this] { encode(); });
    m_reader = std::thread([this] { read(); });
}

void ExtractionJob::wait() {
    if (m_reader.joinable())
        m_reader.join();
    if (m_encoder.joinable())
        m_encoder.join();
}

void ExtractionJob::post(std::function<void(CDRipperX *)> event) {
    CDRipperX *ripper = m_ripper;
    QMetaObject::invokeMethod(
        ripper, [ripper, event = std::move(event)] { event(ripper); }, Qt::QueuedConnection);
}

void ExtractionJob::push(Message message) {
    std::unique_lock lock(m_mutex);
    // Reading waits for the encoder, so a slow encoder never lets the audio pile up.
    m_changed.wait(lock, [this] { return m_queue.size() < QueueLimit; });
    m_queue.push_back(std::move(message));
    m_changed.notify_all();
}

ExtractionJob::Message ExtractionJob::pop() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_queue.empty(); });
    Message message = std::move(m_queue.front());
    m_queue.pop_front();
    m_changed.notify_all();
    return message;
}

// Status codes reported while reading (the window's texts in brackets):
//   2 paranoia gave up on a frame and skipped it ("Jitter Could Not Be Corrected." + frame)
//   3 a drive was slowed down after a read error ("Speed Adjusted to Correct Error.")
//   4 the drive failed a read ("Read Failed.")
//   5 a frame read differently twice and is being read again ("Retrying Read.")
//   6 a frame still fails after its retries ("Retry Failed.")
// Each is reported once per frame, so a bad patch does not flood the log.
void ExtractionJob::paranoiaReport(long position, int mode) {
    qint32 status = 0;
    switch (mode) {
    case PARANOIA_CB_READERR:
        status = 4;
        m_readErrors = true;
        break;
    case PARANOIA_CB_FIXUP_EDGE:
    case PARANOIA_CB_FIXUP_ATOM:
    case PARANOIA_CB_FIXUP_DROPPED:
    case PARANOIA_CB_FIXUP_DUPED:
    case PARANOIA_CB_SCRATCH:
    case PARANOIA_CB_REPAIR:
        status = 5;
        break;
    case PARANOIA_CB_SKIP:
        status = 2;
        break;
    default:
        return;
    }
    const qint32 frame = qint32(position / CD_FRAMEWORDS);
    if (status == m_lastReport && frame == m_lastReportFrame)
        return;
    m_lastReport = status;
    m_lastReportFrame = frame;
    push({Message::Status, 0, status, frame, {}});
    if (status == 2)
        push({Message::Status, 0, 6, frame, {}});
}

long ExtractionJob::filteredRead(cdrom_drive_t *d, void *p, lsn_t begin, long sectors) {
    const long got = m_driveRead(d, p, begin, sectors);
    if (got > 0 && m_setup.filter)
        m_setup.filter(begin, qint32(got), static_cast<char *>(p));
    return got;
}

void ExtractionJob::read() {
    t_job = this;
    auto finish = [this](qint32 status) {
        if (status)
            push({Message::Status, 0, status, 0, {}});
        push({Message::Finish, 0, 0, 0, {}});
    };
    std::unique_ptr<OpenedDisc> disc = RipDrives::openAudio(m_setup.drive);
    if (!disc)
        return finish(13);
    if (m_setup.speed > 0 && !m_setup.drive.image())
        cdio_cddap_speed_set(disc->cdda.get(), m_setup.speed);
    m_cdda = disc->cdda.get();
    m_speed = m_setup.speed;
    m_driveRead = disc->cdda->read_audio;
    disc->cdda->read_audio = onRead;
    ParanoiaPtr paranoia(cdio_paranoia_init(disc->cdda.get()));
    if (!paranoia)
        return finish(9);
    paranoia_modeset(paranoia.get(), PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
    for (int i = 0; i < m_setup.items.size(); ++i) {
        if (!readItem(i, paranoia.get())) {
            push({Message::Cancelled, i, 0, 0, {}});
            break;
        }
    }
    paranoia.reset();
    disc->cdda->read_audio = m_driveRead;
    m_cdda = nullptr;
    finish(0);
}

// A drive that fails reads often reads better slower: half the speed, down to 1x.
void ExtractionJob::slowDown(qint32 frame) {
    if (!m_cdda || m_setup.drive.image())
        return;
    if (m_speed <= 0)
        m_speed = RipDrives::maxReadSpeed(m_setup.drive);
    if (m_speed <= 1)
        return;
    m_speed = qMax(1, m_speed / 2);
    if (cdio_cddap_speed_set(m_cdda, m_speed) == 0)
        push({Message::Status, 0, 3, frame, {}});
}

// False when the job was cancelled.
bool ExtractionJob::readItem(int index, cdrom_paranoia_t *paranoia) {
    const ExtractionItem &item = m_setup.items[index];
    push({Message::Begin, index, 0, 0, {}});
    // Paranoia's own bounds are the track's frames.
    paranoia_set_range(paranoia, item.first, item.last);
    paranoia_seek(paranoia, item.first, SEEK_SET);
    QByteArray block;
    block.reserve(FramesPerMessage * FrameBytes);
    for (qint32 frame = item.first; frame <= item.last; ++frame) {
        if (m_cancel.load())
            return false;
        if (m_skipItem.load() == index)
            return true;
        const int16_t *samples = paranoia_read_limited(paranoia, onParanoia, Retries);
        if (std::exchange(m_readErrors, false))
            slowDown(frame);
        if (!samples) {
            push({Message::Status, index, 4, frame, {}});
            block.append(QByteArray(FrameBytes, '\0'));
        } else {
            block.append(reinterpret_cast<const char *>(samples), FrameBytes);
        }
        if (block.size() >= FramesPerMessage * FrameBytes || frame == item.last) {
            push({Message::Pcm, index, 0, frame + 1, block});
            block.clear();
        }
    }
    push({Message::End, index, 0, item.last + 1, {}});
    return true;
}

void ExtractionJob::encode() {
    post([](CDRipperX *r) { emit r->ExtractionStart(); });
    AudioEncoder &encoder = *m_setup.encoder;
    bool open = false;
    bool cancelled = false;
    QElapsedTimer sinceStatus;
    auto status = [this](qint32 code, qint32 frame) {
        post([code, frame](CDRipperX *r) { emit r->ExtractionStatus(code, frame); });
    };
    // A failing file's code, after the encoder's own words when it has any.
    auto failure = [this, &encoder, &status](qint32 code, qint32 frame) {
        if (const QString why = encoder.errorText(); !why.isEmpty())
            post([why](CDRipperX *r) { emit r->EncoderFailed(why); });
        status(code, frame);
    };
    for (;;) {
        Message m = pop();
        // Reading may be ahead of the file in work: once cancelled, no file is finished or
        // begun, whatever the reader already sent.
        if (m_cancel.load() && !cancelled) {
            cancelled = true;
            if (open)
                encoder.abort();
            open = false;
            status(14, m.frame);
        }
        if (cancelled && m.kind != Message::Finish)
            continue;
        switch (m.kind) {
        case Message::Begin: {
            const ExtractionItem item = m_setup.items[m.item];
            open = encoder.open(item.fileName);
            if (!open) {
                m_skipItem.store(m.item);
                failure(10, item.first);
                break;
            }
            post([item](CDRipperX *r) {
                emit r->ExtractingFileStart(item.fileName, item.first, item.last + 1, item.queueId);
            });
            sinceStatus.invalidate();
            break;
        }
        case Message::Pcm:
            if (!open)
                break;
            if (!encoder.write(m.pcm.constData(), m.pcm.size())) {
                failure(11, m.frame);
                encoder.abort();
                open = false;
                m_skipItem.store(m.item);
            } else if (!sinceStatus.isValid() || sinceStatus.elapsed() >= StatusInterval) {
                sinceStatus.start();
                status(7, m.frame);
            }
            break;
        case Message::Status:
            status(m.status, m.frame);
            break;
        case Message::End:
            if (!open)
                break;
            open = false;
            status(7, m.frame);
            if (encoder.close())
                post([](CDRipperX *r) { emit r->ExtractingFileEnd(); });
            else
                failure(12, m.frame);
            break;
        case Message::Cancelled:
            break;
        case Message::Finish:
            if (open)
                encoder.abort();
            post([](CDRipperX *r) { r->extractionFinished(); });
            return;
        }
    }
}
