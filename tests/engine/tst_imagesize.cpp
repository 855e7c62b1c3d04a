// The image size the engine answers, against the ISO files it writes; and the size asked for
// while a job owns the image.
#include "EngineProbe.h"
#include "TestEnvironment.h"

#include "base/IniFile.h"
#include "engine/writer/iso/ConverterCache.h"
#include "engine/writer/iso/IsoImageTree.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <random>

using namespace EngineFixtures;

namespace {

// Memory when the machine has it: two hundred ISO files synced to a shared disk would be slow.
QString scratchBase() {
    return QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm")
                                                              : QDir::tempPath();
}

// Names of every length and script, with pairs that ISO 9660 and Joliet cut to the same text.
QString randomName(std::mt19937 &rng) {
    static const QStringList pieces = {"a",          "report", "Ünïcode", "ß",
                                       "ελληνικά",   "日本語", "😀",       " ",
                                       "-",          ".",      "_",       "x.txt",
                                       "READ.ME",    "a-b",    "a_b",     "A B",
                                       "0123456789", "é",      "€",       "longer part of a name "};
    const int parts = std::uniform_int_distribution<int>(1, 12)(rng);
    QString name;
    for (int i = 0; i < parts; ++i)
        name += pieces[std::uniform_int_distribution<int>(0, int(pieces.size()) - 1)(rng)];
    name = name.trimmed();
    while (name.toUtf8().size() > 255)
        name.chop(1);
    if (name.isEmpty() || name == u'.' || name == QStringLiteral(".."))
        name = QStringLiteral("n");
    return name;
}

qint64 randomSize(std::mt19937 &rng) {
    static const qint64 sizes[] = {0, 1, 2047, 2048, 2049, 65536, 300001, 3 << 20};
    return sizes[std::uniform_int_distribution<int>(0, std::size(sizes) - 1)(rng)];
}

void makeSource(const QString &root, std::mt19937 &rng, int depth) {
    QDir().mkpath(root);
    // A full first folder: its records then end near a block's end, where one name more or
    // less changes the size.
    const int files = std::uniform_int_distribution<int>(depth ? 0 : 10, depth ? 5 : 40)(rng);
    for (int i = 0; i < files; ++i) {
        QFile f(root + u'/' + randomName(rng));
        if (!f.open(QIODevice::WriteOnly))
            continue;
        const qint64 size = randomSize(rng);
        if (size > 65536)
            f.resize(size); // sparse
        else
            f.write(pseudoRandom(int(size), int(rng() % 1000)));
    }
    const int dirs = depth < 10 ? std::uniform_int_distribution<int>(0, 2)(rng) : 0;
    for (int i = 0; i < dirs; ++i)
        makeSource(root + u'/' + randomName(rng), rng, depth + 1);
}

// Every item of the image, directories before what they hold.
QList<QPair<QString, bool>> imageItems(CDWriterPro &engine, const QString &dir = "\\") {
    QList<QPair<QString, bool>> direct;
    const auto conn =
        QObject::connect(&engine, &CDWriterPro::EnumISOItems,
                         [&direct](const QString &, const QString &path, const QString &,
                                   const QString &, bool isDir, VbDate, qint64) {
                             direct.append({path, isDir});
                         });
    engine.ListISOItems(dir);
    QObject::disconnect(conn);
    QList<QPair<QString, bool>> all;
    for (const auto &item : direct) {
        all.append(item);
        if (item.second)
            all.append(imageItems(engine, item.first));
    }
    return all;
}

// A user's changes after the first drop: files added anywhere, items removed and renamed, with
// the size asked for between some of them as the frame does.
QString changeAtRandom(CDWriterPro &engine, std::mt19937 &rng, const QString &someFile) {
    QString done;
    const int changes = std::uniform_int_distribution<int>(0, 4)(rng);
    for (int i = 0; i < changes; ++i) {
        const auto items = imageItems(engine);
        const int op = std::uniform_int_distribution<int>(0, 2)(rng);
        if (op == 0 || items.isEmpty()) {
            QString parent = QStringLiteral("\\");
            for (const auto &item : items) {
                if (item.second && rng() % 3 == 0)
                    parent = item.first + u'\\';
            }
            const QString dest = parent + randomName(rng);
            engine.AddISOFile(dest, someFile);
            done += QStringLiteral(" add ") + dest;
        } else {
            const auto &item = items[int(rng() % items.size())];
            if (op == 1) {
                engine.RemoveISOItem(item.first);
                done += QStringLiteral(" remove ") + item.first;
            } else {
                const QString name = randomName(rng);
                if (item.second)
                    engine.RenameISODirectory(item.first, name);
                else
                    engine.RenameISOFile(item.first, name);
                done += QStringLiteral(" rename ") + item.first + QStringLiteral(" to ") + name;
            }
        }
        if (rng() % 2)
            engine.ISOImageBlocks();
    }
    return done;
}

// The names of one of the image's trees ("-J" Joliet, "-R" Rock Ridge, none ISO 9660).
QByteArray isoinfoNames(const QString &iso, const QString &tree) {
    QStringList args{"-f", "-i", iso};
    if (!tree.isEmpty())
        args.prepend(tree);
    return EngineProbe::run("isoinfo", args);
}

} // namespace

class tst_ImageSize : public QObject {
    Q_OBJECT
private slots:
    void sizeIsTheWrittenSize();
    void sizeAskedWhileAJobRuns_data();
    void sizeAskedWhileAJobRuns();
};

void tst_ImageSize::sizeIsTheWrittenSize() {
    constexpr int Trees = 220;
    QTemporaryDir scratch(scratchBase() + QStringLiteral("/tessaly-size-XXXXXX"));
    QVERIFY(scratch.isValid());
    const QString extra = scratch.filePath("extra.bin");
    writeFile(extra, pseudoRandom(5000, 7));
    CDWriterPro engine;
    for (int seed = 0; seed < Trees; ++seed) {
        std::mt19937 rng(seed);
        const QString src = scratch.filePath(QStringLiteral("src%1").arg(seed));
        makeSource(src, rng, 0);
        engine.setISOFileSystem(rng() % 4 ? 1 : 0);
        engine.setUseFileModifiedDate(true);
        engine.ClearISOImage();
        engine.setVolumeIdentifier(randomName(rng));
        engine.AddISODirectory(rng() % 2 ? QStringLiteral("\\") : QStringLiteral("\\in"),
                               src + QStringLiteral("/*.*"));
        const QString changes = changeAtRandom(engine, rng, extra);
        const qint32 blocks = engine.ISOImageBlocks();
        const QString iso = scratch.filePath(QStringLiteral("%1.iso").arg(seed));
        QVERIFY2(engine.CreateISOFile(iso), qPrintable(QStringLiteral("seed %1").arg(seed)));
        const qint64 written = QFileInfo(iso).size();
        if (written != qint64(blocks) * 2048) {
            QStringList tree;
            for (const auto &item : imageItems(engine))
                tree << item.first + (item.second ? QStringLiteral("\\") : QString());
            QFAIL(qPrintable(QStringLiteral("seed %1: %2 blocks answered, %3 bytes written; "
                                            "changes:%4; tree: %5")
                                 .arg(seed)
                                 .arg(blocks)
                                 .arg(written)
                                 .arg(changes, tree.join(u' '))));
        }
        // Every so often, the names made through reused converters against those made with
        // every converter opened afresh, read out of both files by isoinfo.
        if (seed % 40 == 0) {
            ConverterCache::install(false);
            const QString fresh = scratch.filePath(QStringLiteral("%1-fresh.iso").arg(seed));
            const bool made = engine.CreateISOFile(fresh);
            ConverterCache::install(true);
            QVERIFY(made);
            QCOMPARE(QFileInfo(fresh).size(), written);
            for (const QString &names : {QStringLiteral("-J"), QStringLiteral("-R"), QString()})
                QCOMPARE(isoinfoNames(iso, names), isoinfoNames(fresh, names));
            QFile::remove(fresh);
        }
        QFile::remove(iso);
        QDir(src).removeRecursively();
    }
    QVERIFY(ConverterCache::reusedOpens() > ConverterCache::realOpens());
}

void tst_ImageSize::sizeAskedWhileAJobRuns_data() {
    QTest::addColumn<bool>("toDisc");
    QTest::newRow("writing to the Image Recorder") << true;
    QTest::newRow("creating an ISO file") << false;
}

void tst_ImageSize::sizeAskedWhileAJobRuns() {
    QFETCH(bool, toDisc);
    TestEnvironment env;
    QTemporaryDir scratch(scratchBase() + QStringLiteral("/tessaly-size-XXXXXX"));
    CDWriterPro engine;
    EngineProbe probe(&engine);
    if (toDisc) {
        QDir().mkpath(ImageRecorder::folder());
        IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", "BlankMedium", "DVD+R");
        IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", "EmulateSpeed", "0");
        engine.InitializeDrives(false);
        QVERIFY(engine.SelectDrive(engine.DriveCount() - 1));
        engine.MoveTray(true);
    }
    engine.ClearISOImage();
    for (int i = 0; i < 40; ++i)
        writeFile(scratch.filePath(QStringLiteral("src/f%1.bin").arg(i)), pseudoRandom(70000, i));
    engine.AddISODirectory("\\", scratch.filePath("src") + "/*.*");
    const qint32 before = engine.ISOImageBlocks();
    // The write dialog sets the labels just before the write: the size must not be laid out
    // again for that, neither before the job nor during it.
    engine.setVolumeIdentifier("DURING");
    QList<qint32> answers;
    const quint64 layouts = IsoImageTree::sizeLayouts();
    // Asked with the other file system as well: what is known then is the job's own size.
    auto ask = [&] {
        answers.append(engine.ISOImageBlocks());
        engine.setISOFileSystem(1 - engine.ISOFileSystem());
    };
    connect(&engine, &CDWriterPro::TrackWriteStatus, &engine, ask);
    connect(&engine, &CDWriterPro::CachingStatus, &engine, ask);
    const QString iso = scratch.filePath("out.iso");
    if (toDisc) {
        engine.setCloseSession(true);
        engine.setTrackMode(1);
        QVERIFY(engine.WriteDisc());
        QVERIFY(probe.waitForEnd());
        QCOMPARE(probe.endingEvent(), QStringLiteral("WriteComplete"));
    } else {
        QVERIFY(engine.CreateISOFile(iso));
        QCOMPARE(QFileInfo(iso).size(), qint64(before) * 2048);
    }
    QVERIFY(!answers.isEmpty());
    QCOMPARE(answers, QList<qint32>(answers.size(), before));
    QCOMPARE(IsoImageTree::sizeLayouts(), layouts);
    // Once the job is over the tree is the engine's again: a change is laid out anew.
    engine.setISOFileSystem(1);
    engine.AddISOFile("\\one more.bin", scratch.filePath("src/f0.bin"));
    QVERIFY(engine.ISOImageBlocks() > before);
    QCOMPARE(IsoImageTree::sizeLayouts(), layouts + 1);
}

QTEST_GUILESS_MAIN(tst_ImageSize)
#include "tst_imagesize.moc"
