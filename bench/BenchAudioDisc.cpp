#include "BenchAudioDisc.h"

#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include "base/IniFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QtEndian>

#include <cmath>

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

bool writeWave(const QString &path, qint64 samples, quint32 seed) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    QByteArray header(
        "RIFF\0\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x44\xac\0\0\x10\xb1\x02\0\x04\0\x10\0"
        "data\0\0\0\0",
        44);
    qToLittleEndian(quint32(samples * 4 + 36), header.data() + 4);
    qToLittleEndian(quint32(samples * 4), header.data() + 40);
    f.write(header);
    QByteArray block(44100 * 4, '\0');
    for (qint64 done = 0; done < samples;) {
        const qint64 n = qMin<qint64>(44100, samples - done);
        for (qint64 i = 0; i < n; ++i) {
            seed = seed * 1103515245u + 12345u;
            const auto v = qint16(8000 * std::sin(double(done + i) * 0.05) + (seed >> 22) - 512);
            qToLittleEndian(v, block.data() + 4 * i);
            qToLittleEndian(qint16(-v), block.data() + 4 * i + 2);
        }
        f.write(block.constData(), n * 4);
        done += n;
    }
    return true;
}

bool makeAudioDisc(const QString &folder, int minutes, int tracks) {
    QDir().mkpath(ImageRecorder::folder());
    IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", "EmulateSpeed", "0");
    // The gaps take their 2 seconds each from the disc's length.
    const qint64 samples = (qint64(minutes) * 60 - 2 * tracks) * 44100 / tracks;
    QStringList waves;
    for (int i = 0; i < tracks; ++i) {
        waves << QDir(folder).filePath(QStringLiteral("src%1.wav").arg(i + 1));
        if (!writeWave(waves.last(), samples, quint32(i + 1)))
            return false;
    }
    const bool written = writeAudioDisc(waves);
    for (const QString &w : waves)
        QFile::remove(w);
    return written;
}
