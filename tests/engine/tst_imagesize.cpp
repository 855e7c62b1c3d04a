// The image size the engine answers, against the ISO files it writes; and asked while a job runs.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"

#include "engine/writer/iso/ConverterCache.h"
#include "engine/writer/iso/IsoImageTree.h"

#include <QtCore>

#include <random>

using namespace Fixtures;

namespace {
// Names of every length and script, with pieces that ISO 9660 and Joliet cut to the same text.
QString randomName(std::mt19937 &rng) {
    static const QStringList pieces = QStringLiteral("a|Ünïcode|ß|ελληνικά|日本語|😀| |-|_|.|x.txt|"
                                                     "READ.ME|a-b|A B|€é|0123456789|longer part ")
                                          .split(u'|');
    QString name;
    for (int i = std::uniform_int_distribution<int>(1, 24)(rng); i > 0; --i)
        name += pieces[int(rng() % pieces.size())];
    name = QString::fromUtf8(name.trimmed().toUtf8().left(250)).remove(QChar::ReplacementCharacter);
    return name.isEmpty() || name == u'.' || name == ".." ? QStringLiteral("n") : name;
}

// A full first folder (its records then end near a block's end, where a name more or less
// changes the size), folders down to eleven deep, sparse files of megabytes.
void makeSource(const QString &root, std::mt19937 &rng, int depth) {
    static const qint64 sizes[] = {0, 1, 2047, 2048, 2049, 70001};
    QDir().mkpath(root);
    for (int i = int(rng() % 6) + (depth ? 0 : 10 + int(rng() % 30)); i > 0; --i) {
        QFile f(root + u'/' + randomName(rng));
        if (f.open(QIODevice::WriteOnly))
            f.resize(rng() % 50 ? sizes[rng() % std::size(sizes)] : 5 << 20);
    }
    for (int i = depth < 10 ? int(rng() % 3) : 0; i > 0; --i)
        makeSource(root + u'/' + randomName(rng), rng, depth + 1);
}

// One of the image's trees as isoinfo lists it: "-J" Joliet, "-R" Rock Ridge, "" ISO 9660.
QByteArray isoinfoNames(const QString &iso, const QString &tree) {
    return ReadBack::run("isoinfo", tree.isEmpty() ? QStringList{"-f", "-i", iso}
                                                   : QStringList{tree, "-f", "-i", iso});
}
} // namespace

class tst_ImageSize : public QObject {
    Q_OBJECT
private slots:
    void sizeIsTheWrittenSize() {
        QTemporaryDir scratch(QDir("/dev/shm").exists() ? "/dev/shm/tessaly-XXXXXX" : "");
        const QString extra = scratch.filePath("extra.bin");
        writeFile(extra, pseudoRandom(5000, 7));
        CDWriterPro engine;
        EngineProbe probe(&engine);
        for (int seed = 0; seed < 220; ++seed) {
            std::mt19937 rng(seed);
            const QString src = scratch.filePath(QString::number(seed)), iso = src + ".iso";
            makeSource(src, rng, 0);
            engine.setISOFileSystem(rng() % 4 ? 1 : 0);
            engine.ClearISOImage();
            probe.added.clear();
            engine.AddISODirectory(rng() % 2 ? "\\" : "\\in", src + "/*.*");
            // A user's changes afterwards, with the size asked for between some of them.
            QString log;
            for (int i = int(rng() % 5); i > 0; --i) {
                const QString item = probe.added.value(int(rng() % (probe.added.size() + 1)), "\\");
                const QString name = randomName(rng);
                if (const int op = int(rng() % 3); op == 0)
                    engine.AddISOFile(item + u'\\' + name, extra);
                else if (op == 1)
                    engine.RemoveISOItem(item);
                else if (!engine.RenameISOFile(item, name))
                    engine.RenameISODirectory(item, name);
                log += QStringLiteral(" [%1 %2 %3]").arg(QString::number(i), item, name);
                if (rng() % 2)
                    engine.ISOImageBlocks();
            }
            const qint32 blocks = engine.ISOImageBlocks();
            // Labels set after the size, as the write dialog sets them: they change no size.
            engine.setVolumeIdentifier(randomName(rng));
            engine.setPublisherIdentifier(randomName(rng));
            QVERIFY(engine.CreateISOFile(iso));
            QVERIFY2(QFileInfo(iso).size() == qint64(blocks) * 2048,
                     qPrintable(QStringLiteral("seed %1: %2 blocks; changes%3; items %4")
                                    .arg(seed)
                                    .arg(blocks)
                                    .arg(log, probe.added.join(u' '))));
            // Now and then the names made through reused converters against fresh ones.
            if (seed % 40 == 0) {
                ConverterCache::install(false);
                QVERIFY(engine.CreateISOFile(src + "-fresh.iso"));
                ConverterCache::install(true);
                for (const char *tree : {"-J", "-R", ""})
                    QCOMPARE(isoinfoNames(iso, tree), isoinfoNames(src + "-fresh.iso", tree));
            }
            QDir(src).removeRecursively();
        }
        QVERIFY(ConverterCache::reusedOpens() > ConverterCache::realOpens());
    }

    // A media event during a write has the frame recalculate the size.
    void sizeAskedWhileAJobRuns() {
        EngineRig rig(QStringLiteral("CD-R 80"), EngineRig::Data);
        CDWriterPro &engine = rig.engine;
        const QString src = rig.env.appFolder() + "/src";
        for (int i = 0; i < 40; ++i)
            writeFile(src + QStringLiteral("/f%1").arg(i), pseudoRandom(70000, i));
        engine.AddISODirectory("\\", src + "/*.*");
        const qint32 before = engine.ISOImageBlocks();
        engine.setVolumeIdentifier("DURING"); // as the write dialog does: no new layout for that
        const quint64 layouts = IsoImageTree::sizeLayouts();
        QList<qint32> answers;
        // A media event's recalculation, with the other file system too: the job's size is known.
        auto ask = [&] {
            answers.append(engine.ISOImageBlocks());
            engine.setISOFileSystem(1 - engine.ISOFileSystem());
        };
        connect(&engine, &CDWriterPro::TrackWriteStatus, &engine, ask);
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QVERIFY(!answers.isEmpty());
        QCOMPARE(answers, QList<qint32>(answers.size(), before));
        QCOMPARE(IsoImageTree::sizeLayouts(), layouts);
        engine.setISOFileSystem(1); // the job is over: a change is laid out anew
        engine.AddISOFile("\\one more", src + "/f0");
        QVERIFY(engine.ISOImageBlocks() > before);
        QCOMPARE(IsoImageTree::sizeLayouts(), layouts + 1);
    }
};

QTEST_GUILESS_MAIN(tst_ImageSize)
#include "tst_imagesize.moc"
