#include "RipperRig.h"

#include "Fixtures.h"

#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

#include <cmath>
#include <thread>

namespace {
// A tone that changes with the track, so that every track and byte order is told apart, with
// some noise: paranoia matches reads by their content, which a pure tone repeats.
QByteArray tone(int samples, double hz) {
    QByteArray pcm(samples * 4, '\0');
    quint32 noise = quint32(hz);
    auto next = [&noise] { return int((noise = noise * 1664525u + 1013904223u) >> 23) - 256; };
    for (int i = 0; i < samples; ++i) {
        const auto left = qint16(12000 * std::sin(2 * M_PI * hz * i / 44100) + next());
        const auto right = qint16(9000 * std::sin(2 * M_PI * hz * 1.5 * i / 44100 + 1) + next());
        qToLittleEndian(left, pcm.data() + 4 * i);
        qToLittleEndian(right, pcm.data() + 4 * i + 2);
    }
    return pcm;
}
} // namespace

RipperRig::RipperRig() {
    const QList<int> samples = {198450, 308700, 5 * 44100 + 1234};
    for (int i = 0; i < samples.size(); ++i) {
        pcm.append(tone(samples[i], 440.0 * (i + 1)));
        const QString path = writer.env.appFolder() + QStringLiteral("/t%1.wav").arg(i + 1);
        Fixtures::writeFile(path, Fixtures::cdWave(pcm.last()));
        writer.engine.AddAudioTrack(path, i + 1);
    }
    if (!writer.write())
        qWarning("RipperRig: the disc was not written");
    ripper = std::make_unique<CDRipperX>();
    ripper->SelectDrive(ripper->DriveCount() - 1);
    CDRipperX *r = ripper.get();
    QObject::connect(r, &CDRipperX::ExtractionStart, r, [this] { events << "Start"; });
    QObject::connect(
        r, &CDRipperX::ExtractingFileStart, r,
        [this](const QString &file, qint32, qint32, qint16 id) {
            events << QStringLiteral("FileStart %1 %2").arg(id).arg(QFileInfo(file).fileName());
        });
    QObject::connect(r, &CDRipperX::ExtractionStatus, r, [this](qint32 status, qint32) {
        if (status != 7) {
            statuses << status;
            events << QStringLiteral("Status %1").arg(status);
        }
    });
    QObject::connect(r, &CDRipperX::ExtractingFileEnd, r, [this] { events << "FileEnd"; });
    QObject::connect(r, &CDRipperX::ExtractionEnd, r, [this] { events << "End"; });
}

QString RipperRig::cue() const {
    const QDir tray(ImageRecorder::trayFolder());
    const QStringList cues = tray.entryList({"*.cue"}, QDir::Files);
    return cues.isEmpty() ? QString() : tray.filePath(cues.first());
}

bool RipperRig::waitForEnd() {
    return QTest::qWaitFor([this] { return events.contains("End"); }, 120000);
}

bool RipperRig::waitForStatus(qint32 status) {
    return QTest::qWaitFor([this, status] { return ripper->Status() == status; }, 10000);
}

bool HoldingEncoder::open(const QString &path) {
    current = QFileInfo(path).fileName();
    return WaveEncoder::open(path);
}

bool HoldingEncoder::write(const char *pcm, qint64 bytes) {
    for (int i = 0; current == holdIn && i < 2000 && !cancelled.load(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return WaveEncoder::write(pcm, bytes);
}

QByteArray wavePcm(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = f.readAll();
    // Chunks after the RIFF header: id, little-endian size, body padded to an even length.
    for (qsizetype at = 12; at + 8 <= bytes.size();) {
        const quint32 size = qFromLittleEndian<quint32>(bytes.constData() + at + 4);
        if (bytes.mid(at, 4) == "data")
            return bytes.mid(at + 8, size);
        at += 8 + size + (size & 1);
    }
    return {};
}
