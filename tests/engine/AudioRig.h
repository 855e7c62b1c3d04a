#pragma once

#include "EngineProbe.h"
#include "TestEnvironment.h"

#include "engine/writer/CDWriterPro.h"

#include <QList>
#include <QString>

// An engine with the Image Recorder selected and a blank disc of the given kind in its tray,
// set for an audio disc as the write dialog sets it. Lives on the test's thread.
struct AudioRig {
    explicit AudioRig(const QString &medium = QStringLiteral("CD-R 80"));
    // Writes the track list and waits for the ending event; false when the write didn't start.
    bool write();
    // Ejects the disc; the path of the ejected file with this suffix ("cue", "iso", "tdisc").
    QString eject(const QString &suffix = QStringLiteral("cue"));
    // Sets a key of the Image Recorder's settings.
    static void setting(const QString &key, const QString &value);

    TestEnvironment env;
    CDWriterPro engine;
    EngineProbe probe{&engine};
    QList<qint32> statusTracks; // lTrackNumber of each TrackWriteStatus
    QList<qint32> closedTracks; // lTrackNumber of each ClosingTrack
    QStringList readFiles;      // sFileName of each ReadingTrackFile
    qint32 errorTrack = 0;      // lTrackNumber of ReadingTrackFileError
    QString senseInfo;          // sSenseInfo of WriteError
};
