// The ripper's encoders against the reference programs, each on one core: a long wave to MP3
// CBR 128 (lame -b 128), to Vorbis 128 (oggenc -b 128) and to WMA 128 (ffmpeg's wmav2); and a
// whole audio disc on the Image Recorder ripped and encoded to MP3 by the ripper (files side by
// side on every core) against cd-paranoia followed by lame, one after the other.
//   bench_encode [MINUTES=74] [TRACKS=12]
#include "BenchAudioDisc.h"

#include "engine/encoders/MP3EncoderX.h"
#include "engine/encoders/VorbisEncoderX.h"
#include "engine/encoders/WMAEncoderX.h"
#include "engine/ripper/CDRipperX.h"
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

#include <sys/resource.h>

#include <thread>

namespace {
// Wall-clock and processor milliseconds; the machine is shared, so the processor time is the
// fairer figure of one core's work. Negative when the run failed.
struct Cost {
    double wall = -1, cpu = -1;
};

double cpuMs(int who) {
    rusage u{};
    getrusage(who, &u);
    return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1e3 +
           (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e3;
}

// Measures `work` on this process (RUSAGE_SELF) or on the programs it runs (RUSAGE_CHILDREN).
template<typename F> Cost measure(int who, F work) {
    const double cpu = cpuMs(who);
    QElapsedTimer t;
    t.start();
    if (!work())
        return {};
    return {double(t.nsecsElapsed()) / 1e6, cpuMs(who) - cpu};
}

bool runProgram(const QString &program, const QStringList &args, const QString &folder = {}) {
    QProcess p;
    p.setWorkingDirectory(folder);
    p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    p.setStandardOutputFile(QProcess::nullDevice());
    p.start(program, args);
    p.waitForFinished(-1);
    return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// Our encoder on the wave, fed as the ripper feeds it.
bool encodeWave(AudioEncoder &encoder, const QString &wave, const QString &out) {
    QFile in(wave);
    if (!in.open(QIODevice::ReadOnly) || in.read(44).size() != 44 || !encoder.open(out))
        return false;
    for (;;) {
        const QByteArray block = in.read(25 * 2352);
        if (block.isEmpty())
            break;
        if (!encoder.write(block.constData(), block.size()))
            return false;
    }
    return encoder.close();
}

void report(QTextStream &out, const char *name, Cost ours, Cost theirs) {
    out << "  " << name << ": wall " << ours.wall << " / " << theirs.wall
        << " ms = " << ours.wall / theirs.wall << ", processor " << ours.cpu << " / " << theirs.cpu
        << " ms = " << ours.cpu / theirs.cpu << "\n";
    out.flush();
}
} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir folder;
    App::setPath(folder.path());
    const int minutes = argc > 1 ? qMax(1, atoi(argv[1])) : 74;
    const int tracks = argc > 2 ? qMax(1, atoi(argv[2])) : 12;
    QTextStream out(stdout);

    const QString wave = folder.filePath("long.wav");
    if (!writeWave(wave, qint64(minutes) * 60 * 44100, 7))
        return 1;
    // lame's own choice for 128 kb/s is joint stereo; the ripper's default is plain stereo.
    MP3EncoderX mp3;
    mp3.setChannelMode(MP3EncoderX::JointStereo);
    VorbisEncoderX vorbis;
    WMAEncoderX wma;
    wma.setSampleRate(5);
    const struct {
        const char *name;
        AudioEncoder &ours;
        QString program;
        QStringList args;
        const char *extension;
    } rows[] = {
        {"MP3 CBR 128 / lame -b 128",
         mp3,
         "lame",
         {"--quiet", "-b", "128", wave, "theirs.mp3"},
         ".mp3"},
        {"Vorbis 128 / oggenc -b 128",
         vorbis,
         "oggenc",
         {"-Q", "-b", "128", "-o", "theirs.ogg", wave},
         ".ogg"},
        {"WMA 128 / ffmpeg wmav2 128k",
         wma,
         "ffmpeg",
         {"-v", "error", "-y", "-threads", "1", "-i", wave, "-c:a", "wmav2", "-b:a", "128k",
          "theirs.wma"},
         ".wma"},
    };
    out << minutes << " min of CD audio, one core each\n";
    for (const auto &row : rows) {
        // Theirs first, so that the wave is as warm in the cache for them as for ours.
        const Cost theirs = measure(
            RUSAGE_CHILDREN, [&] { return runProgram(row.program, row.args, folder.path()); });
        const Cost ours = measure(RUSAGE_SELF, [&] {
            return encodeWave(row.ours, wave, folder.filePath("ours") + row.extension);
        });
        if (ours.wall < 0 || theirs.wall < 0) {
            out << row.name << ": failed\n";
            return 1;
        }
        report(out, row.name, ours, theirs);
    }
    QFile::remove(wave);

    // The disc: the same length in tracks, ripped and encoded.
    if (!makeAudioDisc(folder.path(), minutes, tracks))
        return 1;
    CDRipperX ripper;
    ripper.SelectDrive(ripper.DriveCount() - 1);
    if (!ripper.ReadTOC())
        return 1;
    const QString ours = folder.filePath("ours"), theirs = folder.filePath("theirs");
    QDir().mkpath(ours);
    QDir().mkpath(theirs);
    for (qint32 i = 1; i <= ripper.TrackCount(); ++i)
        ripper.AddExtractionTrack(
            i, ours + QStringLiteral("/Track%1.mp3").arg(i, 2, 10, QChar('0')), i);
    auto discEncoder = std::make_shared<MP3EncoderX>();
    discEncoder->setChannelMode(MP3EncoderX::JointStereo);
    ripper.SetEncoder(discEncoder);
    ripper.setUseEncoder(true);
    QEventLoop loop;
    QObject::connect(&ripper, &CDRipperX::ExtractionEnd, &loop, &QEventLoop::quit);
    const Cost oursCost = measure(RUSAGE_SELF, [&] {
        if (!ripper.StartExtraction())
            return false;
        loop.exec();
        return QDir(ours).entryList({"*.mp3"}).size() == tracks;
    });
    const QString cue =
        QDir(ImageRecorder::trayFolder()).entryInfoList({"*.cue"}).value(0).filePath();
    const Cost theirsCost = measure(RUSAGE_CHILDREN, [&] {
        if (!runProgram("cd-paranoia", {"-q", "-c", "-d", cue, "-B", "--", "1-"}, theirs))
            return false;
        for (const QFileInfo &f : QDir(theirs).entryInfoList({"*.wav"}, QDir::Files))
            if (!runProgram("lame", {"--quiet", "-b", "128", f.filePath(),
                                     f.path() + "/" + f.baseName() + ".mp3"}))
                return false;
        return true;
    });
    if (oursCost.wall < 0 || theirsCost.wall < 0)
        return 1;
    out << "disc of " << tracks << " tracks, " << std::thread::hardware_concurrency() << " cores\n";
    report(out, "ripped to MP3 CBR 128 / cd-paranoia then lame", oursCost, theirsCost);
    return 0;
}
