#pragma once

#include "engine/writer/audio/AudioTrackList.h"
#include "engine/writer/iso/IsoLibrary.h"
#include "engine/writer/iso/SourceFileStream.h"
#include "engine/writer/recorders/Recorder.h"

#include <QFile>
#include <QMutex>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

class CDWriterPro;
class AudioTrackSource;
class FileSink;
class QThread;

// One job of the engine: a data image, an ISO file or audio tracks to a recorder, an image to an
// ISO file, erasing or closing a disc. Made on the UI thread, run on a worker thread of its own;
// every event is posted to the engine, so it is emitted on the UI thread in order. Ends with
// exactly one call of the finisher, posted last.
class EngineJob : public JobMonitor, public SourceReadObserver {
public:
    enum class Kind { WriteImage, WriteIsoFile, CreateIsoFile, WriteAudio, Erase, Finish };
    struct Setup {
        Kind kind = Kind::WriteImage;
        Recorder *recorder = nullptr;    // WriteImage, WriteIsoFile
        IsoLibrary::BurnSourcePtr image; // WriteImage, CreateIsoFile
        QString isoFile;                 // WriteIsoFile: the file to write; CreateIsoFile: target
        std::vector<AudioTrack> audioTracks; // WriteAudio
        bool quick = false;                  // Erase
        bool closeDisc = false;              // Finish
        WritePlan plan;
        qint32 trackMode = 1;
        bool cacheImage = false;
        QString cacheFolder;
        QString logPath; // empty: no log
        // What the look at the image's sources before the layout found (WriteImage,
        // CreateIsoFile): a failure ends the job before its first block.
        qint32 sourceError = -1;
        QString sourceErrorPath;
        QList<QPair<QString, QString>> sourceNotices;
        // A write the engine refused before anything was laid out: the job ends with it.
        JobOutcome refusal = JobOutcome::completed();
    };
    // Called on the UI thread when the job has ended, before its ending event.
    using Finisher = std::function<void(const JobOutcome &)>;

    EngineJob(CDWriterPro *engine, Setup setup, Finisher finisher);
    ~EngineJob() override;

    // The image stream is made after the job, so that the job already watches the sources that
    // libisofs's writer thread starts reading at once.
    void setImage(IsoLibrary::BurnSourcePtr image) { m_setup.image = std::move(image); }
    void start();
    void cancel() { m_cancel.store(true); }
    Kind kind() const { return m_setup.kind; }
    // Writes stop on request; erasing and closing run to their end as a drive's do.
    bool cancellable() const { return kind() != Kind::Erase && kind() != Kind::Finish; }
    void wait();
    // Cache files of jobs whose process is gone (a crash, a power cut) are removed.
    static void removeStaleCaches(const QString &cacheFolder);

    // JobMonitor
    void trackStarted(qint32 trackNumber) override;
    void trackProgress(qint32 trackNumber, qint64 blocksWritten, qint64 blocksToWrite) override;
    void closingTrack(qint32 trackNumber) override;
    void closingSession() override;
    void closingDisc() override;
    bool cancelRequested() const override { return m_cancel.load(); }
    void log(const QString &line) override;

    // SourceReadObserver
    void fileOpened(const QString &path) override;
    void fileFailed(qint32 fileError, const QString &path) override;
    void fileGrew(const QString &path, qint64 laidOut, qint64 now) override;

private:
    void run();
    JobOutcome runWrite();
    JobOutcome runCreate();
    JobOutcome runAudio();
    // Reads every track into one cache file with CachingStatus and ReadingTrackFile, then
    // points the sources at it.
    JobOutcome cacheAudio(const std::vector<std::unique_ptr<AudioTrackSource>> &sources,
                          QFile &cache);
    QString cacheFile(const char *kind) const; // a fresh name in the cache folder
    // Copies the image stream into a file with CachingStatus; false on failure or cancel.
    JobOutcome copyImage(FileSink &target, bool reportFiles);
    void stopImageWriter();
    JobOutcome sourceFailure(const QString &what) const;
    void post(std::function<void(CDWriterPro *)> event);
    void notice(const QString &path, const QString &sentence);

    CDWriterPro *m_engine;
    Setup m_setup;
    Finisher m_finisher;
    std::unique_ptr<QThread> m_thread;
    std::atomic<bool> m_cancel{false};
    QFile m_log;
    QMutex m_logMutex;
    qint32 m_lastPermille = -1;
    // Read and written on libisofs's writer thread as well as the job's.
    std::atomic<qint32> m_filesOpened{0};
    std::atomic<qint64> m_lastFileReport{-1};
    std::atomic<bool> m_caching{false};
    mutable QMutex m_failureMutex;
    qint32 m_failureClass = -1;
    QString m_failurePath;
    std::atomic<qint32> m_track{1}; // the track whose source is being read
};
