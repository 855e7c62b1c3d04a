#pragma once

#include "RipDrives.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

// Keeps what the selected drive last said about its disc, looked at on a thread of its own, so
// that asking never waits for a drive spinning up. Tray moves run on that thread too. Made and
// asked on the UI thread.
class DriveWatcher {
public:
    DriveWatcher();
    ~DriveWatcher();

    void watch(const RipDrive &drive);
    // 1 a disc is in the drive, 0 none, -1 not known yet.
    int present() const { return m_present.load(); }
    void moveTray(bool close);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::optional<RipDrive> m_drive;
    std::optional<bool> m_trayRequest; // true: close
    bool m_stop = false;
    bool m_dirty = false;
    std::atomic<int> m_present{-1};
    // Last: the thread starts in the constructor and uses every member above.
    std::thread m_thread;
};
