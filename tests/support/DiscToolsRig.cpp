#include "DiscToolsRig.h"
#include "Fixtures.h"
#include "ReadBack.h"

#include "app/modDeclarations.h"

#include <QtTest>
#include <QtWidgets>

DiscToolsRig::DiscToolsRig(const QString &medium, Job job, const QStringList &settings)
    : EngineRig(medium, job, settings) {
    glngDriveIndex = engine.DriveCount() - 1;
    FormRegistry::setContext({&engine, nullptr, nullptr});
}

DiscToolsRig::~DiscToolsRig() {
    FormRegistry::setContext({});
}

bool DiscToolsRig::writeData(const QString &volume, int bytes) {
    const QString path = sources.filePath(volume + QStringLiteral(".bin"));
    Fixtures::writeFile(path, Fixtures::pseudoRandom(bytes, bytes));
    engine.ClearISOImage();
    engine.setTrackMode(1);
    engine.setFinalizeDisc(false);
    engine.setVolumeIdentifier(volume);
    engine.AddISOFile(QStringLiteral("\\") + volume + QStringLiteral(".bin"), path);
    return write();
}

bool DiscToolsRig::writeAudio() {
    const QString path = sources.filePath(QStringLiteral("track.wav"));
    Fixtures::writeFile(path, Fixtures::cdWave(Fixtures::rampPcm(44100 * 5)));
    engine.ClearAudioTracks();
    engine.setTrackMode(0);
    engine.setFinalizeDisc(true);
    return engine.AddAudioTrack(path, 1) && write();
}

QStringList DiscToolsRig::prompts() const {
    QStringList said;
    for (const MessageBoxService::Request &r : answers.boxes)
        said << r.prompt;
    return said;
}

QString isoinfoVolumeId(const QString &image) {
    const QString info =
        QString::fromLocal8Bit(ReadBack::run(QStringLiteral("isoinfo"), {"-d", "-i", image}));
    const auto match =
        QRegularExpression(QStringLiteral("^Volume id: (.*)$"), QRegularExpression::MultilineOption)
            .match(info);
    return match.hasMatch() ? match.captured(1).trimmed() : QString();
}
