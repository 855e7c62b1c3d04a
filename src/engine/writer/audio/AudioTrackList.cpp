#include "AudioTrackList.h"

#include "WaveFile.h"

bool AudioTrackList::add(const QString &fileName, qint32 position) {
    if (count() >= MaxTracks)
        return false;
    WaveFile wave;
    if (wave.open(fileName) != WaveFile::Status::Ok || wave.frames() == 0)
        return false;
    // A track takes a whole disc at most; the 32-bit sizes of the track list must hold it.
    if (wave.bytes() > qint64(360000) * FrameBytes)
        return false;
    AudioTrack track{fileName, wave.bytes(), blocksFor(wave.bytes())};
    const qint32 at = std::clamp(position, 1, count() + 1);
    m_tracks.insert(m_tracks.begin() + (at - 1), std::move(track));
    return true;
}

bool AudioTrackList::remove(qint32 index) {
    if (index < 1 || index > count())
        return false;
    m_tracks.erase(m_tracks.begin() + (index - 1));
    return true;
}

qint64 AudioTrackList::imageBlocks() const {
    qint64 blocks = 0;
    for (const AudioTrack &t : m_tracks)
        blocks += t.blocks + GapBlocks;
    return blocks;
}

qint32 AudioTrackList::blocksFor(qint64 pcmBytes) {
    return qint32(std::max<qint64>((pcmBytes + FrameBytes - 1) / FrameBytes, MinimumBlocks));
}
