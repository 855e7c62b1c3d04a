// An audio disc written disc at once on the Image Recorder (three wave files to BIN/CUE, gaps
// and closing included) against `sox`, which turns the same waves into one raw PCM file: the
// same bytes read, converted and written by the tool that knows wave files best. Runs on one
// thread.
#include "BenchAudioDisc.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include "base/App.h"
#include "base/IniFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtEndian>

#include <algorithm>
#include <vector>

namespace {
double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// A wave of CD audio with `seconds` of noise-like samples.
void writeWave(const QString &path, int seconds, quint32 seed) {
    const quint32 bytes = quint32(seconds) * 44100 * 4;
    QByteArray header(
        "RIFF\0\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x44\xac\0\0\x10\xb1\x02\0\x04\0\x10\0"
        "data\0\0\0\0",
        44);
    qToLittleEndian(bytes + 36, header.data() + 4);
    qToLittleEndian(bytes, header.data() + 40);
    QByteArray pcm(int(bytes), Qt::Uninitialized);
    for (quint32 i = 0; i < bytes; ++i) {
        seed = seed * 1103515245u + 12345u;
        pcm[int(i)] = char(seed >> 24);
    }
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(header + pcm);
}
} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir folder;
    App::setPath(folder.path());
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    const int seconds = argc > 2 ? std::max(1, atoi(argv[2])) : 60;
    QTextStream out(stdout);

    QStringList waves;
    for (int i = 0; i < 3; ++i) {
        waves << folder.filePath(QStringLiteral("track%1.wav").arg(i + 1));
        writeWave(waves.last(), seconds, quint32(i + 1));
    }
    QDir().mkpath(ImageRecorder::folder());
    IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", "EmulateSpeed", "0");

    std::vector<double> ours, theirs;
    for (int i = 0; i < runs; ++i) {
        double ms = 0;
        if (!writeAudioDisc(waves, &ms))
            return 1;
        ours.push_back(ms);
        QElapsedTimer t;

        QProcess sox;
        t.restart();
        sox.start(QStringLiteral("sox"),
                  waves + QStringList{"-t", "raw", folder.filePath("sox.raw")});
        sox.waitForFinished(-1);
        theirs.push_back(double(t.nsecsElapsed()) / 1e6);
        if (sox.exitCode() != 0)
            return 1;
    }
    const double a = median(ours), b = median(theirs);
    out << "audio disc of 3 x " << seconds << " s, median of " << runs << " runs\n"
        << "  WriteDisc (Image Recorder, BIN/CUE)  " << a << " ms\n"
        << "  sox waves to raw PCM                 " << b << " ms\n"
        << "  ratio ours/sox " << (b > 0 ? a / b : 0) << "\n";
    return 0;
}
