#pragma once

#include <QString>
#include <QStringList>

#include <QList>
#include <QPair>

#include <atomic>
#include <memory>
#include <vector>

// What a recorder says about the medium in it. Codes are those of CDWriterPro's tables.
struct MediumState {
    qint32 mediaType = 254; // no medium loaded
    qint32 discStatus = 3;
    qint32 lastSessionStatus = 2;
    qint32 discType = 255;
    qint32 sessionCount = 0;
    qint32 freeBlocks = 0;
    qint32 capacityBlocks = 0;
    // Where the next session's track starts (the "next writable address"); -1 when the medium
    // takes no more data.
    qint32 nextWritableAddress = -1;
    // Where the newest session's first track begins and what it holds (audio is 0, data 1 for
    // Mode 1 or 2 for Mode 2 XA); -1 on a disc without sessions.
    qint32 lastSessionStart = -1;
    qint32 lastSessionMode = -1;
    qint32 maxWriteSpeed = 0; // kB/s
    // Each data session's first block and the blocks really written from there (a session cut
    // by a failed write holds fewer than its directory lists); empty when the drive can't tell.
    QList<QPair<qint32, qint32>> sessionExtents;
    bool present() const { return mediaType != 254; }
    // Sessions holding data, without the empty one an appendable disc counts.
    qint32 writtenSessions() const { return sessionCount - (nextWritableAddress >= 0 ? 1 : 0); }
};

// One track of a write: its mode, its length and where its bytes come from. Read on the worker
// thread.
class TrackSource {
public:
    virtual ~TrackSource() = default;
    virtual qint32 mode() const = 0;       // 0 audio (2352-byte frames), 1 or 2 data (2048)
    virtual qint64 blockCount() const = 0; // blocks the track will hold
    // Fills `buffer` with the next `bytes` bytes (a whole number of blocks). False when the
    // source failed; the source has then reported why through the job's monitor.
    virtual bool read(char *buffer, qint64 bytes) = 0;
    // Makes every later read fail as an unreadable source file does, reported the same way.
    // For a recorder that is told to fail on purpose; false when this source can't.
    virtual bool breakSource() { return false; }
};

// What a write asks of the recorder.
struct WritePlan {
    std::vector<TrackSource *> tracks;
    // The address the first track was laid out for (multisession images are made for it).
    qint32 startAddress = 0;
    bool testWrite = false;
    bool closeSession = true;
    bool finalize = false;
    bool burnProof = false;
    qint32 speed = 0; // kB/s, 0 the drive's best
};

// How a job ended, in the terms of the WriteError event.
struct JobOutcome {
    enum Kind { Completed, Cancelled, Failed };
    Kind kind = Completed;
    qint32 writeError = 0;
    qint32 driveError = 0;
    QString errorInfo;
    QString senseInfo;

    static JobOutcome completed() { return {}; }
    static JobOutcome cancelled() { return {Cancelled, 0, 0, {}, {}}; }
    static JobOutcome failed(qint32 writeError, const QString &info) {
        return {Failed, writeError, 0, info, {}};
    }
    // A failure the drive reported: WriteError 3 with its drive code and sense data.
    static JobOutcome driveFailure(qint32 driveCode, const QString &info, const QString &sense) {
        return {Failed, 3, driveCode, info, sense};
    }
};

// The job's side of a recorder operation: progress goes out, cancellation comes in. Called on
// the worker thread.
class JobMonitor {
public:
    virtual ~JobMonitor() = default;
    virtual void trackStarted(qint32 trackNumber) = 0;
    virtual void trackProgress(qint32 trackNumber, qint64 blocksWritten, qint64 blocksToWrite) = 0;
    virtual void closingTrack(qint32 trackNumber) = 0;
    virtual void closingSession() = 0;
    virtual void closingDisc() = 0;
    virtual bool cancelRequested() const = 0;
    virtual void log(const QString &line) = 0;
};

// A recorder behind CDWriterPro: a physical drive through libburn or the Image Recorder. The
// inquiry and medium members are called on the UI thread; write(), readBlocks() on the worker
// thread while a job runs (the engine runs one job at a time per recorder).
class Recorder {
public:
    virtual ~Recorder() = default;

    virtual QString letter() const = 0;
    virtual QString vendor() const = 0;
    virtual QString product() const = 0;
    // The firmware revision as the drive reports it; empty when it reports none.
    virtual QString revision() const { return {}; }
    virtual bool isRecorder() const = 0;
    // True for a recorder that only exists in this program (its media events come from no
    // kernel, so it is watched by looking).
    virtual bool isVirtual() const { return false; }
    virtual bool capability(qint32 code) const = 0;
    // The speeds the disc in the drive takes, in kB/s, the quickest first.
    virtual QList<qint32> writeSpeeds() const = 0;

    virtual MediumState medium() const = 0;
    virtual void moveTray(bool close) = 0;
    // Locks or unlocks the tray against the eject button; false when the drive has no lock.
    virtual bool lockTray(bool) { return false; }
    virtual bool trayLocked() const { return false; }
    // Cheap: a text that changes with the medium (put in, taken out, swapped); empty when the
    // drive holds none. Media events are made from its changes.
    virtual QString mediumIdentity() const = 0;

    // Reads whole 2048-byte blocks of the medium's data (for importing a session).
    virtual bool readBlocks(qint32 lba, qint32 count, char *buffer) = 0;

    // What the drive answers before a write: Completed when it would take the plan, else the
    // failure it reports (no medium, a closed disc, too little space, a wrong track mode).
    virtual JobOutcome precheck(const WritePlan &plan) const = 0;
    // Writes the plan's tracks as one session at the next writable address. Returns how the
    // job ended; the medium is left as a real drive would leave it.
    virtual JobOutcome write(const WritePlan &plan, JobMonitor &monitor) = 0;
    // Blanks a rewritable medium; closes what stands open. Later jobs; refused by default.
    virtual JobOutcome erase(bool quick, JobMonitor &monitor);
    virtual JobOutcome finish(bool closeDisc, JobMonitor &monitor);

    // One job at a time on a drive, whichever engine runs it: a job claims its drives first and
    // gives them back at its end. False when another job holds the drive. Any thread.
    bool tryClaim() {
        bool expected = false;
        return m_claimed.compare_exchange_strong(expected, true);
    }
    void releaseClaim() { m_claimed.store(false); }
    bool claimed() const { return m_claimed.load(); }

private:
    std::atomic<bool> m_claimed{false};
};
