#pragma once

#include "WaveOutput.h"

#include <QIODevice>
#include <QList>
#include <memory>

class QAudioSink;

// The player's device on the machine's default sound output, through QAudioSink pulling from
// the queued buffers. A machine without a sound device gets a message, not a wait. UI thread.
class QtWaveOutput : public WaveOutput {
public:
    QtWaveOutput(QObject *window, Done done);
    ~QtWaveOutput() override;

    bool open(const WaveChunks &wave, QString *error) override;
    void write(int buffer, const char *data, qint64 length) override;
    void reset() override;
    bool position(qint64 *bytes) const override;
    bool busy() const override { return !m_queue.isEmpty(); }

private:
    // What the sink pulls: the queued buffers in order, each reported once it is read out.
    class Feed : public QIODevice {
    public:
        explicit Feed(QtWaveOutput *owner)
            : m_owner(owner) {}
        bool isSequential() const override { return true; }
        qint64 bytesAvailable() const override;

    protected:
        qint64 readData(char *data, qint64 maxSize) override;
        qint64 writeData(const char *, qint64) override { return -1; }

    private:
        QtWaveOutput *m_owner;
    };
    struct Queued {
        int buffer;
        const char *data;
        qint64 length;
        qint64 read;
    };

    QList<Queued> m_queue;
    std::unique_ptr<Feed> m_feed;
    std::unique_ptr<QAudioSink> m_sink;
    qint64 m_bytesPerSecond = 0;
    int m_blockAlign = 1;
};
