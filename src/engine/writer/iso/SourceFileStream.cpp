#include "SourceFileStream.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

// libisofs names its stream members so that C++ can't spell them; these copies keep the
// layout of struct iso_stream.
struct StreamLayout {
    IsoStreamIface *klass;
    int refcount;
    void *data;
};

// The stream's identity sits in the block libisofs holds, past the part it knows: a layout
// compares every pair of files by it, and one cache line per stream keeps that cheap.
struct StreamBlock {
    StreamLayout layout;
    ino_t serial;
};

// libisofs asks for 2048 bytes at a time; reading the file in larger pieces spares a system
// call per block, which is most of the cost of copying large files.
constexpr qint64 ReadAhead = 256 * 1024;

struct SourceData {
    QByteArray path; // local encoding, for open()
    qint64 size = 0;
    qint64 offset = 0; // bytes handed to libisofs
    int fd = -1;
    std::vector<char> ahead; // read from the file, not yet handed out
    qint64 aheadPos = 0;
    qint64 aheadLen = 0;
};

std::atomic<SourceReadObserver *> g_observer{nullptr};
std::atomic<ino_t> g_serial{1};

SourceData *dataOf(IsoStream *stream) {
    return static_cast<SourceData *>(reinterpret_cast<StreamLayout *>(stream)->data);
}

ino_t serialOf(IsoStream *stream) {
    return reinterpret_cast<StreamBlock *>(stream)->serial;
}

void report(qint32 fileError, const SourceData *s) {
    if (SourceReadObserver *o = g_observer.load())
        o->fileFailed(fileError, QFile::decodeName(s->path));
}

int streamOpen(IsoStream *stream) {
    SourceData *s = dataOf(stream);
    if (s->fd >= 0)
        return ISO_FILE_ALREADY_OPENED;
    // Non-blocking, so that a FIFO put in the file's place can't hold the job in open().
    s->fd = ::open(s->path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    s->offset = 0;
    s->aheadPos = 0;
    s->aheadLen = 0;
    if (s->fd < 0) {
        report(0, s);
        return errno == ENOENT ? ISO_FILE_DOESNT_EXIST : ISO_FILE_ACCESS_DENIED;
    }
    struct stat st {};
    if (fstat(s->fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(s->fd);
        s->fd = -1;
        report(0, s);
        return ISO_FILE_ERROR;
    }
    fcntl(s->fd, F_SETFL, fcntl(s->fd, F_GETFL) & ~O_NONBLOCK);
    if (SourceReadObserver *o = g_observer.load())
        o->fileOpened(QFile::decodeName(s->path));
    return ISO_SUCCESS;
}

int streamClose(IsoStream *stream) {
    SourceData *s = dataOf(stream);
    if (s->fd < 0)
        return ISO_FILE_NOT_OPENED;
    ::close(s->fd);
    s->fd = -1;
    s->ahead = std::vector<char>();
    s->aheadPos = 0;
    s->aheadLen = 0;
    return ISO_SUCCESS;
}

off_t streamSize(IsoStream *stream) {
    return off_t(dataOf(stream)->size);
}

// Fills the read-ahead buffer with the next piece of the file, never past the size the image
// was laid out for. False when the file ends early (it shrank since it was added) or fails.
bool refill(SourceData *s) {
    const qint64 want = std::min(ReadAhead, s->size - s->offset);
    if (qint64(s->ahead.size()) < want)
        s->ahead.resize(size_t(want));
    qint64 got = 0;
    while (got < want) {
        const ssize_t n = ::read(s->fd, s->ahead.data() + got, size_t(want - got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        got += n;
    }
    s->aheadPos = 0;
    s->aheadLen = got;
    return true;
}

int streamRead(IsoStream *stream, void *buf, size_t count) {
    SourceData *s = dataOf(stream);
    if (s->fd < 0)
        return ISO_FILE_NOT_OPENED;
    // Never more than the size the image was laid out for: a file that grew is cut there.
    const qint64 want = std::min<qint64>(qint64(count), s->size - s->offset);
    char *out = static_cast<char *>(buf);
    qint64 got = 0;
    while (got < want) {
        if (s->aheadPos == s->aheadLen && !refill(s)) {
            // Error, or the end of a file that shrank since it was added.
            report(2, s);
            return ISO_FILE_READ_ERROR;
        }
        const qint64 n = std::min(want - got, s->aheadLen - s->aheadPos);
        memcpy(out + got, s->ahead.data() + s->aheadPos, size_t(n));
        s->aheadPos += n;
        s->offset += n;
        got += n;
    }
    if (got > 0 && s->offset == s->size) {
        // The last byte laid out: a file that has more now is told of, not cut silently.
        struct stat st {};
        if (fstat(s->fd, &st) == 0 && st.st_size > s->size)
            if (SourceReadObserver *o = g_observer.load())
                o->fileGrew(QFile::decodeName(s->path), s->size, qint64(st.st_size));
    }
    return int(got);
}

int streamRepeatable(IsoStream *) {
    return 1;
}

void streamId(IsoStream *stream, unsigned int *fsId, dev_t *devId, ino_t *inoId) {
    // An id of our own per stream, so that libisofs never takes two sources for one file.
    *fsId = 0x54535359; // "TSSY"
    *devId = 0;
    *inoId = serialOf(stream);
}

void streamFree(IsoStream *stream) {
    SourceData *s = dataOf(stream);
    if (s->fd >= 0)
        ::close(s->fd);
    delete s;
}

int streamUpdateSize(IsoStream *) {
    return ISO_SUCCESS;
}

IsoStream *streamInput(IsoStream *, int) {
    return nullptr;
}

// libisofs orders every file of the image by stream identity when it lays the image out; our
// serial numbers decide at once, without its general path through get_id.
int streamCompare(IsoStream *a, IsoStream *b) {
    const ino_t x = serialOf(a);
    const ino_t y = serialOf(b);
    return x < y ? -1 : x > y ? 1 : 0;
}

IsoStreamIface g_class = {
    3,           {'t', 's', 's', 'y'}, streamOpen, streamClose, streamSize,
    streamRead,  streamRepeatable,     streamId,   streamFree,  streamUpdateSize,
    streamInput, streamCompare,        nullptr,
};

} // namespace

IsoStream *SourceFileStream::create(const QByteArray &localPath, qint64 size) {
    auto *block = static_cast<StreamBlock *>(malloc(sizeof(StreamBlock)));
    if (!block)
        return nullptr;
    StreamLayout *layout = &block->layout;
    auto *data = new SourceData;
    data->path = localPath;
    data->size = size;
    block->serial = g_serial.fetch_add(1);
    layout->klass = &g_class;
    layout->refcount = 1;
    layout->data = data;
    return reinterpret_cast<IsoStream *>(layout);
}

bool SourceFileStream::isSourceStream(IsoStream *stream) {
    return stream && reinterpret_cast<StreamLayout *>(stream)->klass == &g_class;
}

QString SourceFileStream::sourcePath(IsoStream *stream) {
    return isSourceStream(stream) ? QFile::decodeName(dataOf(stream)->path) : QString();
}

SourceFileStream::SourceState SourceFileStream::inspect(IsoStream *stream, qint64 *now) {
    const SourceData *s = dataOf(stream);
    struct stat st {};
    if (::stat(s->path.constData(), &st) != 0)
        return SourceState::Missing;
    if (!S_ISREG(st.st_mode))
        return SourceState::NotRegular;
    if (now)
        *now = qint64(st.st_size);
    if (st.st_size < s->size)
        return SourceState::Shrunk;
    return st.st_size > s->size ? SourceState::Grew : SourceState::Same;
}

void SourceFileStream::resize(IsoStream *stream, qint64 size) {
    dataOf(stream)->size = size;
}

void SourceFileStream::setObserver(SourceReadObserver *observer) {
    g_observer.store(observer);
}
