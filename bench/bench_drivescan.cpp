// The drive scan at start-up: the engine's InitializeDrives (libburn's scan, the look for
// drives it passed over, the Image Recorder) against `xorriso -devices`, the scan of the tool
// that knows drives best. Runs on one thread.
#include "engine/writer/CDWriterPro.h"

#include "base/App.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace {
double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}
} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir folder;
    App::setPath(folder.path());
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 15;
    QTextStream out(stdout);

    std::vector<double> ours, theirs;
    int drives = 0;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        CDWriterPro engine;
        engine.InitializeDrives(false);
        ours.push_back(double(t.nsecsElapsed()) / 1e6);
        drives = engine.DriveCount();

        QProcess xorriso;
        t.restart();
        xorriso.start(QStringLiteral("xorriso"), {QStringLiteral("-devices")});
        xorriso.waitForFinished(-1);
        theirs.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    const double a = median(ours), b = median(theirs);
    out << "drive scan, median of " << runs << " runs\n"
        << "  InitializeDrives  " << a << " ms (" << drives << " drives)\n"
        << "  xorriso -devices  " << b << " ms\n"
        << "  ratio ours/xorriso " << (b > 0 ? a / b : 0) << "\n";
    return 0;
}
