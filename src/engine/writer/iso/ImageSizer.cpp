#include "ImageSizer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace {
bool onEventThread() {
    const QCoreApplication *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}
} // namespace

ImageSizer::~ImageSizer() {
    settle();
}

qint64 ImageSizer::run(const std::function<qint64()> &layout) {
    settle();
    if (!onEventThread())
        return layout();
    auto job = std::make_shared<Job>();
    job->thread = std::thread([job, layout] {
        job->result = layout();
        job->done = true;
    });
    m_job = job;
    // Events posted before the call are served even when the layout is quick, so a caller
    // sees the same behaviour whatever the image's size.
    serveUntilDone(job, true);
    return job->result;
}

void ImageSizer::wait() {
    if (const std::shared_ptr<Job> job = m_job)
        serveUntilDone(job, false);
}

void ImageSizer::settle() {
    if (const std::shared_ptr<Job> job = m_job)
        finish(job);
}

void ImageSizer::serveUntilDone(const std::shared_ptr<Job> &job, bool atLeastOnce) {
    if (atLeastOnce || !job->done) {
        // A short poll rather than a signal from the worker: every waiter (an outer call and
        // one made from an event served meanwhile) sees the end without knowing the others.
        QEventLoop loop;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            if (job->done)
                loop.quit();
        });
        poll.start(2);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    finish(job);
}

void ImageSizer::finish(const std::shared_ptr<Job> &job) {
    if (job->thread.joinable())
        job->thread.join();
    if (m_job == job)
        m_job.reset();
}
