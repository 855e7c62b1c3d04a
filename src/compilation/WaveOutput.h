#pragma once

#include "WaveChunks.h"

#include <QPointer>
#include <QString>
#include <functional>
#include <memory>

class QObject;

// The sound device the player writes to: it takes queued buffers and tells of each finished
// one by a message posted to the player's window, never from inside one of its own calls, so
// that the player may close it from that message. The program's device plays through Qt
// Multimedia; tests put in a device that records. UI thread.
class WaveOutput {
public:
    using Done = std::function<void(int buffer)>;
    // Makes the device the player opens; it is told where to post its finished buffers.
    using Factory = std::function<std::unique_ptr<WaveOutput>(QObject *window, Done done)>;

    WaveOutput(QObject *window, Done done);
    virtual ~WaveOutput();
    WaveOutput(const WaveOutput &) = delete;
    WaveOutput &operator=(const WaveOutput &) = delete;

    // Opens the device for a format; false with a text a user understands.
    virtual bool open(const WaveChunks &wave, QString *error) = 0;
    // Queues `length` bytes of buffer `buffer`; the bytes stay where they are until its
    // message has come.
    virtual void write(int buffer, const char *data, qint64 length) = 0;
    // Stops at once; every queued buffer comes back through its message.
    virtual void reset() = 0;
    // The bytes played since the device was opened; false when it is closed.
    virtual bool position(qint64 *bytes) const = 0;
    // Buffers are queued and not yet finished: closing now would cut them off.
    virtual bool busy() const = 0;

    // The factory the player uses; an empty one restores the program's own device.
    static void setFactory(Factory factory);
    static std::unique_ptr<WaveOutput> make(QObject *window, Done done);

protected:
    // Posts the message that `buffer` has finished.
    void post(int buffer) const;

private:
    QPointer<QObject> m_window;
    Done m_done;
};
