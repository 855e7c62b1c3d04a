#include "SoundDeviceOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>
#include <QThread>

#include <cstring>

namespace {
constexpr qint64 QueueLimit = 44100 * 4; // a second of CD audio
}

SoundDeviceOutput::SoundDeviceOutput() = default;

SoundDeviceOutput::~SoundDeviceOutput() {
    close();
    // The sink reads from the buffer, a member: it must be gone before the buffer is.
    if (m_sink && m_sink->thread() == QThread::currentThread()) {
        m_sink->stop();
        delete m_sink.data();
    } else if (m_sink) {
        m_sink->deleteLater();
    }
}

bool SoundDeviceOutput::open(QString *error) {
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    QAudioFormat format;
    format.setSampleRate(44100);
    format.setChannelCount(2);
    format.setSampleFormat(QAudioFormat::Int16);
    if (device.isNull()) {
        *error = QStringLiteral("There is no sound device to play the track on.");
        return false;
    }
    if (!device.isFormatSupported(format)) {
        *error = QStringLiteral("The sound device \"%1\" can't play CD audio.")
                     .arg(device.description());
        return false;
    }
    {
        std::lock_guard lock(m_mutex);
        m_queued.clear();
        m_closed = false;
    }
    if (m_sink)
        m_sink->deleteLater();
    m_sink = new QAudioSink(device, format);
    m_buffer.open(QIODevice::ReadOnly);
    m_sink->start(&m_buffer);
    return true;
}

bool SoundDeviceOutput::write(const char *pcm, qint64 bytes) {
    std::unique_lock lock(m_mutex);
    m_drained.wait(lock, [&] { return m_closed || m_queued.size() < QueueLimit; });
    if (m_closed)
        return false;
    m_queued.append(pcm, bytes);
    return true;
}

void SoundDeviceOutput::close() {
    {
        std::lock_guard lock(m_mutex);
        m_closed = true;
        m_queued.clear();
    }
    m_drained.notify_all();
    if (QAudioSink *sink = m_sink)
        QMetaObject::invokeMethod(sink, &QAudioSink::stop, Qt::QueuedConnection);
}

qint64 SoundDeviceOutput::Buffer::readData(char *data, qint64 max) {
    std::lock_guard lock(m_owner->m_mutex);
    const qint64 n = qMin<qint64>(max, m_owner->m_queued.size());
    std::memcpy(data, m_owner->m_queued.constData(), size_t(n));
    m_owner->m_queued.remove(0, n);
    std::memset(data + n, 0, size_t(max - n)); // silence while nothing is queued
    m_owner->m_drained.notify_all();
    return max;
}
