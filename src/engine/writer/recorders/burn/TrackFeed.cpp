#include "TrackFeed.h"

#include <QCryptographicHash>

#include <cstdlib>
#include <cstring>

TrackFeed::TrackFeed(TrackSource *track, std::shared_ptr<Record> record)
    : m_track(track)
    , m_blockBytes(track->mode() == 0 ? 2352 : 2048)
    , m_total(track->blockCount() * m_blockBytes)
    , m_record(std::move(record)) {
    m_record->total = m_total;
}

BurnLibrary::SourcePtr TrackFeed::create(TrackSource *track, std::shared_ptr<Record> record) {
    // libburn frees the structure with free() when its last reference goes.
    auto *src = static_cast<burn::burn_source *>(calloc(1, sizeof(burn::burn_source)));
    if (!src)
        return nullptr;
    auto *self = new TrackFeed(track, std::move(record));
    src->refcount = 1;
    src->version = 1;
    src->read = nullptr; // version 1: read_xt does the reading
    src->read_xt = readXt;
    src->get_size = getSize;
    src->set_size = setSize;
    src->free_data = freeData;
    src->cancel = cancel;
    src->data = self;
    return BurnLibrary::SourcePtr(src);
}

QByteArray TrackFeed::digest(const char *data, qint64 bytes) {
    return QCryptographicHash::hash(QByteArrayView(data, bytes), QCryptographicHash::Sha1);
}

bool TrackFeed::refill() {
    const qint64 left = m_total - m_fetched;
    if (left <= 0)
        return false;
    const qint64 bytes = std::min<qint64>(DigestBlocks * m_blockBytes, left);
    m_buffer.resize(size_t(bytes));
    if (m_record->stopped.load() || !m_track->read(m_buffer.data(), bytes)) {
        m_record->failed.store(!m_record->stopped.load());
        return false;
    }
    m_record->digests.append(digest(m_buffer.data(), bytes));
    m_fetched += bytes;
    m_pos = 0;
    m_len = size_t(bytes);
    return true;
}

int TrackFeed::read(unsigned char *buffer, int size) {
    int done = 0;
    while (done < size) {
        if (m_pos == m_len) {
            if (m_fetched == m_total) {
                m_record->delivered.fetch_add(done);
                return done; // the end: EOF on the next call
            }
            if (!refill())
                return -1;
        }
        const size_t n = std::min(size_t(size - done), m_len - m_pos);
        std::memcpy(buffer + done, m_buffer.data() + m_pos, n);
        m_pos += n;
        done += int(n);
    }
    m_record->delivered.fetch_add(done);
    return done;
}

int TrackFeed::readXt(burn::burn_source *src, unsigned char *buffer, int size) {
    return static_cast<TrackFeed *>(src->data)->read(buffer, size);
}

off_t TrackFeed::getSize(burn::burn_source *src) {
    return off_t(static_cast<TrackFeed *>(src->data)->m_total);
}

int TrackFeed::setSize(burn::burn_source *, off_t) {
    // The track's size is fixed by its source; libburn pads or cuts on its own side.
    return 1;
}

void TrackFeed::freeData(burn::burn_source *src) {
    delete static_cast<TrackFeed *>(src->data);
    src->data = nullptr;
}

int TrackFeed::cancel(burn::burn_source *src) {
    static_cast<TrackFeed *>(src->data)->m_record->stopped.store(true);
    return 1;
}
