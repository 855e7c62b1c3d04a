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
// Audio waiting for the encoding threads, at most: a few tracks' worth.
constexpr qint64 LaneBytesLimit = 256 << 20;

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

// A file in work: its encoder and the audio read for it, not yet encoded.
struct ExtractionJob::Lane {
    int item = 0;
    AudioEncoder *encoder = nullptr;
    std::unique_ptr<AudioEncoder> owned;
    std::deque<Message> work;
    std::thread thread;
    bool done = false;
};

void ExtractionJob::cancel() {
    std::lock_guard lock(m_mutex);
    m_cancel.store(true);
    m_changed.notify_all();
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
    push({Message::Status, m_readingItem, status, frame, {}});
    if (status == 2)
        push({Message::Status, m_readingItem, 6, frame, {}});
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
            push({Message::Status, -1, status, 0, {}});
        push({Message::Finish, -1, 0, 0, {}});
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
        push({Message::Status, m_readingItem, 3, frame, {}});
}

// False when the job was cancelled.
bool ExtractionJob::readItem(int index, cdrom_paranoia_t *paranoia) {
    const ExtractionItem &item = m_setup.items[index];
    m_readingItem = index;
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

void ExtractionJob::postFor(int item, std::function<void(CDRipperX *)> event) {
    std::lock_guard lock(m_orderMutex);
    if (item <= m_head)
        post(std::move(event));
    else if (!m_dropHeld)
        m_held[item].push_back(std::move(event));
}

void ExtractionJob::statusFor(int item, qint32 code, qint32 frame) {
    postFor(item, [code, frame](CDRipperX *r) { emit r->ExtractionStatus(code, frame); });
}

void ExtractionJob::itemDone(int item) {
    std::lock_guard lock(m_orderMutex);
    m_done.insert(item);
    while (m_done.count(m_head)) {
        ++m_head;
        auto held = m_held.find(m_head);
        if (held == m_held.end())
            continue;
        for (auto &event : held->second)
            post(std::move(event));
        m_held.erase(held);
    }
}

// On the file's own thread: opens, encodes what reading hands over, closes. Its first failure
// ends the file; a cancel drops it without a word, the dispatcher tells the cancel.
void ExtractionJob::runLane(Lane &lane) {
    const ExtractionItem item = m_setup.items[lane.item];
    AudioEncoder &encoder = *lane.encoder;
    auto finish = [this, &lane] {
        itemDone(lane.item);
        std::lock_guard lock(m_mutex);
        lane.done = true;
        m_changed.notify_all();
    };
    auto failure = [this, &lane, &encoder](qint32 code, qint32 frame) {
        if (const QString why = encoder.errorText(); !why.isEmpty())
            postFor(lane.item, [why](CDRipperX *r) { emit r->EncoderFailed(why); });
        statusFor(lane.item, code, frame);
        m_skipItem.store(lane.item);
    };
    if (!encoder.open(item.fileName)) {
        failure(10, item.first);
        return finish();
    }
    postFor(lane.item, [item](CDRipperX *r) {
        emit r->ExtractingFileStart(item.fileName, item.first, item.last + 1, item.queueId);
    });
    QElapsedTimer sinceStatus;
    for (;;) {
        Message m{Message::Cancelled, 0, 0, 0, {}};
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this, &lane] { return !lane.work.empty() || m_cancel.load(); });
            if (!m_cancel.load()) {
                m = std::move(lane.work.front());
                lane.work.pop_front();
                m_laneBytes -= m.pcm.size();
                m_changed.notify_all();
            }
        }
        if (m.kind == Message::Cancelled) {
            encoder.abort();
            return finish();
        }
        if (m.kind == Message::Status) {
            statusFor(lane.item, m.status, m.frame);
            continue;
        }
        if (m.kind == Message::End) {
            statusFor(lane.item, 7, m.frame);
            if (encoder.close())
                postFor(lane.item, [](CDRipperX *r) { emit r->ExtractingFileEnd(); });
            else
                failure(12, m.frame);
            return finish();
        }
        if (!encoder.write(m.pcm.constData(), m.pcm.size())) {
            failure(11, m.frame);
            encoder.abort();
            return finish();
        }
        if (!sinceStatus.isValid() || sinceStatus.elapsed() >= StatusInterval) {
            sinceStatus.start();
            statusFor(lane.item, 7, m.frame);
        }
    }
}

void ExtractionJob::encode() {
    post([](CDRipperX *r) { emit r->ExtractionStart(); });
    // Side by side when the encoder can be cloned: one file per core, at least two, so that
    // reading and encoding overlap even on one core.
    const bool sideBySide = bool(m_setup.encoder->clone());
    const size_t width = sideBySide ? qMax(2u, std::thread::hardware_concurrency()) : 1;
    auto joinAll = [this] {
        for (auto &[item, lane] : m_lanes)
            if (lane->thread.joinable())
                lane->thread.join();
        std::lock_guard lock(m_mutex);
        m_lanes.clear();
        m_laneBytes = 0;
    };
    bool cancelled = false;
    for (;;) {
        Message m = pop();
        // Reading may be ahead of the files in work: once cancelled, no file is finished or
        // begun, whatever the reader already sent.
        if (m_cancel.load() && !cancelled) {
            cancelled = true;
            {
                std::lock_guard lock(m_orderMutex);
                m_dropHeld = true;
                m_held.clear();
            }
            joinAll();
            post([frame = m.frame](CDRipperX *r) { emit r->ExtractionStatus(14, frame); });
        }
        if (cancelled && m.kind != Message::Finish)
            continue;
        switch (m.kind) {
        case Message::Begin: {
            std::unique_lock lock(m_mutex);
            auto running = [this] {
                size_t n = 0;
                for (auto &[item, lane] : m_lanes)
                    n += lane->done ? 0 : 1;
                return n;
            };
            m_changed.wait(lock, [&] { return running() < width || m_cancel.load(); });
            if (m_cancel.load())
                break;
            for (auto it = m_lanes.begin(); it != m_lanes.end();) {
                if (it->second->done) {
                    it->second->thread.join();
                    it = m_lanes.erase(it);
                } else {
                    ++it;
                }
            }
            auto lane = std::make_unique<Lane>();
            lane->item = m.item;
            lane->owned = sideBySide ? m_setup.encoder->clone() : nullptr;
            lane->encoder = lane->owned ? lane->owned.get() : m_setup.encoder.get();
            Lane &started = *lane;
            m_lanes[m.item] = std::move(lane);
            started.thread = std::thread([this, &started] { runLane(started); });
            break;
        }
        case Message::Pcm:
        case Message::Status:
        case Message::End: {
            std::unique_lock lock(m_mutex);
            auto found = m_lanes.find(m.item);
            // A reading report goes through its file's thread, so it follows the file's start.
            if (m.kind == Message::Status && (found == m_lanes.end() || found->second->done)) {
                lock.unlock();
                statusFor(m.item, m.status, m.frame);
                break;
            }
            if (found == m_lanes.end())
                break;
            Lane &lane = *found->second;
            // A slow encoder holds reading back once a few tracks wait for it.
            m_changed.wait(
                lock, [&] { return m_laneBytes < LaneBytesLimit || lane.done || m_cancel.load(); });
            if (lane.done || m_cancel.load())
                break;
            m_laneBytes += m.pcm.size();
            lane.work.push_back(std::move(m));
            m_changed.notify_all();
            break;
        }
        case Message::Cancelled:
            break;
        case Message::Finish:
            joinAll();
            post([](CDRipperX *r) { r->extractionFinished(); });
            return;
        }
    }
}
