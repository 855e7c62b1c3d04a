#include "RecordingWaveOutput.h"
#include "compilation/WaveOutput.h"

#include <QtCore>

namespace {
RecordingWaveOutput *sink = nullptr;
class Device;
Device *current = nullptr;

class Device : public WaveOutput {
public:
    using WaveOutput::WaveOutput;
    ~Device() override {
        if (m_open && sink)
            --sink->live;
        current = current == this ? nullptr : current;
    }

    bool open(const WaveChunks &, QString *error) override {
        if (!sink->refusal.isEmpty()) {
            *error = sink->refusal;
            return false;
        }
        ++sink->opened;
        ++sink->live;
        m_open = true;
        current = this;
        return true;
    }
    void write(int buffer, const char *data, qint64 length) override {
        m_queue.enqueue({buffer, QByteArray(data, length)});
        if (sink)
            sink->writes.append(length);
        if (sink && !sink->held)
            release(1);
    }
    void reset() override {
        while (!m_queue.isEmpty())
            post(m_queue.dequeue().first);
    }
    bool busy() const override { return !m_queue.isEmpty(); }
    bool position(qint64 *bytes) const override {
        *bytes = m_played;
        return m_open;
    }
    int release(int count) {
        int done = 0;
        for (; done < count && !m_queue.isEmpty(); ++done) {
            const auto [buffer, bytes] = m_queue.dequeue();
            sink->heard.append(bytes);
            m_played += bytes.size();
            post(buffer);
        }
        return done;
    }

private:
    QQueue<QPair<int, QByteArray>> m_queue;
    qint64 m_played = 0;
    bool m_open = false;
};

} // namespace

RecordingWaveOutput::RecordingWaveOutput() {
    sink = this;
    WaveOutput::setFactory([](QObject *window, WaveOutput::Done done) {
        return std::make_unique<Device>(window, std::move(done));
    });
}

RecordingWaveOutput::~RecordingWaveOutput() {
    WaveOutput::setFactory({});
    sink = nullptr;
}

int RecordingWaveOutput::release(int count) {
    return current ? current->release(count) : 0;
}
