#include "ImageSizer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <pthread.h>

namespace {
bool onEventThread() {
    const QCoreApplication *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}
} // namespace

ImageSizer::~ImageSizer() {
    settle();
}

qint64 ImageSizer::run(const Layout &layout) {
    settle();
    if (!onEventThread()) {
        qint64 result = 0;
        layout([&result](qint64 answer) { result = answer; });
        return result;
    }
    auto job = std::make_shared<Job>();
    job->thread = std::thread([job, layout] {
        pthread_setname_np(pthread_self(), "tessaly-sizer");
        layout([&job](qint64 answer) {
            if (!job->done) {
                job->result = answer;
                job->done = true;
            }
        });
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
    // The worker may still be freeing its layout; settle() joins it before the tree is used.
}

void ImageSizer::finish(const std::shared_ptr<Job> &job) {
    if (job->thread.joinable())
        job->thread.join();
    if (m_job == job)
        m_job.reset();
}
