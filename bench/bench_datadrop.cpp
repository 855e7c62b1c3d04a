// A large folder dropped into the data window against the engine alone adding the same folder.
// Prints the time until the window is ready again and the longest stall of its event loop
// meanwhile, measured by a 1 ms heartbeat timer, and the engine's own time for the same tree.
//
//   bench_datadrop [--files N] [--rounds R] [--tree DIR]
//
// Without --tree a tree of N files (default 50,000) in folders of 100 is made in a temporary
// folder and removed afterwards. Runs offscreen; every box is answered by its default button.
#include "app/FormRegistry.h"
#include "app/frmSplash.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "app/modMain.h"
#include "base/App.h"
#include "compilation/CompilationWindows.h"
#include "compilation/frmData.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/MessageBoxService.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <algorithm>
#include <cstdio>

namespace {

void makeTree(const QString &root, int files) {
    const int perFolder = 100;
    for (int i = 0; i < files; ++i) {
        const int folder = i / perFolder;
        const QString dir =
            QStringLiteral("%1/d%2/s%3").arg(root).arg(folder / 20).arg(folder % 20);
        if (i % perFolder == 0)
            QDir().mkpath(dir);
        QFile f(QStringLiteral("%1/f%2.txt").arg(dir).arg(i));
        if (f.open(QIODevice::WriteOnly))
            f.write(QByteArray::number(i));
    }
}

struct WindowRound {
    double readyMs = 0;
    double longestStallMs = 0;
    double secondStallMs = 0; // the longest but one: the add itself, without the size
    int files = 0;
    void beat(double ms) {
        if (ms > longestStallMs) {
            secondStallMs = longestStallMs;
            longestStallMs = ms;
        } else {
            secondStallMs = std::max(secondStallMs, ms);
        }
    }
};

double sizeMs = 0;

double engineRound(const QString &tree) {
    CDWriterPro engine;
    QElapsedTimer clock;
    clock.start();
    engine.AddISODirectory(QStringLiteral("\\tree"), tree + QStringLiteral("/*.*"));
    const double added = double(clock.nsecsElapsed()) / 1e6;
    // The window asks for the size once at the end; so does this.
    engine.ISOImageBlocks();
    const double total = double(clock.nsecsElapsed()) / 1e6;
    sizeMs = total - added;
    return total;
}

WindowRound windowRound(const QString &tree) {
    FormRegistry::open(QStringLiteral("frmData"), DefaultInstance<mdiMain>::peek());
    frmData *data = DefaultInstance<frmData>::peek();
    QCoreApplication::processEvents();
    WindowRound round;
    QElapsedTimer beat;
    QTimer heartbeat;
    heartbeat.setInterval(1);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        round.beat(double(beat.nsecsElapsed()) / 1e6);
        beat.restart();
    });
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(tree)});
    QEventLoop loop;
    QTimer::singleShot(0, [&] {
        QWidget *viewport = data->tvwDirectories->viewport();
        const QPointF at(5, 5);
        QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &enter);
        QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QElapsedTimer clock;
        clock.start();
        beat.start();
        heartbeat.start();
        QCoreApplication::sendEvent(viewport, &drop);
        round.readyMs = double(clock.nsecsElapsed()) / 1e6;
        // The stretch from the last beat to the end counts as well.
        round.beat(double(beat.nsecsElapsed()) / 1e6);
        heartbeat.stop();
        loop.quit();
    });
    loop.exec();
    round.files = DefaultInstance<mdiMain>::peek()->Tessaly->ISOFileCount();
    DefaultInstance<frmData>::unload();
    QCoreApplication::processEvents();
    return round;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int files = 50000;
    int rounds = 3;
    QString tree;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--files"))
            files = args.at(i + 1).toInt();
        else if (args.at(i) == QLatin1String("--rounds"))
            rounds = args.at(i + 1).toInt();
        else if (args.at(i) == QLatin1String("--tree"))
            tree = args.at(i + 1);
    }
    QTemporaryDir work;
    if (tree.isEmpty()) {
        tree = work.filePath(QStringLiteral("tree"));
        std::fprintf(stderr, "making %d files...\n", files);
        makeTree(tree, files);
    }
    MessageBoxService::setAnswerer([](const MessageBoxService::Request &r) {
        return MessageBoxService::defaultButton(r.buttons);
    });
    App::setPath(work.filePath(QStringLiteral("app")));
    QDir().mkpath(work.filePath(QStringLiteral("app/Dat")));
    ResetDeclarations();
    gstrINIFile = work.filePath(QStringLiteral("app/Dat/tessaly.ini"));
    registerCompilationWindows();
    modMain::Main();
    for (int i = 0; i < 50 && DefaultInstance<frmSplash>::exists(); ++i)
        DefaultInstance<frmSplash>::peek()->tmrWait_Timer();
    QCoreApplication::processEvents();
    if (!DefaultInstance<mdiMain>::exists()) {
        std::fprintf(stderr, "the frame did not start\n");
        return 1;
    }
    // One unmeasured pass each, so that both find the folder in the page cache.
    engineRound(tree);
    std::vector<double> engineMs, readyMs, stallMs, secondMs, sizes;
    int added = 0;
    for (int r = 0; r < rounds; ++r) {
        engineMs.push_back(engineRound(tree));
        const WindowRound w = windowRound(tree);
        readyMs.push_back(w.readyMs);
        stallMs.push_back(w.longestStallMs);
        secondMs.push_back(w.secondStallMs);
        sizes.push_back(sizeMs);
        added = w.files;
        std::fprintf(stderr,
                     "round %d: engine %.0f ms (of which the size %.0f ms), window %.0f ms, "
                     "longest stall %.1f ms, next %.1f ms\n",
                     r + 1, engineMs.back(), sizeMs, w.readyMs, w.longestStallMs, w.secondStallMs);
    }
    std::printf("files in the image            %d\n", added);
    std::printf("engine alone, median          %.0f ms\n", median(engineMs));
    std::printf("window ready, median          %.0f ms\n", median(readyMs));
    std::printf("ratio window / engine         %.2f\n", median(readyMs) / median(engineMs));
    std::printf("longest stall, median         %.1f ms (goal under 100)\n", median(stallMs));
    std::printf("size of the image, engine     %.0f ms (one call; events are served meanwhile)\n",
                median(sizes));
    std::printf("longest stall but one, median %.1f ms\n", median(secondMs));
    std::printf("longest stall, worst          %.1f ms\n",
                *std::max_element(stallMs.begin(), stallMs.end()));
    gblnCloseWindows = true;
    DefaultInstance<mdiMain>::unload();
    modMain::ReleaseInstance();
    return 0;
}
