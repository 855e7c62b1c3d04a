#pragma once

#include "engine/writer/audio/AudioTrackList.h"
#include "engine/writer/audio/WaveFile.h"
#include "engine/writer/recorders/Recorder.h"

#include <QFile>

#include <functional>

class SourceReadObserver;

// One audio track as the recorder reads it: 2352-byte frames of little-endian PCM, from the
// wave file itself or from the job's cache, the last frame completed with silence. A source
// that fails is reported to the observer by the wave file's name and never padded. Made and
// read on the job's worker thread.
class AudioTrackSource : public TrackSource {
public:
    AudioTrackSource(const AudioTrack &track, SourceReadObserver *observer);

    // Opens the wave file; false, reported as a failure to open (class 0) or to read (class 2),
    // when it is gone or no longer holds the audio it held when it was added.
    bool openWave();
    // From now on the frames come from `cache`, which holds them from `offset` on.
    bool useCache(const QString &cache, qint64 offset);
    // Copies the track's frames, silence included, into `out` with `progress(bytesDone)`
    // after each piece; false when the wave fails (reported) or `out` does.
    bool copyTo(QFile &out, const std::function<bool(qint64)> &progress);

    const AudioTrack &track() const { return m_track; }
    qint32 mode() const override { return 0; }
    qint64 blockCount() const override { return m_track.blocks; }
    bool read(char *buffer, qint64 bytes) override;
    bool breakSource() override;

private:
    bool fail(qint32 fileError);

    AudioTrack m_track;
    SourceReadObserver *m_observer;
    WaveFile m_wave;
    QFile m_cache;
    qint64 m_done = 0; // bytes handed out so far
    bool m_broken = false;
};
