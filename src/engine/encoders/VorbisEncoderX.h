#pragma once

#include "EncodedFile.h"
#include "engine/ripper/AudioEncoder.h"

#include <atomic>
#include <memory>

// Ogg Vorbis files through libvorbisenc's managed bit rate and libogg. The rates are set on the
// UI thread in kbit/s, 0 for the encoder's own choice, and taken by each file as it opens; the
// file is encoded on the extraction's encoding thread.
class VorbisEncoderX : public AudioEncoder {
public:
    VorbisEncoderX();
    ~VorbisEncoderX() override;

    qint32 NominalBitrate() const { return m_nominal; }
    void setNominalBitrate(qint32 v) { m_nominal = v; }
    qint32 MinBitrate() const { return m_min; }
    void setMinBitrate(qint32 v) { m_min = v; }
    qint32 MaxBitrate() const { return m_max; }
    void setMaxBitrate(qint32 v) { m_max = v; }

    // Whether libvorbisenc takes the present rates for CD audio; the reason when it does not.
    bool settingsAccepted(QString *why = nullptr) const;

    bool open(const QString &path) override;
    bool write(const char *pcm, qint64 bytes) override;
    bool close() override;
    void abort() override;
    QString errorText() const override { return m_error; }
    std::unique_ptr<AudioEncoder> clone() const override;

private:
    struct State;
    bool drain();
    bool fail(const QString &why);

    std::atomic<qint32> m_nominal{128}, m_min{0}, m_max{0};
    std::unique_ptr<State> m_state;
    EncodedFile m_file;
    QString m_error;
};
