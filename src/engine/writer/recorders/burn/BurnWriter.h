#pragma once

#include "BurnMedium.h"
#include "TrackFeed.h"
#include "engine/writer/recorders/Recorder.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class BurnDrive;

// One session written through libburn: the plan's tracks as libburn sources behind a fifo, the
// write type that libburn's own check finds for drive and medium, progress from the drive's
// status, cancel through the drive, then the session read back and compared with what was
// sent. Runs on the engine's worker thread, with the drive grabbed.
class BurnWriter {
public:
    // Called after the write and before the read-back, with the drive's address and the
    // session's place. Tests change the medium here to prove that the comparison sees it.
    using VerifyHook = std::function<void(const QString &address, qint32 start, qint32 blocks)>;
    static void setBeforeVerifyHook(VerifyHook hook);

    // Regrabs the drive when a step wants it fresh (libburn learns a medium's new state only on
    // a new grab).
    using Regrab = std::function<std::unique_ptr<BurnDrive>(std::unique_ptr<BurnDrive>)>;

    BurnWriter(const WritePlan &plan, JobMonitor &monitor);
    ~BurnWriter();

    // What libburn would do with this plan on this medium: Completed, or the refusal with its
    // reasons. Nothing is read from the tracks.
    JobOutcome check(BurnDrive &drive, const BurnMedium::Assessment &medium);
    JobOutcome run(std::unique_ptr<BurnDrive> &drive, const BurnMedium::Assessment &medium,
                   const Regrab &regrab);

private:
    bool build(BurnDrive &drive, const BurnMedium::Assessment &medium);
    JobOutcome chooseWriteType(const BurnMedium::Assessment &medium);
    JobOutcome follow(BurnDrive &drive);
    JobOutcome verify(BurnDrive &drive, qint32 start);
    JobOutcome writeHead(BurnDrive &drive, qint32 start, qint32 blocks);
    void report(qint32 track, qint64 done, qint64 total);
    void startTracksUpTo(qint32 track);
    void closeTracksUpTo(qint32 track);

    const WritePlan &m_plan;
    JobMonitor &m_monitor;
    BurnLibrary::WriteOptsPtr m_opts;
    BurnLibrary::DiscPtr m_disc;
    BurnLibrary::SessionPtr m_session;
    std::vector<BurnLibrary::TrackPtr> m_tracks;
    std::vector<BurnLibrary::SourcePtr> m_sources;
    std::vector<std::shared_ptr<TrackFeed::Record>> m_records;
    qint32 m_started = 0; // tracks announced
    qint32 m_closed = 0;  // tracks closed
    std::vector<qint32> m_lastPercent;
    bool m_sessionClosed = false;
};
