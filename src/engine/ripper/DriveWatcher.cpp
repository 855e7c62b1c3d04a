#include "DriveWatcher.h"

#include "engine/writer/recorders/image/ImageRecorder.h"

#include <chrono>

namespace {
constexpr auto PollInterval = std::chrono::milliseconds(250);
}

DriveWatcher::DriveWatcher()
    : m_thread([this] { run(); }) {}

DriveWatcher::~DriveWatcher() {
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void DriveWatcher::watch(const RipDrive &drive) {
    {
        std::lock_guard lock(m_mutex);
        m_drive = drive;
        m_dirty = true;
    }
    m_present.store(-1);
    m_wake.notify_all();
}

void DriveWatcher::moveTray(bool close) {
    {
        std::lock_guard lock(m_mutex);
        m_trayRequest = close;
    }
    m_wake.notify_all();
}

void DriveWatcher::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait_for(lock, PollInterval,
                        [this] { return m_stop || m_dirty || m_trayRequest.has_value(); });
        if (m_stop)
            return;
        m_dirty = false;
        const std::optional<bool> tray = std::exchange(m_trayRequest, std::nullopt);
        const std::optional<RipDrive> drive = m_drive;
        if (!drive)
            continue;
        lock.unlock();
        if (tray) {
            // The Image Recorder's tray is the writer's own, so both engines see one disc.
            const QByteArray device = drive->device.toLocal8Bit();
            if (drive->image())
                ImageRecorder().moveTray(*tray);
            else if (*tray)
                cdio_close_tray(device.constData(), nullptr);
            else
                cdio_eject_media_drive(device.constData());
        }
        const bool present = RipDrives::discPresent(*drive);
        lock.lock();
        // A drive chosen meanwhile is looked at again at once; this answer is stale.
        if (!m_dirty)
            m_present.store(present ? 1 : 0);
    }
}
