#pragma once

#include "engine/ripper/AudioOutput.h"

#include <QByteArray>
#include <QIODevice>
#include <QPointer>

#include <condition_variable>
#include <mutex>

class QAudioSink;

// Plays CD audio on the system's default sound device. The sink lives on the UI thread and
// pulls from a buffer that write() fills from the player's thread, waiting while a second of
// audio is still queued; an empty buffer plays silence, so a pause is quiet.
class SoundDeviceOutput : public AudioOutput {
public:
    SoundDeviceOutput();
    ~SoundDeviceOutput() override;

    bool open(QString *error) override; // UI thread
    bool write(const char *pcm, qint64 bytes) override;
    void close() override;

private:
    class Buffer : public QIODevice {
    public:
        explicit Buffer(SoundDeviceOutput *owner)
            : m_owner(owner) {}
        bool isSequential() const override { return true; }
        qint64 bytesAvailable() const override { return 4096 + QIODevice::bytesAvailable(); }

    protected:
        qint64 readData(char *data, qint64 max) override;
        qint64 writeData(const char *, qint64) override { return -1; }

    private:
        SoundDeviceOutput *m_owner;
    };

    std::mutex m_mutex;
    std::condition_variable m_drained;
    QByteArray m_queued;
    bool m_closed = true;
    Buffer m_buffer{this};
    QPointer<QAudioSink> m_sink;
};
