#include "TrackPlayer.h"

#include <QByteArray>

namespace {
constexpr int FramesPerRead = 15; // a fifth of a second
}

bool TrackPlayer::play(const RipDrive &drive, qint16 track, qint32 first, qint32 last,
                       std::shared_ptr<AudioOutput> output, QString *error) {
    stop();
    if (!output) {
        *error = QStringLiteral("There is no sound device to play the track on.");
        return false;
    }
    if (!output->open(error))
        return false;
    m_stop.store(false);
    m_track.store(track);
    m_frame.store(first);
    m_state.store(Playing);
    m_thread = std::thread([this, drive, last, output] { run(drive, last, output); });
    return true;
}

void TrackPlayer::pause() {
    State playing = Playing;
    m_state.compare_exchange_strong(playing, Paused);
}

void TrackPlayer::resume() {
    {
        std::lock_guard lock(m_mutex);
        State paused = Paused;
        m_state.compare_exchange_strong(paused, Playing);
    }
    m_resumed.notify_all();
}

void TrackPlayer::stop() {
    {
        std::lock_guard lock(m_mutex);
        m_stop.store(true);
    }
    m_resumed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
    m_state.store(Stopped);
}

void TrackPlayer::run(RipDrive drive, qint32 last, std::shared_ptr<AudioOutput> output) {
    std::unique_ptr<OpenedDisc> disc = RipDrives::openAudio(drive);
    QByteArray buffer(FramesPerRead * CDIO_CD_FRAMESIZE_RAW, '\0');
    while (disc && !m_stop.load() && m_frame.load() <= last) {
        if (m_state.load() == Paused) {
            std::unique_lock lock(m_mutex);
            m_resumed.wait(lock, [this] { return m_stop.load() || m_state.load() != Paused; });
            continue;
        }
        const qint32 frame = m_frame.load();
        const qint32 count = qMin<qint32>(FramesPerRead, last - frame + 1);
        if (cdio_read_audio_sectors(disc->cdio.get(), buffer.data(), frame, count) !=
                DRIVER_OP_SUCCESS ||
            !output->write(buffer.constData(), qint64(count) * CDIO_CD_FRAMESIZE_RAW))
            break;
        m_frame.store(frame + count);
    }
    output->close();
    m_state.store(Stopped);
}
