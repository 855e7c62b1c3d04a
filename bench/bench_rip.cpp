// Ripping a whole audio disc from the Image Recorder to wave files against `cd-paranoia -B` on
// the same BIN/CUE, and the time the ripper needs to find the drive and read the table of
// contents. Both rippers read through paranoia in full mode.
//   bench_rip [MINUTES=74] [TRACKS=12]
#include "BenchAudioDisc.h"

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

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir folder;
    App::setPath(folder.path());
    const int minutes = argc > 1 ? qMax(1, atoi(argv[1])) : 74;
    const int tracks = argc > 2 ? qMax(1, atoi(argv[2])) : 12;
    QTextStream out(stdout);

    if (!makeAudioDisc(folder.path(), minutes, tracks))
        return 1;

    QElapsedTimer t;
    t.start();
    CDRipperX ripper;
    ripper.SelectDrive(ripper.DriveCount() - 1);
    if (!ripper.ReadTOC())
        return 1;
    const double tocMs = double(t.nsecsElapsed()) / 1e6;

    const QString ours = folder.filePath("ours"), theirs = folder.filePath("theirs");
    QDir().mkpath(ours);
    QDir().mkpath(theirs);
    for (qint32 i = 1; i <= ripper.TrackCount(); ++i)
        ripper.AddExtractionTrack(
            i, ours + QStringLiteral("/Track%1.wav").arg(i, 2, 10, QChar('0')), i);
    QEventLoop loop;
    QObject::connect(&ripper, &CDRipperX::ExtractionEnd, &loop, &QEventLoop::quit);
    t.restart();
    if (!ripper.StartExtraction())
        return 1;
    loop.exec();
    const double oursMs = double(t.nsecsElapsed()) / 1e6;

    const QString cue =
        QDir(ImageRecorder::trayFolder()).entryInfoList({"*.cue"}).value(0).filePath();
    QProcess paranoia;
    paranoia.setWorkingDirectory(theirs);
    paranoia.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    t.restart();
    paranoia.start(QStringLiteral("cd-paranoia"), {"-q", "-c", "-d", cue, "-B", "--", "1-"});
    paranoia.waitForFinished(-1);
    const double theirsMs = double(t.nsecsElapsed()) / 1e6;
    if (paranoia.exitCode() != 0)
        return 1;
    // Both read the same audio: every file the same size.
    qint64 oursBytes = 0, theirsBytes = 0;
    for (const QFileInfo &f : QDir(ours).entryInfoList(QDir::Files))
        oursBytes += f.size();
    for (const QFileInfo &f : QDir(theirs).entryInfoList(QDir::Files))
        theirsBytes += f.size();
    if (oursBytes != theirsBytes) {
        out << "the rips differ in size: " << oursBytes << " and " << theirsBytes << "\n";
        return 1;
    }
    out << "audio disc of " << minutes << " min in " << tracks << " tracks, ripped to waves\n"
        << "  table of contents (drive scan, select, ReadTOC) " << tocMs << " ms\n"
        << "  CDRipperX extraction            " << oursMs << " ms\n"
        << "  cd-paranoia -B                  " << theirsMs << " ms\n"
        << "  ratio ours/cd-paranoia " << (theirsMs > 0 ? oursMs / theirsMs : 0) << "\n";
    return 0;
}
