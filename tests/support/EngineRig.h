#pragma once

#include "EngineProbe.h"
#include "TestEnvironment.h"

#include "engine/writer/CDWriterPro.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// An engine on the test's thread with its drive chosen and a job set as the write dialog sets
// it: the Image Recorder with a blank disc of `medium` by default, failures on purpose through
// its `settings` ("FailAtBlock=20").
struct EngineRig {
    enum Job { Audio, Data };
    enum Drive { FileDrive, NoDrive };
    // A blank `medium` in the Image Recorder's tray.
    explicit EngineRig(const QString &medium = QStringLiteral("CD-R 80"), Job job = Audio,
                       const QStringList &settings = {});
    // A data job on a file drive over the fresh file `disc`; or no drive, for the image alone.
    explicit EngineRig(Drive drive);
    ~EngineRig();

    // Writes the job and waits for the ending event; false when the write didn't start.
    bool write(int timeoutMs = 120000);
    // Ejects the disc; the path of the newest ejected file with this suffix ("cue", "iso",
    // "tdisc"), by default the data file of the job.
    QString eject(QString suffix = QString());
    // The descriptor of the disc in the tray.
    QString descriptorText() const;
    // Sets a key of the Image Recorder's settings.
    static void setting(const QString &key, const QString &value);
    // A blank `medium` and these "key=value" settings for the Image Recorder, no emulated speed.
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
