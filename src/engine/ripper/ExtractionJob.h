#pragma once

#include "AudioEncoder.h"
#include "RipDrives.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

class CDRipperX;

// One queued file of an extraction: a track's frames, first to last, into one file.
struct ExtractionItem {
    qint16 track = 0;
    QString fileName;
    qint16 queueId = 0;
    qint32 first = 0;
    qint32 last = 0; // inclusive
};

// Sees every block of frames the drive returns before paranoia does: stands in for a damaged
// disc. Called on the reading thread.
using ReadFilter = std::function<void(qint32 lsn, qint32 frames, char *pcm)>;

// An extraction: made on the UI thread; one thread reads through paranoia, another hands each
// track's audio to a thread of its own that encodes its file. Files are encoded side by side,
// one per core, when the encoder can be cloned; their events are held back so that they arrive
// on the UI thread file after file, in the order of the queue.
class ExtractionJob {
public:
    struct Setup {
        RipDrive drive;
        QList<ExtractionItem> items;
        std::shared_ptr<AudioEncoder> encoder;
        qint16 speed = 0;
        ReadFilter filter;
    };
    ExtractionJob(CDRipperX *ripper, Setup setup);
    ~ExtractionJob(); // cancels and waits

    void start();
    void cancel();
    void wait();

    // Paranoia's callback, on the reading thread; maps its reports to status codes.
    void paranoiaReport(long position, int mode);
    long filteredRead(cdrom_drive_t *d, void *p, lsn_t begin, long sectors);

private:
    struct Message {
        enum Kind { Begin, Pcm, Status, End, Cancelled, Finish } kind;
        int item = 0; // -1: the job's, no file's
        qint32 status = 0;
        qint32 frame = 0;
        QByteArray pcm;
    };
    void read();
    bool readItem(int index, cdrom_paranoia_t *paranoia);
    void encode();
    struct Lane;
    void runLane(Lane &lane);
    // Posts an event of a file, held back while an earlier file is still in work; a file with
    // no number (-1) is posted at once.
    void postFor(int item, std::function<void(CDRipperX *)> event);
    void statusFor(int item, qint32 code, qint32 frame);
    // The file's last event is out: the next file's held events follow.
    void itemDone(int item);
    void slowDown(qint32 frame);
    void push(Message message);
    Message pop();
    void post(std::function<void(CDRipperX *)> event);

    CDRipperX *m_ripper;
    Setup m_setup;
    std::atomic<bool> m_cancel{false};
    std::atomic<int> m_skipItem{-1};
    std::thread m_reader;
    std::thread m_encoder;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Message> m_queue;
    // Encoding threads, by file (behind m_mutex).
    std::map<int, std::unique_ptr<Lane>> m_lanes;
    qint64 m_laneBytes = 0;
    // Events held back, by file (behind m_orderMutex).
    std::mutex m_orderMutex;
    int m_head = 0;
    bool m_dropHeld = false;
    std::set<int> m_done;
    std::map<int, std::vector<std::function<void(CDRipperX *)>>> m_held;
    int m_readingItem = -1; // reading thread only
    // Reading thread only.
    long (*m_driveRead)(cdrom_drive_t *, void *, lsn_t, long) = nullptr;
    cdrom_drive_t *m_cdda = nullptr;
    int m_speed = 0;
    bool m_readErrors = false;
    qint32 m_lastReport = -1;
    qint32 m_lastReportFrame = -1;
};
