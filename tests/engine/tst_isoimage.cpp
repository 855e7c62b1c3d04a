// The image tree and ISO files, read back by xorriso and isoinfo.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Fixtures;

constexpr int Piece = 256 * 1024;

class tst_IsoImage : public QObject {
    Q_OBJECT
private slots:
    void createIsoFileReadsBackWithOutsideTools() {
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        const QString longName = QString(120, u'L') + QStringLiteral(".dat");
        const QMap<QString, QByteArray> files = {
            {"top.txt", "top level\n"},
            {"Café Menü/crème brûlée.txt", pseudoRandom(5000, 1)},
            {"Café Menü/empty file", QByteArray()},
            {"deep/a/b/c/d/e/f/g/h/i/leaf.bin", pseudoRandom(70000, 2)},
            {"with spaces/a file with spaces.doc", pseudoRandom(2048, 3)},
            {"with spaces/" + longName, pseudoRandom(100, 4)},
            {"exact block.bin", pseudoRandom(4096, 5)},
            // Sources are read ahead in pieces of 256 KiB: sizes around a piece's end.
            {"piece/less one.bin", pseudoRandom(Piece - 1, 6)},
            {"piece/exact.bin", pseudoRandom(Piece, 7)},
            {"piece/one more.bin", pseudoRandom(Piece + 1, 8)},
            {"piece/two and a half block.bin", pseudoRandom(2 * Piece + 1024, 9)},
        };
        for (auto it = files.begin(); it != files.end(); ++it)
            writeFile(src.filePath(it.key()), it.value());
        const QString single = QFileInfo(src.path() + "/../single.txt").absoluteFilePath();
        writeFile(single, "one\n"); // outside the tree
        e.engine.ClearISOImage();
        e.engine.AddISODirectory("\\tree", src.path() + "\\*.*");
        e.engine.AddISOFile("\\single.txt", single);
        QCOMPARE(e.engine.ISOFileCount(), files.size() + 1);
        QCOMPARE(e.engine.ISODirectoryCount(), 14); // and 9 below deep

        using Setter = void (CDWriterPro::*)(const QString &);
        using Getter = QString (CDWriterPro::*)() const;
        // Each identifier, its members and the line isoinfo shows it on.
        const QList<std::tuple<QString, Setter, Getter, QString>> ids = {
            {"TESSALY_TEST", &CDWriterPro::setVolumeIdentifier, &CDWriterPro::VolumeIdentifier,
             "Volume id: "},
            {"LINUX", &CDWriterPro::setSystemIdentifier, &CDWriterPro::SystemIdentifier,
             "System id: "},
            {"SET 1", &CDWriterPro::setVolumeSetIdentifier, &CDWriterPro::VolumeSetIdentifier,
             "Volume set id: "},
            {"Publisher Name", &CDWriterPro::setPublisherIdentifier,
             &CDWriterPro::PublisherIdentifier, "Publisher id: "},
            {"Preparer Name", &CDWriterPro::setDataPreparerIdentifier,
             &CDWriterPro::DataPreparerIdentifier, "Data preparer id: "},
            {"TESSALY", &CDWriterPro::setApplicationIdentifier, &CDWriterPro::ApplicationIdentifier,
             "Application id: "},
            {"COPYRIGHT.TXT", &CDWriterPro::setCopyrightFileIdentifier,
             &CDWriterPro::CopyrightFileIdentifier, "Copyright File id: "},
            {"ABSTRACT.TXT", &CDWriterPro::setAbstractFileIdentifier,
             &CDWriterPro::AbstractFileIdentifier, "Abstract File id: "},
            {"BIBLIO.TXT", &CDWriterPro::setBiblioFileIdentifier,
             &CDWriterPro::BiblioFileIdentifier, "Bibliographic File id: "}};
        for (const auto &[id, set, get, label] : ids)
            (e.engine.*set)(id);
        e.engine.setISOFileSystem(1);

        QTemporaryDir out;
        const QString iso = out.filePath("image.iso");
        const qint32 blocks = e.engine.ISOImageBlocks();
        QVERIFY(e.engine.CreateISOFile(iso));
        QCOMPARE(QFileInfo(iso).size(), qint64(blocks) * 2048);
        QCOMPARE(e.probe.caching.first(), qint16(0));
        QCOMPARE(e.probe.caching.last(), qint16(100));
        QCOMPARE(e.probe.count("WriteComplete"), 0); // saving a file is not a write

        // Every file with its Rock Ridge name and bytes, as xorriso and bsdtar extract them.
        QMap<QString, QByteArray> want{{"/single.txt", ReadBack::sha256(single)}};
        for (auto it = files.begin(); it != files.end(); ++it)
            want.insert("/tree/" + it.key(), ReadBack::sha256(src.filePath(it.key())));
        for (auto tool : {ReadBack::Tool::Xorriso, ReadBack::Tool::Bsdtar})
            QCOMPARE(ReadBack::fileHashes(tool, iso), want);
        const QString joliet = QString::fromLatin1(
            ReadBack::run("isoinfo", {"-J", "-j", "iso8859-1", "-f", "-i", iso}));
        QVERIFY(joliet.contains("/tree/Café Menü/crème brûlée.txt"));
        QVERIFY(joliet.contains("/single.txt"));
        // The identifiers of the volume descriptor.
        const QString pvd = QString::fromUtf8(ReadBack::run("isoinfo", {"-d", "-i", iso}));
        for (const auto &[id, set, get, label] : ids)
            QVERIFY2(pvd.contains(label + (e.engine.*get)() + "\n"),
                     qPrintable(label + "\n" + pvd));
    }

    void eventsComeParentsFirst() {
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        writeFile(src.filePath("a/b/c.txt"), "c");
        writeFile(src.filePath("a/d.txt"), "d");
        writeFile(src.filePath("e.txt"), "e");
        e.engine.AddISODirectory("\\x", src.path() + "/*.*");
        QCOMPARE(e.probe.added, QStringList({"\\x", "\\x\\a", "\\x\\a\\b", "\\x\\a\\b\\c.txt",
                                             "\\x\\a\\d.txt", "\\x\\e.txt"}));
        // A file added under a missing folder brings the folder in first.
        e.probe.added.clear();
        e.engine.AddISOFile("\\new\\deeper\\c.txt", src.filePath("e.txt"));
        QCOMPARE(e.probe.added, QStringList({"\\new", "\\new\\deeper", "\\new\\deeper\\c.txt"}));
    }

    void listRemoveRename() {
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        writeFile(src.filePath("d/one.txt"), "1");
        writeFile(src.filePath("d/two.txt"), "22");
        e.engine.AddISODirectory("\\d", src.filePath("d") + "\\*.*");
        QSignalSpy listed(&e.engine, &CDWriterPro::EnumISOItems);
        e.engine.ListISOItems("\\missing");
        QCOMPARE(listed.size(), 0);
        QVERIFY(e.engine.RenameISOFile("\\d\\one.txt", "uno.txt"));
        QVERIFY(!e.engine.RenameISOFile("\\d\\uno.txt", "two.txt")); // taken
        QVERIFY(!e.engine.RenameISOFile("\\d", "dd"));               // not a file
        QSignalSpy changed(&e.engine, &CDWriterPro::ISODestPathChanged);
        QSignalSpy removed(&e.engine, &CDWriterPro::ISOItemRemoved);
        QVERIFY(e.engine.RenameISODirectory("\\d", "renamed"));
        QCOMPARE(QList<QVariantList>(changed), QList<QVariantList>({{"\\d", "\\renamed", true}}));
        QVERIFY(e.engine.RemoveISOItem("\\renamed\\uno.txt"));
        QCOMPARE(e.engine.ISOFileCount(), 1);
        QVERIFY(e.engine.RemoveISOItem("\\renamed"));
        QCOMPARE(QList<QVariantList>(removed),
                 QList<QVariantList>(
                     {{"\\renamed\\uno.txt", "uno.txt", false}, {"\\renamed", "renamed", true}}));
        QCOMPARE(e.engine.ISOFileCount(), 0);
        QCOMPARE(e.engine.ISODirectoryCount(), 0);
        QVERIFY(!e.engine.RemoveISOItem("\\"));
        QVERIFY(!e.engine.RemoveISOItem("\\renamed"));
    }

    void identifiersAreMadeIso() {
        EngineRig e(EngineRig::NoDrive);
        e.engine.setVolumeIdentifier("My Disc é");
        QCOMPARE(e.engine.VolumeIdentifier(), QStringLiteral("MY_DISC__"));
        e.engine.setPublisherIdentifier("Tessaly, Inc. (2026)");
        QCOMPARE(e.engine.PublisherIdentifier(), QStringLiteral("TESSALY, INC. (2026)"));
        e.engine.setCopyrightFileIdentifier("copy right.txt");
        QCOMPARE(e.engine.CopyrightFileIdentifier(), QStringLiteral("COPY_RIGHT_TXT"));
        e.engine.setVolumeSetIdentifier("Set 1");
        QCOMPARE(e.engine.VolumeSetIdentifier(), QStringLiteral("SET_1"));
        // The reset of the image leaves them.
        e.engine.ClearISOImage();
        QCOMPARE(e.engine.VolumeIdentifier(), QStringLiteral("MY_DISC__"));
        // Too long: cut to the field's length.
        using Setter = void (CDWriterPro::*)(const QString &);
        using Getter = QString (CDWriterPro::*)() const;
        const QList<std::tuple<Setter, Getter, int>> fields = {
            {&CDWriterPro::setVolumeIdentifier, &CDWriterPro::VolumeIdentifier, 32},
            {&CDWriterPro::setSystemIdentifier, &CDWriterPro::SystemIdentifier, 32},
            {&CDWriterPro::setVolumeSetIdentifier, &CDWriterPro::VolumeSetIdentifier, 128},
            {&CDWriterPro::setCopyrightFileIdentifier, &CDWriterPro::CopyrightFileIdentifier, 37}};
        for (const auto &[set, get, length] : fields) {
            (e.engine.*set)(QString(200, u'X'));
            QCOMPARE((e.engine.*get)(), QString(length, u'X'));
        }
    }

    void badSources_data() {
        rows<QString>("kind", {{"missing path", "missing"},
                               {"FIFO", "fifo"},
                               {"device", "device"},
                               {"directory as a file", "directory"},
                               {"empty source", "empty"},
                               {"link to itself", "self link"}});
    }

    void badSources() {
        QFETCH(QString, kind);
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        QString path;
        if (kind == "missing")
            path = src.filePath("not there.txt");
        else if (kind == "fifo") {
            path = src.filePath("pipe");
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        } else if (kind == "device")
            path = "/dev/null";
        else if (kind == "directory")
            path = src.path();
        else if (kind == "self link") {
            path = src.filePath("self");
            QVERIFY(QFile::link(path, path));
        }
        e.engine.AddISOFile("\\item", path);
        QVERIFY(e.probe.added.isEmpty());
        QCOMPARE(e.engine.ISOFileCount(), 0);
        e.engine.AddISODirectory("\\dir2", src.filePath("no such folder") + "\\*.*");
        QVERIFY(!e.probe.added.contains("\\dir2"));
    }

    void nameOver255BytesIsRefused() {
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        writeFile(src.filePath("f.txt"), "x");
        e.engine.AddISOFile("\\" + QString(256, u'n'), src.filePath("f.txt"));
        e.engine.AddISOFile("\\" + QString(128, u'é'), src.filePath("f.txt")); // 256 bytes
        QVERIFY(e.probe.added.isEmpty());
        e.engine.AddISOFile("\\" + QString(255, u'n'), src.filePath("f.txt"));
        QCOMPARE(e.probe.added.size(), 1);
        QVERIFY(!e.engine.RenameISOFile("\\" + QString(255, u'n'), QString(300, u'm')));
        QVERIFY(!e.engine.RenameISOFile("\\" + QString(255, u'n'), "a/b"));
    }

    void failedCreateLeavesNoFile() {
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        writeFile(src.filePath("f.txt"), pseudoRandom(10000, 9));
        e.engine.AddISOFile("\\f.txt", src.filePath("f.txt"));
        QVERIFY(!e.engine.CreateISOFile(src.filePath("no folder/x.iso")));
        QVERIFY(!QFileInfo::exists(src.filePath("no folder/x.iso")));
        // A full disk, as a file size limit makes it: the write fails with EFBIG midway.
        struct rlimit old {};
        getrlimit(RLIMIT_FSIZE, &old);
        signal(SIGXFSZ, SIG_IGN);
        struct rlimit small = old;
        small.rlim_cur = 64 * 1024;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const bool created = e.engine.CreateISOFile(src.filePath("full.iso"));
        setrlimit(RLIMIT_FSIZE, &old);
        QVERIFY(!created);
        QVERIFY(
            QDir(src.path()).entryList({"*.iso*", ".*iso*"}, QDir::Files | QDir::Hidden).isEmpty());
    }

    // The size is laid out on a worker while the UI thread serves timers: a timer may ask for the
    // size again, or change the image, and each answer is the size of the image as it was asked.
    void sizingServesEventsMeanwhile() {
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir src;
        for (int i = 0; i < 2000; ++i)
            writeFile(src.filePath(QStringLiteral("d%1/f%2.txt").arg(i % 20).arg(i)), "x");
        writeFile(src.filePath("../late.bin"), pseudoRandom(10 * 2048, 7));
        e.engine.AddISODirectory("\\d", src.path() + "\\*.*");

        qint32 nested = -1;
        QTimer::singleShot(0, [&] { nested = e.engine.ISOImageBlocks(); });
        const qint32 first = e.engine.ISOImageBlocks();
        QCOMPARE(nested, first);

        e.engine.AddISOFile("\\early.txt", src.filePath("d0/f0.txt"));
        QTimer::singleShot(0, [&] {
            e.engine.AddISOFile("\\late.bin",
                                QFileInfo(src.path() + "/../late.bin").absoluteFilePath());
        });
        const qint32 asked = e.engine.ISOImageBlocks();
        const qint32 afterwards = e.engine.ISOImageBlocks();
        QVERIFY2(afterwards >= asked + 10,
                 qPrintable(QStringLiteral("%1 %2").arg(asked).arg(afterwards)));

        QTemporaryDir out;
        QVERIFY(e.engine.CreateISOFile(out.filePath("late.iso")));
        QCOMPARE(QFileInfo(out.filePath("late.iso")).size(), qint64(afterwards) * 2048);
    }
};

QTEST_GUILESS_MAIN(tst_IsoImage)
#include "tst_isoimage.moc"
