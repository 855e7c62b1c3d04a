#pragma once

#include "engine/ripper/AudioEncoder.h"

#include <atomic>
#include <memory>

// Windows Media audio (wmav2) in ASF files through libavcodec and libavformat, with
// libswresample turning CD audio into the sample format, rate and channels asked for. The
// settings are set on the UI thread and taken by each file as it opens; the file is encoded on
// the extraction's encoding thread.
class WMAEncoderX : public AudioEncoder {
public:
    // The sample rates by their index, as the settings store them.
    static constexpr int SampleRateCount = 7;
    static qint32 sampleRateHz(qint32 index);

    WMAEncoderX();
    ~WMAEncoderX() override;

    qint32 SampleRate() const { return m_sampleRate; } // index, see sampleRateHz
    void setSampleRate(qint32 v) { m_sampleRate = v; }
    qint32 Bitrate() const { return m_bitrate; } // kbit/s
    void setBitrate(qint32 v) { m_bitrate = v; }
    bool Stereo() const { return m_stereo; }
    void setStereo(bool v) { m_stereo = v; }
    // Kept and stored for the settings; the free encoder has no rights management, so the files
    // are the same with or without it.
    bool EnableDRM() const { return m_drm; }
    void setEnableDRM(bool v) { m_drm = v; }

    // What libavcodec's wmav2 encoder accepts, asked of it once and remembered for the run.
    static bool SampleRateSupported(qint32 index, qint32 bitrate, bool stereo);
    static bool StereoSupported(qint32 bitrate);
    static bool MonoSupported(qint32 bitrate);

    bool open(const QString &path) override;
    bool write(const char *pcm, qint64 bytes) override;
    bool close() override;
    void abort() override;
    QString errorText() const override { return m_error; }
    std::unique_ptr<AudioEncoder> clone() const override;

private:
    struct State;
    bool fail(const QString &why);
    bool encodeFrames(bool flush);

    std::atomic<qint32> m_sampleRate{5}, m_bitrate{128};
    std::atomic<bool> m_stereo{true}, m_drm{false};
    std::unique_ptr<State> m_state;
    QString m_error;
};
