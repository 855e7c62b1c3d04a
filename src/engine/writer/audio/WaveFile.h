#pragma once

#include <QString>
#include <memory>

class QIODevice;
struct sf_private_tag;

// A wave file of CD audio (PCM, 44,100 Hz, 16 bits, two channels) opened for reading, and the
// judgement of whether a file is one. Any valid RIFF layout is accepted; anything else, or a
// file whose data chunk claims more than the file holds, is refused. Not thread-bound: one
// object is used by one thread at a time.
class WaveFile {
public:
    enum class Status {
        Ok,
        CannotOpen, // the file is missing or unreadable
        NotCdAudio, // a sound file, but not 44.1 kHz 16-bit stereo PCM
        Malformed,  // not a wave file, or its chunks don't add up
    };

    WaveFile();
    ~WaveFile();
    WaveFile(const WaveFile &) = delete;
    WaveFile &operator=(const WaveFile &) = delete;

    // Opens a file, or a device that stays alive while the object reads from it.
    Status open(const QString &path);
    Status open(QIODevice *device);
    void close();

    // Audio frames of 4 bytes (two 16-bit samples).
    qint64 frames() const { return m_frames; }
    qint64 bytes() const { return m_frames * 4; }
    // Reads up to `count` frames as little-endian interleaved samples into `buffer`; returns the
    // frames read, fewer only at the end or on a read failure (then `failed()` is true).
    qint64 readFrames(char *buffer, qint64 count);
    bool failed() const { return m_failed; }

    // Judges a file without keeping it open.
    static Status judge(const QString &path);

    // The size the RIFF chunks declare for the audio data, or -1 when the layout is broken
    // (no RIFF/WAVE header, a chunk running past the end, no data chunk, data cut short).
    static qint64 declaredDataBytes(QIODevice *device);

private:
    struct Closer {
        void operator()(sf_private_tag *file) const;
    };
    std::unique_ptr<QIODevice> m_ownedDevice;
    QIODevice *m_device = nullptr;
    std::unique_ptr<sf_private_tag, Closer> m_sndfile;
    qint64 m_frames = 0;
    bool m_failed = false;
};
