#include "WaveOutput.h"
#include "QtWaveOutput.h"

#include <QObject>

namespace {
WaveOutput::Factory &factory() {
    static WaveOutput::Factory made;
    return made;
}
} // namespace

WaveOutput::WaveOutput(QObject *window, Done done)
    : m_window(window)
    , m_done(std::move(done)) {}

WaveOutput::~WaveOutput() = default;

void WaveOutput::setFactory(Factory made) {
    factory() = std::move(made);
}

std::unique_ptr<WaveOutput> WaveOutput::make(QObject *window, Done done) {
    if (factory())
        return factory()(window, std::move(done));
    return std::make_unique<QtWaveOutput>(window, std::move(done));
}

void WaveOutput::post(int buffer) const {
    // A window that is gone takes no more messages.
    if (!m_window)
        return;
    QMetaObject::invokeMethod(
        m_window.data(), [done = m_done, buffer] { done(buffer); }, Qt::QueuedConnection);
}
