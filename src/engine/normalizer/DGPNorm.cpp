#include "DGPNorm.h"
#include "NormalizeJob.h"

#include <QMetaObject>
#include <QThread>

DGPNorm::DGPNorm(QObject *parent)
    : QObject(parent) {}

DGPNorm::~DGPNorm() {
    if (m_thread) {
        m_cancel.store(true);
        m_thread->wait();
    }
}

bool DGPNorm::Normalize(const QString &SourceFile, const QString &DestinationFile, qint32 Percent) {
    if (m_thread)
        return false;
    m_cancel.store(false);
    m_thread.reset(QThread::create([this, SourceFile, DestinationFile, Percent] {
        NormalizeJob job(SourceFile, DestinationFile, Percent);
        const auto progress = [this](double percent) {
            QMetaObject::invokeMethod(
                this, [this, percent] { emit PercentDone(percent); }, Qt::QueuedConnection);
        };
        const NormalizeJob::Result result = job.run(progress, m_cancel);
        QMetaObject::invokeMethod(
            this, [this, result] { finish(result.ok, result.silent, result.error); },
            Qt::QueuedConnection);
    }));
    m_thread->start();
    return true;
}

void DGPNorm::finish(bool ok, bool silent, const QString &error) {
    // The worker has posted its last event; once it is joined a handler may start the next run.
    m_thread->wait();
    m_thread.reset();
    m_lastSilent = ok && silent;
    if (ok)
        emit PercentDone(100.0);
    else
        emit NormalizeFailed(error);
}
