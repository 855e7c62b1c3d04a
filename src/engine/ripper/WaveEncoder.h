#pragma once

#include "AudioEncoder.h"

#include <sndfile.h>

#include <memory>

// Writes each file as a 16-bit stereo wave through libsndfile. Used on one thread at a time.
class WaveEncoder : public AudioEncoder {
public:
    bool open(const QString &path) override;
    bool write(const char *pcm, qint64 bytes) override;
    bool close() override;
    void abort() override;

private:
    struct Closer {
        void operator()(SNDFILE *f) const { sf_close(f); }
    };
    std::unique_ptr<SNDFILE, Closer> m_file;
    QString m_path;
};
