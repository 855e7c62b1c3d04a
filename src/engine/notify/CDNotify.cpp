#include "CDNotify.h"

#include "UdevMediaWatcher.h"
#include "engine/writer/CDWriterPro.h"

namespace {
// Twice a second: a disc put into the Image Recorder's tray by hand is noticed within one.
constexpr int TrayPollMs = 500;
// Asking a physical drive costs a command to it: seldom when the kernel reports changes.
constexpr int DrivePollMs = 2000;
constexpr int DrivePollWithEventsMs = 5000;
} // namespace

CDNotify::CDNotify(CDWriterPro *engine, QObject *parent)
    : QObject(parent)
    , m_engine(engine)
    , m_udev(new UdevMediaWatcher(this)) {
    if (engine) {
        for (qint32 i = 0; i < engine->DriveCount(); ++i)
            m_seen.append(engine->mediumIdentity(i));
        // Queued: MoveTray is called from inside write events, and the media events (with the
        // frame's recalculation behind them) must not run nested in those handlers.
        connect(engine, &CDWriterPro::trayMoved, this, &CDNotify::checkDrives,
                Qt::QueuedConnection);
    }
    connect(m_udev, &UdevMediaWatcher::mediaChanged, this, [this] { check(Which::Physical); });
    m_trayPoll.setInterval(TrayPollMs);
    connect(&m_trayPoll, &QTimer::timeout, this, [this] { check(Which::Virtual); });
    m_trayPoll.start();
    m_drivePoll.setInterval(m_udev->isActive() ? DrivePollWithEventsMs : DrivePollMs);
    connect(&m_drivePoll, &QTimer::timeout, this, [this] { check(Which::Physical); });
    m_drivePoll.start();
}

CDNotify::~CDNotify() = default;

bool CDNotify::kernelEventsActive() const {
    return m_udev->isActive();
}

void CDNotify::checkDrives() {
    check(Which::All);
}

void CDNotify::check(Which which) {
    if (!m_engine)
        return;
    const qint32 count = m_engine->DriveCount();
    while (m_seen.size() < count)
        m_seen.append(m_engine->mediumIdentity(qint32(m_seen.size())));
    for (qint32 i = 0; i < count; ++i) {
        if (which != Which::All && m_engine->isVirtualDrive(i) != (which == Which::Virtual))
            continue;
        const QString now = m_engine->mediumIdentity(i);
        const QString before = m_seen.at(i);
        if (now == before)
            continue;
        m_seen[i] = now;
        const QString letter = m_engine->DriveLetter(i);
        if (!before.isEmpty())
            emit RemoveComplete(letter);
        if (!now.isEmpty())
            emit Arrival(letter);
    }
}
