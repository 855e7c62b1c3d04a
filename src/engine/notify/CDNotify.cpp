#include "CDNotify.h"

#include "engine/writer/CDWriterPro.h"

namespace {
// Twice a second: a disc put into the Image Recorder's tray by hand is noticed within one.
constexpr int PollMs = 500;
} // namespace

CDNotify::CDNotify(CDWriterPro *engine, QObject *parent)
    : QObject(parent)
    , m_engine(engine) {
    if (engine) {
        for (qint32 i = 0; i < engine->DriveCount(); ++i)
            m_seen.append(engine->mediumIdentity(i));
        connect(engine, &CDWriterPro::trayMoved, this, &CDNotify::checkDrives);
    }
    m_poll.setInterval(PollMs);
    connect(&m_poll, &QTimer::timeout, this, &CDNotify::checkDrives);
    m_poll.start();
}

CDNotify::~CDNotify() = default;

void CDNotify::checkDrives() {
    if (!m_engine)
        return;
    const qint32 count = m_engine->DriveCount();
    while (m_seen.size() < count)
        m_seen.append(m_engine->mediumIdentity(qint32(m_seen.size())));
    for (qint32 i = 0; i < count; ++i) {
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
