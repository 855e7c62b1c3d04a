// Drives the data-disc engine the way the windows do, for bench/run, and prints what it timed
// as "key=value" lines on standard output. One job per run, so that the caller sees the peak
// memory of exactly that job:
//   tessaly_isobench create TREE OUT.iso   add the tree, lay it out, save the ISO file
//   tessaly_isobench add TREE              AddISODirectory with a listener on every event
//   tessaly_isobench blocks TREE FILE      size of the image, then again after adding FILE
//   tessaly_isobench blocks-uncached ...   the same with every converter opened afresh

#include "engine/writer/CDWriterPro.h"
#include "engine/writer/iso/ConverterCache.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>
#include <ctime>

namespace {

// Stands in for the data window: keeps what every ISOItemAdded says, as the window's tree does.
struct AddedItems {
    QStringList paths;
    qint64 bytes = 0;
};

void print(const char *key, double value) {
    std::printf("%s=%.6f\n", key, value);
}

double seconds(QElapsedTimer &timer) {
    return double(timer.nsecsElapsed()) / 1e9;
}

// Processor time of the whole process: on a machine shared with other work, the figure that
// says what a step costs regardless of how long it waited for a core.
double cpuSeconds() {
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) / 1e9;
}

int usage() {
    std::fprintf(stderr, "usage: tessaly_isobench create TREE OUT.iso | add TREE | "
                         "blocks TREE FILE\n");
    return 2;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() < 2)
        return usage();
    const QString mode = args[0];
    const QString tree = QFileInfo(args[1]).absoluteFilePath();

    CDWriterPro engine;
    if (mode == QLatin1String("blocks-uncached"))
        ConverterCache::install(false);
    engine.setISOFileSystem(1);
    engine.setVolumeIdentifier(QStringLiteral("BENCH"));
    AddedItems added;
    QObject::connect(&engine, &CDWriterPro::ISOItemAdded, &engine,
                     [&added](const QString &, const QString &itemDestPath, const QString &,
                              const QString &, bool, VbDate, qint64 size) {
                         added.paths.append(itemDestPath);
                         added.bytes += size;
                     });
    engine.ClearISOImage();

    QElapsedTimer timer;
    timer.start();
    double cpu = cpuSeconds();
    engine.AddISODirectory(QStringLiteral("\\tree"), tree + QStringLiteral("/*.*"));
    print("add_s", seconds(timer));
    print("add_cpu_s", cpuSeconds() - cpu);
    print("events", double(added.paths.size()));
    print("files", double(engine.ISOFileCount()));
    print("dirs", double(engine.ISODirectoryCount()));
    if (added.paths.isEmpty())
        return 1;

    if (mode == QLatin1String("add"))
        return 0;

    if (mode.startsWith(QLatin1String("blocks"))) {
        if (args.size() < 3)
            return usage();
        timer.restart();
        cpu = cpuSeconds();
        const qint32 before = engine.ISOImageBlocks();
        print("blocks_first_s", seconds(timer));
        print("blocks_first_cpu_s", cpuSeconds() - cpu);
        engine.AddISOFile(QStringLiteral("\\one more file"), QFileInfo(args[2]).absoluteFilePath());
        timer.restart();
        cpu = cpuSeconds();
        const qint32 after = engine.ISOImageBlocks();
        print("blocks_again_s", seconds(timer));
        print("blocks_again_cpu_s", cpuSeconds() - cpu);
        print("blocks_before", before);
        print("blocks_after", after);
        print("converters_opened", double(ConverterCache::realOpens()));
        print("converters_reused", double(ConverterCache::reusedOpens()));
        return after > before ? 0 : 1;
    }

    if (mode == QLatin1String("create")) {
        if (args.size() < 3)
            return usage();
        timer.restart();
        const bool ok = engine.CreateISOFile(QFileInfo(args[2]).absoluteFilePath());
        print("create_s", seconds(timer));
        return ok ? 0 : 1;
    }
    return usage();
}
