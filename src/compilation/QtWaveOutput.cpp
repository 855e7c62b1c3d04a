#include "QtWaveOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>
#include <cstring>

namespace {
// The sample format of a PCM (1) or floating-point (3) wave, or Unknown.
QAudioFormat::SampleFormat sampleFormat(const WaveChunks::Format &f) {
    if (f.wFormatTag == 3 && f.wBitsPerSample == 32)
        return QAudioFormat::Float;
    if (f.wFormatTag != 1)
        return QAudioFormat::Unknown;
    switch (f.wBitsPerSample) {
    case 8:
        return QAudioFormat::UInt8;
    case 16:
        return QAudioFormat::Int16;
    case 32:
        return QAudioFormat::Int32;
    default:
        return QAudioFormat::Unknown;
    }
}
} // namespace

QtWaveOutput::QtWaveOutput(QObject *window, Done done)
    : WaveOutput(window, std::move(done)) {}

QtWaveOutput::~QtWaveOutput() {
    if (m_sink)
        m_sink->stop();
}

bool QtWaveOutput::open(const WaveChunks &wave, QString *error) {
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    if (device.isNull()) {
        *error = QStringLiteral("No sound device was found: the track can't be played.");
        return false;
    }
    QAudioFormat format;
    format.setSampleRate(int(wave.format.nSamplesPerSec));
    format.setChannelCount(wave.format.nChannels);
    format.setSampleFormat(sampleFormat(wave.format));
    if (format.sampleFormat() == QAudioFormat::Unknown || !device.isFormatSupported(format)) {
        *error = QStringLiteral("The sound device can't play this wave format.");
        return false;
    }
    m_bytesPerSecond = qint64(wave.format.nSamplesPerSec) * wave.format.nBlockAlign;
    m_blockAlign = wave.format.nBlockAlign;
    m_feed = std::make_unique<Feed>(this);
    m_feed->open(QIODevice::ReadOnly);
    m_sink = std::make_unique<QAudioSink>(device, format);
    m_sink->start(m_feed.get());
    if (m_sink->error() != QAudio::NoError) {
        *error = QStringLiteral("The sound device could not be opened.");
        m_sink.reset();
        m_feed.reset();
        return false;
    }
    return true;
}

void QtWaveOutput::write(int buffer, const char *data, qint64 length) {
    if (length <= 0) {
        post(buffer);
        return;
    }
    m_queue.append({buffer, data, length, 0});
}

void QtWaveOutput::reset() {
    if (m_sink)
        m_sink->reset();
    for (const Queued &q : std::as_const(m_queue))
        post(q.buffer);
    m_queue.clear();
}

bool QtWaveOutput::position(qint64 *bytes) const {
    if (!m_sink)
        return false;
    const qint64 played = m_sink->processedUSecs() * m_bytesPerSecond / 1000000;
    *bytes = played - played % m_blockAlign;
    return true;
}

qint64 QtWaveOutput::Feed::bytesAvailable() const {
    qint64 total = QIODevice::bytesAvailable();
    for (const Queued &q : m_owner->m_queue)
        total += q.length - q.read;
    return total;
}

qint64 QtWaveOutput::Feed::readData(char *data, qint64 maxSize) {
    qint64 given = 0;
    QList<Queued> &queue = m_owner->m_queue;
    while (given < maxSize && !queue.isEmpty()) {
        Queued &q = queue.first();
        const qint64 n = qMin(maxSize - given, q.length - q.read);
        std::memcpy(data + given, q.data + q.read, size_t(n));
        q.read += n;
        given += n;
        if (q.read == q.length) {
            m_owner->post(q.buffer);
            queue.removeFirst();
        }
    }
    return given;
}
