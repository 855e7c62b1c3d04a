#include "AudioTrackSource.h"

#include "engine/writer/iso/SourceFileStream.h"

#include <vector>

AudioTrackSource::AudioTrackSource(const AudioTrack &track, SourceReadObserver *observer)
    : m_track(track)
    , m_observer(observer) {}

bool AudioTrackSource::fail(qint32 fileError) {
    if (m_observer)
        m_observer->fileFailed(fileError, m_track.fileName);
    return false;
}

bool AudioTrackSource::openWave() {
    m_done = 0;
    switch (m_wave.open(m_track.fileName)) {
    case WaveFile::Status::Ok:
        break;
    case WaveFile::Status::CannotOpen:
        return fail(0);
    default:
        return fail(2);
    }
    // The disc was laid out for the audio the file held when it was added.
    if (m_wave.bytes() != m_track.pcmBytes)
        return fail(2);
    return true;
}

bool AudioTrackSource::useCache(const QString &cache, qint64 offset) {
    m_wave.close();
    m_cache.setFileName(cache);
    m_done = 0;
    return m_cache.open(QIODevice::ReadOnly) && m_cache.seek(offset);
}

bool AudioTrackSource::breakSource() {
    m_broken = true;
    return true;
}

bool AudioTrackSource::read(char *buffer, qint64 bytes) {
    if (m_broken)
        return fail(2);
    const qint64 total = qint64(m_track.blocks) * AudioTrackList::FrameBytes;
    if (bytes < 0 || m_done + bytes > total)
        return fail(2);
    if (m_cache.isOpen()) {
        if (m_cache.read(buffer, bytes) != bytes)
            return fail(2);
        m_done += bytes;
        return true;
    }
    // Audio while the wave has some, silence after its end.
    const qint64 audio = std::clamp<qint64>(m_track.pcmBytes - m_done, 0, bytes);
    if (audio > 0) {
        const qint64 frames = audio / 4;
        if (m_wave.readFrames(buffer, frames) != frames || m_wave.failed())
            return fail(2);
    }
    std::fill(buffer + audio, buffer + bytes, 0);
    m_done += bytes;
    return true;
}

bool AudioTrackSource::copyTo(QFile &out, const std::function<bool(qint64)> &progress) {
    constexpr qint64 Piece = 64 * AudioTrackList::FrameBytes;
    std::vector<char> buffer(Piece);
    const qint64 total = qint64(m_track.blocks) * AudioTrackList::FrameBytes;
    for (qint64 done = 0; done < total;) {
        const qint64 n = std::min(Piece, total - done);
        if (!read(buffer.data(), n))
            return false;
        if (out.write(buffer.data(), n) != n)
            return false;
        done += n;
        if (!progress(done))
            return false;
    }
    return true;
}
