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
#include <memory>
#include <mutex>
#include <thread>

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

// An extraction: made on the UI thread; one thread reads through paranoia, another hands the
// audio to the encoder and posts every event to the ripper, so events arrive on the UI thread
// in the order the files were written.
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
    void cancel() { m_cancel.store(true); }
    void wait();

    // Paranoia's callback, on the reading thread; maps its reports to status codes.
    void paranoiaReport(long position, int mode);
    long filteredRead(cdrom_drive_t *d, void *p, lsn_t begin, long sectors);

private:
    struct Message {
        enum Kind { Begin, Pcm, Status, End, Cancelled, Finish } kind;
        int item = 0;
        qint32 status = 0;
        qint32 frame = 0;
        QByteArray pcm;
    };
    void read();
    bool readItem(int index, cdrom_paranoia_t *paranoia);
    void encode();
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
    // Reading thread only.
    long (*m_driveRead)(cdrom_drive_t *, void *, lsn_t, long) = nullptr;
    cdrom_drive_t *m_cdda = nullptr;
    int m_speed = 0;
    bool m_readErrors = false;
    qint32 m_lastReport = -1;
    qint32 m_lastReportFrame = -1;
};
