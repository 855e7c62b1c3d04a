#pragma once

#include <QString>

#include <memory>

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
    // Why the last open, write or close failed, for the job's log; empty when nothing is known.
    virtual QString errorText() const { return {}; }
    // A fresh encoder with this one's settings, so that files can be encoded side by side;
    // null when files go through this one object, one after the other.
    virtual std::unique_ptr<AudioEncoder> clone() const { return nullptr; }
};
