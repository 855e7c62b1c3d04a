#pragma once

#include <QtGlobal>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

// Runs a size layout of the image on a worker thread while the calling UI thread keeps serving
// timers, paints and posted events (never user input), so that sizing a large image never
// freezes a window. One layout at a time. Lives on the UI thread.
class ImageSizer {
public:
    ImageSizer() = default;
    ImageSizer(const ImageSizer &) = delete;
    ImageSizer &operator=(const ImageSizer &) = delete;
    ~ImageSizer();

    // A layout hands its answer to `publish` as soon as it has one, so that the caller goes on
    // while the layout frees what it made; the next settle() waits for that.
    using Publish = std::function<void(qint64)>;
    using Layout = std::function<void(const Publish &publish)>;
    // The layout's answer (0 when it published none). Off the UI thread, or without an
    // application object, it runs right here.
    qint64 run(const Layout &layout);
    // Serves events until a layout that is under way has answered (a call made from inside one).
    void wait();
    // Blocks until no layout runs: whoever changes or reads the tree calls this first, since
    // libisofs reads the tree on the worker.
    void settle();

private:
    struct Job {
        std::thread thread;
        std::atomic<bool> done{false}; // the answer is in `result`
        qint64 result = 0;
    };
    void serveUntilDone(const std::shared_ptr<Job> &job, bool atLeastOnce);
    void finish(const std::shared_ptr<Job> &job);

    std::shared_ptr<Job> m_job;
};
