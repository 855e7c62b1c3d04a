#include "BenchAudioDisc.h"

#include "engine/writer/CDWriterPro.h"

#include <QElapsedTimer>
#include <QEventLoop>

bool writeAudioDisc(const QStringList &waves, double *ms) {
    CDWriterPro engine;
    engine.InitializeDrives(false);
    engine.SelectDrive(engine.DriveCount() - 1);
    engine.MoveTray(false);
    engine.MoveTray(true);
    for (int t = 0; t < waves.size(); ++t)
        engine.AddAudioTrack(waves[t], t + 1);
    engine.setTrackMode(0);
    engine.setCacheImage(false);
    engine.setFinalizeDisc(true);
    QEventLoop loop;
    bool ok = false;
    QObject::connect(&engine, &CDWriterPro::WriteComplete, &loop, [&] {
        ok = true;
        loop.quit();
    });
    QObject::connect(&engine, &CDWriterPro::WriteError, &loop, &QEventLoop::quit);
    QElapsedTimer t;
    t.start();
    if (!engine.WriteDisc())
        return false;
    loop.exec();
    if (ms)
        *ms = double(t.nsecsElapsed()) / 1e6;
    return ok;
}
