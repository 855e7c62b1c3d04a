#include "AudioRig.h"

#include "base/IniFile.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>

AudioRig::AudioRig(const QString &medium) {
    QDir().mkpath(ImageRecorder::folder());
    setting("BlankMedium", medium);
    setting("EmulateSpeed", "0");
    engine.InitializeDrives(false);
    engine.SelectDrive(engine.DriveCount() - 1);
    engine.MoveTray(true);
    engine.ClearAudioTracks();
    engine.setCacheImage(false);
    engine.setTestWrite(false);
    engine.setTrackMode(0);
    engine.setFinalizeDisc(true);
    engine.setCloseSession(true);
    QObject::connect(&engine, &CDWriterPro::TrackWriteStatus, &probe,
                     [this](qint32 track, qint32, qint32) { statusTracks.append(track); });
    QObject::connect(&engine, &CDWriterPro::ClosingTrack, &probe,
                     [this](qint32 track) { closedTracks.append(track); });
    QObject::connect(&engine, &CDWriterPro::ReadingTrackFile, &probe,
                     [this](const QString &file, qint32, qint32) { readFiles.append(file); });
    QObject::connect(&engine, &CDWriterPro::ReadingTrackFileError, &probe,
                     [this](qint32, const QString &, qint32 track) { errorTrack = track; });
    QObject::connect(
        &engine, &CDWriterPro::WriteError, &probe,
        [this](qint32, qint32, const QString &, const QString &sense) { senseInfo = sense; });
}

bool AudioRig::write() {
    probe.events.clear();
    if (!engine.WriteDisc())
        return false;
    return probe.waitForEnd();
}

QString AudioRig::eject(const QString &suffix) {
    engine.MoveTray(false);
    const QDir ejected(ImageRecorder::ejectedFolder());
    const QStringList files = ejected.entryList({"*." + suffix}, QDir::Files, QDir::Time);
    return files.isEmpty() ? QString() : ejected.filePath(files.first());
}

void AudioRig::setting(const QString &key, const QString &value) {
    IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", key, value);
}
