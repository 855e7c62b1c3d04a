#pragma once

#include "engine/writer/recorders/Recorder.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class CD2CD;
class QThread;

// The core every job of the copier runs on: a worker thread of its own, events posted to the
// CD2CD on the UI thread in order, cooperative cancel, one ending call posted last, and the
// progress figures the UI thread polls. Each kind of job (reading a disc into a file, burning a
// cue sheet, copying a disc) is a class of its own over it. Made on the UI thread, run on the
// worker.
class CopierJob : public JobMonitor {
public:
    using Finisher = std::function<void(const JobOutcome &)>;
    explicit CopierJob(CD2CD *owner);
    ~CopierJob() override;
    CopierJob(const CopierJob &) = delete;
    CopierJob &operator=(const CopierJob &) = delete;

    void start(Finisher finisher);
    void cancel() { m_cancel.store(true); }
    void wait();

    qint32 track() const { return m_track.load(); }
    qint32 currentSector() const { return m_sector.load(); }
    qint32 totalSectors() const { return m_sectors.load(); }
    // True while the job waits for a blank disc in a drive it ejected itself.
    bool waitingForDisc() const { return m_waiting.load(); }

    // Progress of a step: `done` of `total` sectors maps onto the job's share [from, to).
    void setShare(double from, double to);
    void progress(qint64 done, qint64 total);
    void setSectors(qint32 track, qint32 sector, qint32 sectors);
    // 100 %, posted once: from here on the job can't be stopped.
    void reachFull();

    // Writes `tracks` onto a blank disc in `recorder` through the writer's path for it.
    JobOutcome burn(Recorder &recorder, const std::vector<TrackSource *> &tracks, bool test,
                    qint32 speedCode);
    // Ejects `recorder`'s disc, asks for a blank one and waits for it.
    JobOutcome awaitBlankDisc(Recorder &recorder, qint32 address);

    // JobMonitor
    void trackStarted(qint32 trackNumber) override;
    void trackProgress(qint32 trackNumber, qint64 blocksWritten, qint64 blocksToWrite) override;
    void closingTrack(qint32) override {}
    void closingSession() override;
    void closingDisc() override {}
    bool cancelRequested() const override { return m_cancel.load(); }
    void log(const QString &) override {}

    // A fresh temporary file name in the program's cache folder (swept at the next start if a
    // crash leaves it).
    static QString cacheFile(const char *kind);
    // kB/s of a speed code (1x to 18x, 255 or any code above 9 the drive's best) for a medium.
    static qint32 speedOf(qint32 code, qint32 mediaType);

protected:
    virtual JobOutcome run() = 0;
    void post(std::function<void(CD2CD *)> event);

private:
    CD2CD *m_owner;
    std::unique_ptr<QThread> m_thread;
    std::atomic<bool> m_cancel{false};
    std::atomic<bool> m_waiting{false};
    std::atomic<bool> m_full{false};
    std::atomic<qint32> m_track{0}, m_sector{0}, m_sectors{0};
    double m_from = 0, m_to = 100;
    qint32 m_lastTenth = -1;
    std::vector<qint64> m_trackStarts; // sectors before each track of a burn
};
