#pragma once

#include "AudioEncoder.h"
#include "AudioOutput.h"
#include "ExtractionJob.h"
#include "RipDrives.h"

#include <QObject>
#include <QStringList>

#include <memory>

class DriveWatcher;
class TrackPlayer;

// The audio ripper: drives, the table of contents, playback and extraction. Lives on the UI
// thread; playback, disc watching and extraction run on threads of their own, and every event
// is emitted on the UI thread. Tracks count from 1, drives from 0.
class CDRipperX : public QObject {
    Q_OBJECT
public:
    enum StatusCode : qint32 {
        StatusPlaying = 0,
        StatusPaused = 1,
        StatusNoDisc = 2,
        StatusLoaded = 4
    };

    explicit CDRipperX(QObject *parent = nullptr);
    ~CDRipperX() override;

    // Drives.
    qint16 DriveCount() const;
    QString DriveLetter(qint32 index) const;
    QString DriveVendor(qint32 index) const;
    QString DriveProduct(qint32 index) const;
    bool SelectDrive(qint32 index);
    // Drives that were found but can't be opened, each with the reason.
    QStringList RefusedDrives() const { return m_refused; }

    // The disc.
    bool ReadTOC();
    qint16 TrackCount() const;
    qint32 TrackStartFrame(qint32 track) const;
    qint32 TrackLengthFrames(qint32 track) const;
    bool TrackIsAudio(qint32 track) const;
    bool TrackCopyProtected(qint32 track) const;
    qint32 TotalFrames() const { return m_toc.totalFrames; }
    static QString FramesToTime(qint32 frames);
    qint16 MaxReadSpeed() const;
    void SetReadSpeed(qint32 value);
    qint32 Status() const;
    void EjectDisc();
    void LoadDisc();

    // Playback.
    qint16 CurrentTrack() const;
    qint32 CurrentFrame() const;
    void PlayTrack(qint32 track);
    void PausePlay();
    void ResumePlay();
    void StopPlay();
    // Where played audio goes; without one, playing tells PlayFailed.
    void SetAudioOutput(std::shared_ptr<AudioOutput> output) { m_output = std::move(output); }

    // Extraction.
    void SetEncoder(std::shared_ptr<AudioEncoder> encoder) { m_encoder = std::move(encoder); }
    bool UseEncoder() const { return m_useEncoder; }
    void setUseEncoder(bool value) { m_useEncoder = value; }
    void ClearExtractionQueue();
    bool AddExtractionTrack(qint32 track, const QString &fileName, qint32 queueId);
    // False when a job runs, the queue is empty or no encoder is set for UseEncoder.
    bool StartExtraction();
    void CancelExtraction();
    bool Extracting() const { return bool(m_job); }
    // Lets a damaged disc be imitated: sees every read before paranoia does.
    void SetReadFilter(ReadFilter filter) { m_filter = std::move(filter); }

    // Called by the job on the UI thread, last.
    void extractionFinished();

signals:
    void ExtractionStart();
    void ExtractingFileStart(const QString &FileName, qint32 StartFrame, qint32 EndFrame,
                             qint16 QueueID);
    void ExtractionStatus(qint32 Status, qint32 CurrentFrame);
    void ExtractingFileEnd();
    void ExtractionEnd();
    // Why the encoder could not create, write or close a file; comes before that file's
    // failure status.
    void EncoderFailed(const QString &Description);
    // Playing could not start; the text says why.
    void PlayFailed(const QString &message);

private:
    const RipTrack *track(qint32 number) const;

    QList<RipDrive> m_drives;
    QStringList m_refused;
    int m_current = -1;
    RipToc m_toc;
    qint16 m_speed = 0;
    std::unique_ptr<DriveWatcher> m_watcher;
    std::unique_ptr<TrackPlayer> m_player;
    std::shared_ptr<AudioOutput> m_output;
    std::shared_ptr<AudioEncoder> m_encoder;
    bool m_useEncoder = false;
    QList<ExtractionItem> m_queue;
    std::unique_ptr<ExtractionJob> m_job;
    ReadFilter m_filter;
};
