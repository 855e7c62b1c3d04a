#include "WaveFile.h"

#include <QFile>
#include <QtEndian>

#include <sndfile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

namespace {

// libsndfile reads through the Qt device, so files and bytes in memory take one path.
sf_count_t vioLength(void *user) {
    return static_cast<QIODevice *>(user)->size();
}

sf_count_t vioSeek(sf_count_t offset, int whence, void *user) {
    auto *d = static_cast<QIODevice *>(user);
    qint64 target = offset;
    if (whence == SEEK_CUR)
        target += d->pos();
    else if (whence == SEEK_END)
        target += d->size();
    if (target < 0 || !d->seek(target))
        return -1;
    return d->pos();
}

sf_count_t vioRead(void *ptr, sf_count_t count, void *user) {
    const qint64 n = static_cast<QIODevice *>(user)->read(static_cast<char *>(ptr), count);
    return n < 0 ? 0 : n;
}

sf_count_t vioWrite(const void *, sf_count_t, void *) {
    return 0;
}

sf_count_t vioTell(void *user) {
    return static_cast<QIODevice *>(user)->pos();
}

quint32 le32(const char *p) {
    return qFromLittleEndian<quint32>(p);
}

} // namespace

void WaveFile::Closer::operator()(sf_private_tag *file) const {
    if (file)
        sf_close(file);
}

WaveFile::WaveFile() = default;
WaveFile::~WaveFile() {
    close();
}

void WaveFile::close() {
    m_sndfile.reset();
    m_device = nullptr;
    m_ownedDevice.reset();
    m_frames = 0;
    m_failed = false;
}

WaveFile::Status WaveFile::open(const QString &path) {
    close();
    // Opened without waiting and taken only when it is a plain file: a FIFO in the wave's place
    // would otherwise hold the caller in open() or read() for ever.
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat st {};
    if (fd < 0)
        return Status::CannotOpen;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return Status::CannotOpen;
    }
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    auto file = std::make_unique<QFile>();
    if (!file->open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return Status::CannotOpen;
    }
    m_ownedDevice = std::move(file);
    const Status s = open(m_ownedDevice.get());
    if (s != Status::Ok)
        m_ownedDevice.reset();
    return s;
}

qint64 WaveFile::declaredDataBytes(QIODevice *device) {
    const qint64 size = device->size();
    if (!device->seek(0) || size < 12)
        return -1;
    char header[12];
    if (device->read(header, 12) != 12 || memcmp(header, "RIFF", 4) != 0 ||
        memcmp(header + 8, "WAVE", 4) != 0)
        return -1;
    qint64 pos = 12;
    qint64 dataBytes = -1;
    bool haveFormat = false;
    // Every chunk must lie within the file; only the RIFF size itself may be wrong, as many
    // writers leave it so.
    while (pos + 8 <= size) {
        char chunk[8];
        if (!device->seek(pos) || device->read(chunk, 8) != 8)
            return -1;
        const qint64 length = le32(chunk + 4);
        const qint64 body = pos + 8;
        if (memcmp(chunk, "data", 4) == 0) {
            if (body + length > size)
                return -1;
            dataBytes = length;
        } else if (memcmp(chunk, "fmt ", 4) == 0) {
            if (body + length > size || length < 16)
                return -1;
            haveFormat = true;
        } else if (body + length > size) {
            return -1;
        }
        pos = body + length + (length & 1);
    }
    return haveFormat ? dataBytes : -1;
}

WaveFile::Status WaveFile::open(QIODevice *device) {
    if (!m_ownedDevice || m_ownedDevice.get() != device)
        close();
    if (!device || !device->isReadable())
        return Status::CannotOpen;
    if (device->isSequential())
        return Status::Malformed;
    const qint64 dataBytes = declaredDataBytes(device);
    if (dataBytes < 0)
        return Status::Malformed;
    device->seek(0);

    SF_VIRTUAL_IO io{vioLength, vioSeek, vioRead, vioWrite, vioTell};
    SF_INFO info{};
    SNDFILE *file = sf_open_virtual(&io, SFM_READ, &info, device);
    if (!file)
        return Status::Malformed;
    std::unique_ptr<sf_private_tag, Closer> guard(file);
    const int major = info.format & SF_FORMAT_TYPEMASK;
    const int minor = info.format & SF_FORMAT_SUBMASK;
    if (major != SF_FORMAT_WAV && major != SF_FORMAT_WAVEX)
        return Status::Malformed;
    if (minor != SF_FORMAT_PCM_16 || info.samplerate != 44100 || info.channels != 2)
        return Status::NotCdAudio;
    // The frames the library found must be the frames the data chunk declares.
    if (qint64(info.frames) * 4 != dataBytes - (dataBytes % 4))
        return Status::Malformed;
    m_device = device;
    m_sndfile = std::move(guard);
    m_frames = info.frames;
    m_failed = false;
    return Status::Ok;
}

qint64 WaveFile::readFrames(char *buffer, qint64 count) {
    if (!m_sndfile || count <= 0)
        return 0;
    std::vector<short> samples(size_t(count) * 2);
    const sf_count_t got = sf_readf_short(m_sndfile.get(), samples.data(), count);
    if (got < 0 || (got < count && sf_error(m_sndfile.get()) != SF_ERR_NO_ERROR))
        m_failed = true;
    for (sf_count_t i = 0; i < got * 2; ++i)
        qToLittleEndian<qint16>(samples[size_t(i)], buffer + i * 2);
    return got < 0 ? 0 : got;
}

WaveFile::Status WaveFile::judge(const QString &path) {
    WaveFile w;
    return w.open(path);
}
