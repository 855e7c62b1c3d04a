#pragma once

#include "EngineProbe.h"
#include "TestEnvironment.h"

#include "engine/writer/CDWriterPro.h"

#include <QtCore>

// An engine on the test's thread with its drive chosen and a job set as the write dialog sets
// it; `settings` make the Image Recorder fail on purpose ("FailAtBlock=20").
struct EngineRig {
    enum Job { Audio, Data };
    enum Drive { FileDrive, NoDrive };
    explicit EngineRig(const QString &medium = QStringLiteral("CD-R 80"), Job job = Audio,
                       const QStringList &settings = {});
    // A data job on a file drive over the fresh file `disc`; or no drive, for the image alone.
    explicit EngineRig(Drive drive);
    ~EngineRig();
    // False when the write didn't start or no ending event came.
    bool write(int timeoutMs = 120000);
    // The newest ejected file with this suffix ("cue", "iso", "tdisc"), by default the job's data.
    QString eject(QString suffix = QString());
    QString descriptorText() const;
    static void setting(const QString &key, const QString &value);
    static void prepareImageRecorder(const QString &medium, const QStringList &settings);
    TestEnvironment env;
    QTemporaryDir media; // holds `disc`, the file under the file drive
    QString disc;
    CDWriterPro engine;
    EngineProbe probe{&engine};
    QList<qint32> statusTracks; // lTrackNumber of each TrackWriteStatus
    QList<qint32> closedTracks; // lTrackNumber of each ClosingTrack
    QStringList readFiles;      // sFileName of each ReadingTrackFile
    qint32 errorTrack = 0;      // lTrackNumber of ReadingTrackFileError
    QString senseInfo;          // sSenseInfo of WriteError

private:
    void setJob(Job job);
    bool m_data = false;
};
