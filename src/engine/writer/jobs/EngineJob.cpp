#include "EngineJob.h"

#include "AudioTrackSource.h"
#include "FileSink.h"
#include "engine/writer/CDWriterPro.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QThread>
#include <algorithm>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

namespace {
constexpr qint64 Block = 2048;
constexpr qint64 CopyBlocks = 1024;

// The image stream of libisofs as a track. A read of many blocks at once is whole unless the
// stream ends or fails before it; callers never ask past the stream's size, so anything short
// is a failure. Taking many blocks per call also spares the producing thread a wake-up per block.
class BurnSourceTrack : public TrackSource {
public:
    BurnSourceTrack(BurnSource *src, qint32 mode)
        : m_src(src)
        , m_mode(mode)
        , m_blocks(qint64(src->get_size(src)) / Block) {}
    qint32 mode() const override { return m_mode; }
    qint64 blockCount() const override { return m_blocks; }
    bool read(char *buffer, qint64 bytes) override {
        awaitFill(bytes);
        auto *out = reinterpret_cast<unsigned char *>(buffer);
        const int n = m_src->read_xt ? m_src->read_xt(m_src, out, int(bytes))
                                     : m_src->read(m_src, out, int(bytes));
        return n == int(bytes);
    }

private:
    // A reader waiting inside libisofs is woken for every block its writer thread adds, and the
    // two threads then take turns block by block. Reading only once the ring holds the whole
    // piece (or the writer has stopped) lets both run at full speed side by side.
    void awaitFill(qint64 bytes) const {
        auto *ring = reinterpret_cast<::burn_source *>(m_src);
        std::chrono::microseconds pause(50);
        for (;;) {
            size_t capacity = 0;
            size_t free = 0;
            if (iso_ring_buffer_get_status(ring, &capacity, &free) != 1)
                return; // ended, failed or not libisofs's ring: the read itself tells
            if (qint64(capacity - free) >= std::min<qint64>(bytes, qint64(capacity) / 2))
                return;
            std::this_thread::sleep_for(pause);
            pause = std::min(pause * 2, std::chrono::microseconds(4000));
        }
    }

    BurnSource *m_src;
    qint32 m_mode;
    qint64 m_blocks;
};

// A file as a track: the image cache, or an ISO file. The last block is completed with zeros
// only where the file itself ends; a file that shrinks while it is read fails.
class FileTrack : public TrackSource {
public:
    FileTrack(QFile &file, qint32 mode, JobMonitor *reportTo, SourceReadObserver *observer)
        : m_file(file)
        , m_mode(mode)
        , m_size(file.size())
        , m_observer(observer) {
        Q_UNUSED(reportTo);
    }
    qint32 mode() const override { return m_mode; }
    qint64 blockCount() const override { return (m_size + Block - 1) / Block; }
    bool breakSource() override {
        m_broken = true;
        return true;
    }
    bool read(char *buffer, qint64 bytes) override {
        if (m_broken) {
            if (m_observer)
                m_observer->fileFailed(2, m_file.fileName());
            return false;
        }
        const qint64 expected = std::min(bytes, m_size - m_done);
        const qint64 got = expected > 0 ? m_file.read(buffer, expected) : 0;
        if (got != expected) {
            if (m_observer)
                m_observer->fileFailed(2, m_file.fileName());
            return false;
        }
        std::fill(buffer + got, buffer + bytes, 0);
        m_done += got;
        return true;
    }

private:
    QFile &m_file;
    qint32 m_mode;
    qint64 m_size;
    qint64 m_done = 0;
    SourceReadObserver *m_observer;
    bool m_broken = false;
};

qint64 steadyMs() {
    static QElapsedTimer clock = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    return clock.elapsed();
}
} // namespace

EngineJob::EngineJob(CDWriterPro *engine, Setup setup, Finisher finisher)
    : m_engine(engine)
    , m_setup(std::move(setup))
    , m_finisher(std::move(finisher)) {
    // From now on, until the job is gone, failures of source files are this job's.
    SourceFileStream::setObserver(this);
    if (!m_setup.logPath.isEmpty()) {
        m_log.setFileName(m_setup.logPath);
        // A log of this job alone, started afresh at each write.
        if (!m_log.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
            m_log.setFileName(QString());
    }
}

EngineJob::~EngineJob() {
    cancel();
    wait();
    m_setup.image.reset();
    SourceFileStream::setObserver(nullptr);
}

// Ends libisofs's writer thread but keeps the stream: freeing it drops references on the
// image's nodes, which the user-interface thread may be taking at the same moment (listing a
// folder while the job runs), so the stream is freed with the job, on that thread.
void EngineJob::stopImageWriter() {
    if (BurnSource *src = m_setup.image.get(); src && src->version >= 1 && src->cancel)
        src->cancel(src);
}

void EngineJob::start() {
    m_thread.reset(QThread::create([this] { run(); }));
    m_thread->setObjectName(QStringLiteral("Tessaly write job"));
    m_thread->start();
}

void EngineJob::wait() {
    if (m_thread)
        m_thread->wait();
}

void EngineJob::post(std::function<void(CDWriterPro *)> event) {
    CDWriterPro *engine = m_engine;
    QMetaObject::invokeMethod(
        engine, [engine, event = std::move(event)] { event(engine); }, Qt::QueuedConnection);
}

void EngineJob::log(const QString &line) {
    QMutexLocker lock(&m_logMutex);
    if (!m_log.isOpen())
        return;
    m_log.write(QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss.zzz  ").toUtf8() +
                line.toUtf8() + '\n');
    m_log.flush();
}

void EngineJob::run() {
    const char *kinds[] = {"Writing the data image", "Writing an ISO file", "Creating an ISO file",
                           "Writing an audio disc",  "Erasing the disc",    "Closing the disc"};
    log(QStringLiteral("%1 (Tessaly %2)")
            .arg(QString::fromLatin1(kinds[int(m_setup.kind)]),
                 m_engine ? m_engine->Version() : QString()));
    const WritePlan &p = m_setup.plan;
    if (m_setup.kind != Kind::CreateIsoFile && cancellable())
        log(QStringLiteral("Settings: test write %1, cache %2, close session %3, finalize %4, "
                           "track mode %5, buffer protection %6, speed %7 kB/s")
                .arg(p.testWrite)
                .arg(m_setup.cacheImage)
                .arg(p.closeSession)
                .arg(p.finalize)
                .arg(m_setup.trackMode)
                .arg(p.burnProof)
                .arg(p.speed));
    for (const auto &[path, sentence] : m_setup.sourceNotices)
        notice(path, sentence);
    JobOutcome outcome;
    if (m_setup.sourceError >= 0) {
        // Found before anything was laid out or sent to the drive.
        fileFailed(m_setup.sourceError, m_setup.sourceErrorPath);
        outcome = sourceFailure(m_setup.sourceErrorPath);
    } else
        switch (m_setup.kind) {
        case Kind::CreateIsoFile:
            outcome = runCreate();
            break;
        case Kind::WriteAudio:
            outcome = runAudio();
            break;
        case Kind::Erase:
            post([](CDWriterPro *e) { emit e->EraseDiscStart(); });
            outcome = m_setup.recorder->erase(m_setup.quick, *this);
            break;
        case Kind::Finish:
            outcome = m_setup.recorder->finish(m_setup.closeDisc, *this);
            break;
        default:
            outcome = runWrite();
            break;
        }
    // The first failed source names the failure, whatever step noticed it.
    {
        QMutexLocker lock(&m_failureMutex);
        if (m_failureClass >= 0 && outcome.kind == JobOutcome::Failed)
            outcome = sourceFailure(m_failurePath);
    }
    stopImageWriter();
    switch (outcome.kind) {
    case JobOutcome::Completed:
        log(QStringLiteral("Finished well."));
        break;
    case JobOutcome::Cancelled:
        log(QStringLiteral("Cancelled by the user."));
        break;
    case JobOutcome::Failed:
        log(QStringLiteral("Failed: error %1, drive code %2: %3 %4")
                .arg(outcome.writeError)
                .arg(outcome.driveError)
                .arg(outcome.errorInfo, outcome.senseInfo));
        break;
    }
    Finisher finisher = m_finisher;
    post([finisher, outcome](CDWriterPro *) { finisher(outcome); });
}

JobOutcome EngineJob::sourceFailure(const QString &path) const {
    return JobOutcome::failed(1, QStringLiteral("A source file could not be read: %1").arg(path));
}

JobOutcome EngineJob::copyImage(FileSink &target, bool reportFiles) {
    BurnSource *src = m_setup.image.get();
    BurnSourceTrack track(src, 1);
    const qint64 total = track.blockCount();
    std::vector<char> buffer(CopyBlocks * Block);
    qint32 lastPercent = -1;
    m_caching = reportFiles;
    auto status = [&](qint64 done) {
        const qint32 percent = total > 0 ? qint32(done * 100 / total) : 100;
        if (percent != lastPercent) {
            lastPercent = percent;
            post([percent](CDWriterPro *e) { emit e->CachingStatus(qint16(percent)); });
        }
    };
    auto finish = [&](JobOutcome outcome) {
        m_caching = false;
        return outcome;
    };
    status(0);
    for (qint64 done = 0; done < total;) {
        if (cancelRequested())
            return finish(JobOutcome::cancelled());
        const qint64 n = std::min(CopyBlocks, total - done);
        if (!track.read(buffer.data(), n * Block))
            return finish(JobOutcome::failed(4, QStringLiteral("The image could not be produced")));
        if (!target.write(buffer.data(), n * Block))
            return finish(JobOutcome::failed(
                2, QStringLiteral("Writing failed: %1").arg(target.errorString())));
        done += n;
        status(done);
    }
    if (!target.commit())
        return finish(JobOutcome::failed(
            2, QStringLiteral("Completing the file failed: %1").arg(target.errorString())));
    log(QStringLiteral("Image of %1 blocks made in %2.").arg(total).arg(target.path()));
    return finish(JobOutcome::completed());
}

JobOutcome EngineJob::runCreate() {
    // A failed or cancelled image leaves nothing behind: the sink removes its hidden file.
    FileSink target;
    if (!target.open(m_setup.isoFile, true))
        return JobOutcome::failed(
            2, QStringLiteral("The file can't be made: %1").arg(target.errorString()));
    return copyImage(target, false);
}

JobOutcome EngineJob::runWrite() {
    if (m_setup.refusal.kind != JobOutcome::Completed)
        return m_setup.refusal;
    WritePlan plan = m_setup.plan;
    std::unique_ptr<TrackSource> track;
    QFile isoFile;
    if (m_setup.kind == Kind::WriteIsoFile) {
        isoFile.setFileName(m_setup.isoFile);
        if (!isoFile.open(QIODevice::ReadOnly)) {
            fileFailed(0, m_setup.isoFile);
            return sourceFailure(m_setup.isoFile);
        }
        track = std::make_unique<FileTrack>(isoFile, m_setup.trackMode, this, this);
    } else {
        track = std::make_unique<BurnSourceTrack>(m_setup.image.get(), m_setup.trackMode);
    }
    plan.tracks = {track.get()};
    // The drive is asked first, as a real one is before anything is cached.
    if (JobOutcome refused = m_setup.recorder->precheck(plan);
        refused.kind != JobOutcome::Completed)
        return refused;

    QFile cache;
    struct CacheRemover {
        QFile &file;
        ~CacheRemover() {
            if (!file.fileName().isEmpty())
                file.remove();
        }
    } remover{cache};
    if (m_setup.cacheImage && m_setup.kind == Kind::WriteImage) {
        cache.setFileName(cacheFile("image"));
        FileSink sink;
        if (!sink.open(cache.fileName(), false))
            return JobOutcome::failed(
                2, QStringLiteral("The cache can't be made: %1").arg(sink.errorString()));
        log(QStringLiteral("Caching the image in %1").arg(cache.fileName()));
        if (JobOutcome cached = copyImage(sink, true); cached.kind != JobOutcome::Completed)
            return cached;
        if (!cache.open(QIODevice::ReadOnly))
            return JobOutcome::failed(2, QStringLiteral("The cache can't be read back"));
        stopImageWriter();
        track = std::make_unique<FileTrack>(cache, m_setup.trackMode, this, this);
        plan.tracks = {track.get()};
    }
    return m_setup.recorder->write(plan, *this);
}

void EngineJob::trackStarted(qint32 trackNumber) {
    log(QStringLiteral("Track %1 starts.").arg(trackNumber));
    m_track.store(trackNumber);
    if (m_setup.kind == Kind::WriteAudio) {
        // Uncached, the wave file is read as its track is written.
        const size_t index = size_t(trackNumber - 1);
        if (!m_setup.cacheImage && index < m_setup.audioTracks.size()) {
            const QString file = m_setup.audioTracks[index].fileName;
            post([file, trackNumber](CDWriterPro *e) {
                emit e->ReadingTrackFile(file, trackNumber - 1, trackNumber);
            });
        }
        return;
    }
    post([](CDWriterPro *e) { emit e->CreatingDirectories(); });
}

QString EngineJob::cacheFile(const char *kind) const {
    QDir().mkpath(m_setup.cacheFolder);
    return QDir(m_setup.cacheFolder)
        .filePath(QStringLiteral("%1-%2-%3.cache")
                      .arg(QLatin1String(kind))
                      .arg(QCoreApplication::applicationPid())
                      .arg(QDateTime::currentMSecsSinceEpoch()));
}

JobOutcome EngineJob::cacheAudio(const std::vector<std::unique_ptr<AudioTrackSource>> &sources,
                                 QFile &cache) {
    cache.setFileName(cacheFile("audio"));
    if (!cache.open(QIODevice::WriteOnly))
        return JobOutcome::failed(
            2, QStringLiteral("The cache can't be made: %1").arg(cache.errorString()));
    log(QStringLiteral("Caching the tracks in %1").arg(cache.fileName()));
    const auto cacheFailed = [&] {
        return JobOutcome::failed(
            2, QStringLiteral("Writing the cache failed: %1").arg(cache.errorString()));
    };
    qint64 total = 0;
    for (const auto &s : sources)
        total += s->blockCount() * AudioTrackList::FrameBytes;
    qint64 before = 0;
    qint32 lastPercent = -1;
    auto status = [&](qint64 done) {
        const qint32 percent = total > 0 ? qint32((before + done) * 100 / total) : 100;
        if (percent != lastPercent) {
            lastPercent = percent;
            post([percent](CDWriterPro *e) { emit e->CachingStatus(qint16(percent)); });
        }
        return !cancelRequested();
    };
    std::vector<qint64> offsets;
    for (size_t i = 0; i < sources.size(); ++i) {
        const qint32 number = qint32(i + 1);
        const QString file = sources[i]->track().fileName;
        m_track.store(number);
        post(
            [file, number](CDWriterPro *e) { emit e->ReadingTrackFile(file, number - 1, number); });
        offsets.push_back(before);
        status(0);
        if (!sources[i]->copyTo(cache, status)) {
            if (cancelRequested())
                return JobOutcome::cancelled();
            return cache.error() != QFileDevice::NoError ? cacheFailed() : sourceFailure(file);
        }
        before += sources[i]->blockCount() * AudioTrackList::FrameBytes;
    }
    if (!cache.flush())
        return cacheFailed();
    cache.close();
    // From now on the tracks are read from the cache, each from where its frames begin.
    for (size_t i = 0; i < sources.size(); ++i) {
        if (!sources[i]->useCache(cache.fileName(), offsets[i]))
            return JobOutcome::failed(2, QStringLiteral("The cache can't be read back"));
    }
    return JobOutcome::completed();
}

JobOutcome EngineJob::runAudio() {
    WritePlan plan = m_setup.plan;
    std::vector<std::unique_ptr<AudioTrackSource>> sources;
    for (const AudioTrack &t : m_setup.audioTracks) {
        sources.push_back(std::make_unique<AudioTrackSource>(t, this));
        plan.tracks.push_back(sources.back().get());
    }
    if (JobOutcome refused = m_setup.recorder->precheck(plan);
        refused.kind != JobOutcome::Completed)
        return refused;
    // Disc at once lays every track out before the first block: each file must still be there
    // and hold the audio it held when it was added, before the drive starts.
    for (size_t i = 0; i < sources.size(); ++i) {
        m_track.store(qint32(i + 1));
        if (!sources[i]->openWave())
            return sourceFailure(sources[i]->track().fileName);
    }
    QFile cache;
    struct CacheRemover {
        QFile &file;
        ~CacheRemover() {
            file.close();
            if (!file.fileName().isEmpty())
                file.remove();
        }
    } remover{cache};
    if (m_setup.cacheImage) {
        if (JobOutcome cached = cacheAudio(sources, cache); cached.kind != JobOutcome::Completed)
            return cached;
    }
    return m_setup.recorder->write(plan, *this);
}

void EngineJob::trackProgress(qint32 trackNumber, qint64 blocksWritten, qint64 blocksToWrite) {
    // A drive that blanks or closes tells how far it is; only a blanking is worth a bar.
    if (m_setup.kind == Kind::Erase || m_setup.kind == Kind::Finish) {
        const qint32 percent =
            blocksToWrite > 0
                ? qint32(std::clamp<qint64>(blocksWritten * 100 / blocksToWrite, 0, 100))
                : 0;
        if (m_setup.kind == Kind::Erase && percent != m_lastPermille) {
            m_lastPermille = percent;
            post([percent](CDWriterPro *e) { emit e->eraseProgress(percent); });
        }
        return;
    }
    // One event per tenth of a per cent is plenty for a progress bar.
    const qint32 permille = blocksToWrite > 0 ? qint32(blocksWritten * 1000 / blocksToWrite) : 1000;
    if (permille == m_lastPermille && blocksWritten != blocksToWrite && blocksWritten != 0)
        return;
    m_lastPermille = permille;
    if (permille % 100 == 0)
        log(QStringLiteral("Track %1: %2 of %3 blocks.")
                .arg(trackNumber)
                .arg(blocksWritten)
                .arg(blocksToWrite));
    const qint32 written = qint32(blocksWritten), toWrite = qint32(blocksToWrite);
    post([trackNumber, written, toWrite](CDWriterPro *e) {
        emit e->TrackWriteStatus(trackNumber, written, toWrite);
    });
}

void EngineJob::closingTrack(qint32 trackNumber) {
    log(QStringLiteral("Closing track %1.").arg(trackNumber));
    m_lastPermille = -1;
    post([trackNumber](CDWriterPro *e) { emit e->ClosingTrack(trackNumber); });
}

void EngineJob::closingSession() {
    log(QStringLiteral("Closing the session."));
    post([](CDWriterPro *e) { emit e->ClosingSession(); });
}

void EngineJob::closingDisc() {
    log(QStringLiteral("Closing the disc."));
    post([](CDWriterPro *e) { emit e->ClosingDisc(); });
}

void EngineJob::fileOpened(const QString &path) {
    const qint32 index = m_filesOpened.fetch_add(1);
    if (!m_caching.load())
        return;
    // Thousands of small files would flood the window: one name per tenth of a second.
    const qint64 now = steadyMs();
    const qint64 last = m_lastFileReport.load();
    if (last >= 0 && now - last < 100)
        return;
    m_lastFileReport.store(now);
    post([path, index](CDWriterPro *e) { emit e->ReadingTrackFile(path, index, 1); });
}

void EngineJob::fileFailed(qint32 fileError, const QString &path) {
    {
        QMutexLocker lock(&m_failureMutex);
        if (m_failureClass >= 0)
            return;
        m_failureClass = fileError;
        m_failurePath = path;
    }
    log(QStringLiteral("Source file error %1: %2").arg(fileError).arg(path));
    const qint32 track = m_track.load();
    post([fileError, path, track](CDWriterPro *e) {
        emit e->ReadingTrackFileError(fileError, path, track);
    });
}

void EngineJob::notice(const QString &path, const QString &sentence) {
    log(sentence);
    post([path, sentence](CDWriterPro *e) { emit e->SourceFileNotice(path, sentence); });
}

void EngineJob::fileGrew(const QString &path, qint64 laidOut, qint64 now) {
    notice(path, QStringLiteral("%1 grew to %2 bytes while the image was made: only its first "
                                "%3 bytes are in the image.")
                     .arg(path)
                     .arg(now)
                     .arg(laidOut));
}

void EngineJob::removeStaleCaches(const QString &cacheFolder) {
    // Cache names carry the pid of the process that made them ("image-PID-MS.cache").
    QDir dir(cacheFolder);
    for (const QString &name : dir.entryList({QStringLiteral("*.cache")}, QDir::Files)) {
        const QStringList parts = name.split(u'-');
        bool ok = false;
        const qint64 pid = parts.size() == 3 ? parts[1].toLongLong(&ok) : 0;
        if (!ok || pid <= 0)
            continue;
        if (::kill(pid_t(pid), 0) != 0 && errno == ESRCH)
            dir.remove(name);
    }
}
