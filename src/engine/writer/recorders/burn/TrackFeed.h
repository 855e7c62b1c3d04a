#pragma once

#include "BurnLibrary.h"
#include "engine/writer/recorders/Recorder.h"

#include <QByteArray>
#include <QList>

#include <atomic>
#include <memory>
#include <vector>

// A track of the plan as a libburn source: libburn's fifo thread pulls the track's bytes
// through it, and it keeps a digest of every run of blocks it handed out, so that the session
// can be read back and compared. Made on the worker thread; read on libburn's fifo thread.
class TrackFeed {
public:
    static constexpr qint64 DigestBlocks = 32;

    // What the writer keeps of a feed; it outlives the source.
    struct Record {
        // Digests of each run of DigestBlocks blocks delivered, in order. Complete once libburn
        // has taken the whole track.
        QList<QByteArray> digests;
        // The track failed to deliver its bytes.
        std::atomic<bool> failed{false};
        // Ends deliveries: the next read reports a failure, so that libburn stops.
        std::atomic<bool> stopped{false};
        // Bytes libburn has taken; the track is whole only when they are all of it.
        std::atomic<qint64> delivered{0};
        qint64 total = 0;
    };

    // The source owns the feed: it lives until libburn drops its last reference.
    static BurnLibrary::SourcePtr create(TrackSource *track, std::shared_ptr<Record> record);
    static QByteArray digest(const char *data, qint64 bytes);

private:
    TrackFeed(TrackSource *track, std::shared_ptr<Record> record);
    int read(unsigned char *buffer, int size);
    bool refill();

    static int readXt(burn::burn_source *src, unsigned char *buffer, int size);
    static off_t getSize(burn::burn_source *src);
    static int setSize(burn::burn_source *src, off_t size);
    static void freeData(burn::burn_source *src);
    static int cancel(burn::burn_source *src);

    TrackSource *m_track;
    qint32 m_blockBytes;
    qint64 m_total;
    qint64 m_fetched = 0;
    std::vector<char> m_buffer;
    size_t m_pos = 0, m_len = 0;
    std::shared_ptr<Record> m_record;
};
