#pragma once

#include <QString>

// What turns ripped audio into a file: CD audio, 44,100 Hz, 2 channels, 16-bit little-endian.
// One file at a time, each opened, written and closed or aborted on the extraction's encoding
// thread.
class AudioEncoder {
public:
    virtual ~AudioEncoder() = default;
    virtual bool open(const QString &path) = 0;
    virtual bool write(const char *pcm, qint64 bytes) = 0;
    virtual bool close() = 0;
    // Drops the file in work and removes what of it reached the disc.
    virtual void abort() = 0;
};
