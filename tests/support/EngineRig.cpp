#include "EngineRig.h"

#include "base/IniFile.h"
#include "engine/writer/recorders/DriveScanner.h"
#include "engine/writer/recorders/burn/BurnWriter.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtCore>

EngineRig::EngineRig(const QString &medium, Job job, const QStringList &settings) {
    prepareImageRecorder(medium, settings);
    engine.InitializeDrives(false);
    engine.SelectDrive(engine.DriveCount() - 1);
    engine.MoveTray(true);
    setJob(job);
}

EngineRig::EngineRig(Drive drive) {
    if (drive != FileDrive)
        return;
    disc = media.filePath("disc.iso");
    DriveScanner::clearPseudoDrives();
    DriveScanner::addPseudoDrive(disc);
    engine.InitializeDrives(false);
    DriveScanner::clearPseudoDrives();
    engine.SelectDrive(0);
    setJob(Data);
}

void EngineRig::setJob(Job job) {
    m_data = job == Data;
    engine.ClearAudioTracks();
    engine.ClearISOImage();
    engine.setCacheImage(false);
    engine.setTestWrite(false);
    engine.setUseFileModifiedDate(true);
    engine.setTrackMode(m_data ? 1 : 0);
    engine.setFinalizeDisc(!m_data);
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

EngineRig::~EngineRig() {
    BurnWriter::setBeforeVerifyHook({});
}

bool EngineRig::write(int timeoutMs) {
    probe.events.clear();
    if (!engine.WriteDisc())
        return false;
    return probe.waitForEnd(timeoutMs);
}

QString EngineRig::eject(QString suffix) {
    if (suffix.isEmpty())
        suffix = m_data ? QStringLiteral("iso") : QStringLiteral("cue");
    engine.MoveTray(false);
    const QDir ejected(ImageRecorder::ejectedFolder());
    const QStringList files = ejected.entryList({"*." + suffix}, QDir::Files, QDir::Time);
    return files.isEmpty() ? QString() : ejected.filePath(files.first());
}

QString EngineRig::descriptorText() const {
    QFile f(ImageRecorder().mediumFile());
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

void EngineRig::prepareImageRecorder(const QString &medium, const QStringList &settings) {
    QDir().mkpath(ImageRecorder::folder());
    setting("BlankMedium", medium);
    setting("EmulateSpeed", "0");
    for (const QString &s : settings)
        setting(s.section(u'=', 0, 0), s.section(u'=', 1));
}

void EngineRig::setting(const QString &key, const QString &value) {
    IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", key, value);
}
