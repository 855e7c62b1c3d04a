#pragma once

#include "AudioOutput.h"
#include "RipDrives.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

// Plays a track digitally: reads its frames from the disc and hands them to an audio output, on
// a thread of its own. Driven and asked on the UI thread.
class TrackPlayer {
public:
    enum State { Stopped, Playing, Paused };
    ~TrackPlayer() { stop(); }

    // False, with the reason in `error`, when the output can't be opened.
    bool play(const RipDrive &drive, qint16 track, qint32 first, qint32 last,
              std::shared_ptr<AudioOutput> output, QString *error);
    void pause();
    void resume();
    void stop();
    State state() const { return m_state.load(); }
    qint16 track() const { return m_track.load(); }
    qint32 frame() const { return m_frame.load(); }

private:
    void run(RipDrive drive, qint32 last, std::shared_ptr<AudioOutput> output);

    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_resumed;
    std::atomic<State> m_state{Stopped};
    std::atomic<bool> m_stop{false};
    std::atomic<qint16> m_track{0};
    std::atomic<qint32> m_frame{0};
};
