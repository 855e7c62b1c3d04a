#pragma once

#include <QString>

// Where played audio goes: CD audio, 44,100 Hz, 2 channels, 16-bit little-endian. Opened,
// written and closed on the player's worker thread; write() may block to pace the playing.
class AudioOutput {
public:
    virtual ~AudioOutput() = default;
    // False, with a sentence for the user in `error`, when there is nothing to play on.
    virtual bool open(QString *error) = 0;
    virtual bool write(const char *pcm, qint64 bytes) = 0;
    virtual void close() = 0;
};
