#pragma once

#include "EncodedFile.h"
#include "engine/ripper/AudioEncoder.h"

#include <atomic>
#include <memory>
#include <vector>

struct lame_global_struct;

// MP3 files through libmp3lame. The settings are set on the UI thread and taken by each file
// as it opens; the file itself is encoded on the extraction's encoding thread.
class MP3EncoderX : public AudioEncoder {
public:
    enum ChannelModes : qint32 { Stereo = 0, JointStereo = 1, Mono = 2, DualChannel = 3 };

    MP3EncoderX();
    ~MP3EncoderX() override;

    // 1 normal, 0 studio (slower, better).
    qint32 QualityMode() const { return m_qualityMode; }
    void setQualityMode(qint32 v) { m_qualityMode = v; }
    qint32 Bitrate() const { return m_bitrate; } // kbit/s, constant rate
    void setBitrate(qint32 v) { m_bitrate = v; }
    // 0 is the best quality and the largest file, 9 the smallest.
    qint32 VBRQuality() const { return m_vbrQuality; }
    void setVBRQuality(qint32 v) { m_vbrQuality = v; }
    qint32 VBRMinBitrate() const { return m_vbrMin; }
    void setVBRMinBitrate(qint32 v) { m_vbrMin = v; }
    qint32 VBRMaxBitrate() const { return m_vbrMax; }
    void setVBRMaxBitrate(qint32 v) { m_vbrMax = v; }
    qint32 ChannelMode() const { return m_channelMode; }
    void setChannelMode(qint32 v) { m_channelMode = v; }
    // 0 constant, 1 variable.
    qint32 VBRMode() const { return m_vbrMode; }
    void setVBRMode(qint32 v) { m_vbrMode = v; }

    // Whether libmp3lame takes the present settings; the reason when it does not.
    bool settingsAccepted(QString *why = nullptr) const;

    bool open(const QString &path) override;
    bool write(const char *pcm, qint64 bytes) override;
    bool close() override;
    void abort() override;
    QString errorText() const override { return m_error; }
    std::unique_ptr<AudioEncoder> clone() const override;

private:
    struct LameCloser {
        void operator()(lame_global_struct *l) const;
    };
    using Lame = std::unique_ptr<lame_global_struct, LameCloser>;
    Lame configured(QString *why) const;
    bool fail(const QString &why);

    std::atomic<qint32> m_qualityMode{1}, m_bitrate{128}, m_vbrQuality{0}, m_vbrMin{32},
        m_vbrMax{320}, m_channelMode{Stereo}, m_vbrMode{0};
    Lame m_lame;
    EncodedFile m_file;
    std::vector<short> m_samples;
    std::vector<unsigned char> m_out;
    QString m_error;
};
