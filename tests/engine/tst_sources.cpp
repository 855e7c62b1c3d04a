// Source files as a careless user and an unlucky machine leave them between adding and writing,
// names and links as they come from real disks, and what a write leaves behind. Every ISO file
// and disc made here is read back alike by xorriso, isoinfo and bsdtar.
#include "DiscReadBack.h"
#include "EngineRig.h"
#include "Fixtures.h"
#include "Rows.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Fixtures;

namespace {
// Makes a source tree from lines "f PATH CONTENT", "l PATH TARGET", "p PATH" (a named pipe).
void makeTree(const QString &root, const QList<QByteArray> &lines) {
    for (const QByteArray &line : lines) {
        const QList<QByteArray> part = line.split(' ');
        const QByteArray path = QFile::encodeName(root) + '/' + part[1];
        QDir().mkpath(QFileInfo(QFile::decodeName(path)).path());
        if (part[0] == "f") {
            FILE *f = fopen(path.constData(), "wb");
            QVERIFY(f);
            fwrite(part[2].constData(), 1, size_t(part[2].size()), f);
            fclose(f);
        } else if (part[0] == "l") {
            QCOMPARE(symlink(part[2].constData(), path.constData()), 0);
        } else {
            QCOMPARE(mkfifo(path.constData(), 0600), 0);
        }
    }
}

} // namespace

class tst_Sources : public QObject {
    Q_OBJECT
private slots:
    void changedAfterAdding_data() {
        // target: iso, disc or audio; change: deleted, pipe, shrunk or grown; fileError: -1: the
        // job ends well
        columns<QString, bool, QString, int>("target", "cache", "change", "fileError");
        for (const char *target : {"iso", "disc"}) {
            QTest::addRow("%s: deleted", target) << target << false << "deleted" << 0;
            QTest::addRow("%s: replaced by a named pipe", target) << target << false << "pipe" << 0;
            QTest::addRow("%s: shrunk", target) << target << false << "shrunk" << 2;
            QTest::addRow("%s: grown", target) << target << false << "grown" << -1;
        }
        QTest::newRow("disc, cached: deleted") << "disc" << true << "deleted" << 0;
        QTest::newRow("disc, cached: grown") << "disc" << true << "grown" << -1;
        QTest::newRow("audio: wave replaced by a named pipe") << "audio" << false << "pipe" << 0;
        QTest::newRow("audio, cached: wave deleted") << "audio" << true << "deleted" << 0;
        QTest::newRow("audio: wave shrunk to garbage") << "audio" << false << "shrunk" << 2;
    }

    void changedAfterAdding() {
        auto [target, cache, change, fileError] =
            fetch<QString, bool, QString, int>("target", "cache", "change", "fileError");
        EngineRig rig("CD-R 80", EngineRig::Data);
        rig.engine.setCacheImage(cache);
        QSignalSpy notices(&rig.engine, &CDWriterPro::SourceFileNotice);
        QTemporaryDir dir;
        const QByteArray first = pseudoRandom(300000, 1), grown = pseudoRandom(400000, 2);
        const QString changing = dir.filePath(target == u"audio" ? "src/t.wav" : "src/z.bin");
        if (target == u"audio") {
            writeFile(changing, cdWave(pseudoRandom(588 * 400 * 4, 3)));
            rig.engine.setTrackMode(0);
            QVERIFY(rig.engine.AddAudioTrack(changing, 1));
        } else {
            writeFile(dir.filePath("src/a.bin"), first);
            writeFile(changing, grown.left(100000));
            rig.engine.AddISODirectory("\\", dir.filePath("src") + "/*.*");
        }
        QFile::remove(changing);
        if (change == u"pipe")
            QCOMPARE(mkfifo(QFile::encodeName(changing).constData(), 0600), 0);
        else if (change != u"deleted")
            writeFile(changing, grown.left(change == u"shrunk" ? 5000 : grown.size()));

        const QString iso = dir.filePath("out.iso");
        rig.probe.events.clear();
        if (target == u"iso") {
            QCOMPARE(rig.engine.CreateISOFile(iso), fileError < 0);
        } else {
            QVERIFY(rig.engine.WriteDisc());
            QVERIFY(rig.probe.waitForEnd());
        }
        if (fileError >= 0) {
            // Found before the first block: the drive never started, the disc is still blank.
            QCOMPARE(rig.probe.fileError, fileError);
            QCOMPARE(rig.probe.failedFile, changing);
            if (target == u"iso") {
                QVERIFY(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
            } else {
                QCOMPARE(rig.probe.events,
                         QStringList({"PreparingToWrite", "ReadingTrackFileError", "WriteError"}));
                QCOMPARE(rig.probe.writeError, 1);
                QCOMPARE(rig.engine.DiscStatus(), 0);
                QCOMPARE(rig.errorTrack, 1);
            }
            return;
        }
        // A file that grew is written whole, and the user is told.
        QCOMPARE(notices.size(), 1);
        QCOMPARE(notices.first().first().toString(), changing);
        QVERIFY(notices.first().at(1).toString().contains("grew from 100000 to 400000 bytes"));
        const QString image = target == u"iso" ? iso : rig.eject("iso");
        DiscReadBack::expectEverywhere(image, {{"a.bin", first}, {"z.bin", grown}});
    }

    // pipe: else grown
    void changedWhileWriting_data() {
        rows<bool>("pipe", {{"swapped for a named pipe", true}, {"grown", false}});
    }

    void changedWhileWriting() {
        // The look before the write passes; the change comes while the drive is busy with the file
        // before it. The job must not block on a pipe, nor cut a grown file silently.
        QFETCH(bool, pipe);
        EngineRig rig("CD-R 80", EngineRig::Data);
        EngineRig::setting("EmulateSpeed", "1");
        QSignalSpy notices(&rig.engine, &CDWriterPro::SourceFileNotice);
        QTemporaryDir dir;
        const QString late = dir.filePath("src/z.bin");
        writeFile(dir.filePath("src/a.bin"), pseudoRandom(24 << 20, 4));
        writeFile(late, pseudoRandom(1000, 5));
        rig.engine.AddISODirectory("\\", dir.filePath("src") + "/*.*");
        rig.probe.events.clear();
        QVERIFY(rig.engine.WriteDisc());
        QTRY_VERIFY_WITH_TIMEOUT(rig.probe.events.contains("TrackWriteStatus"), 30000);
        QCOMPARE(unlink(QFile::encodeName(late).constData()), 0);
        if (pipe)
            QCOMPARE(mkfifo(QFile::encodeName(late).constData(), 0600), 0);
        else
            writeFile(late, pseudoRandom(3000, 5));
        QVERIFY(rig.probe.waitForEnd());
        if (pipe) {
            QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteError"));
            QCOMPARE(rig.probe.failedFile, late);
            return;
        }
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(notices.size(), 1);
        QVERIFY(notices.first().at(1).toString().contains("only its first 1000 bytes"));
        DiscReadBack::expectEverywhere(
            rig.eject("iso"),
            {{"a.bin", pseudoRandom(24 << 20, 4)}, {"z.bin", pseudoRandom(3000, 5).left(1000)}});
    }

    void namesAndLinks_data() {
        // disc: "path=contents"; "path/" a folder; skipped: sources told of and left out;
        // isoinfoSees: when it differs from "disc"
        columns<QList<QByteArray>, QStringList, QStringList, QStringList>("source", "disc",
                                                                          "skipped", "isoinfoSees");
        QTest::newRow("a name that is not UTF-8 is read as Latin-1")
            << QList<QByteArray>{"f caf\xE9.txt bytes", "f ok.txt fine"}
            << QStringList{"café.txt=bytes", "ok.txt=fine"} << QStringList{} << QStringList{};
        // libisofs moves the eighth level down into rr_moved; isoinfo alone shows it there.
        QStringList deep{"top.txt=top"}, relocated{"top.txt=top", "rr_moved/"};
        QString path;
        for (char c = 'a'; c <= 'j'; ++c) {
            path += QLatin1Char(c) + QStringLiteral("/");
            deep << path;
            if (path.size() <= 16) // down to h
                relocated << path;
            if (path.size() >= 16)
                relocated << "rr_moved/" + path.mid(14);
        }
        QTest::newRow("folders ten deep are relocated and read back in place")
            << QList<QByteArray>{"f a/b/c/d/e/f/g/h/i/j/deep.txt bottom", "f top.txt top"}
            << deep + QStringList{path + "deep.txt=bottom"} << QStringList{}
            << relocated + QStringList{"rr_moved/h/i/j/deep.txt=bottom"};
        QTest::newRow("links are recorded as links, never followed")
            << QList<QByteArray>{"f sub/x.txt x", "l sub/up ..", "l tolink sub/x.txt",
                                 "l tofolder sub", "l outside /usr"}
            << QStringList{"sub/",
                           "sub/x.txt=x",
                           "sub/up=-> ..",
                           "tolink=-> sub/x.txt",
                           "tofolder=-> sub",
                           "outside=-> /usr"}
            << QStringList{} << QStringList{};
        QTest::newRow("a dangling link, a link loop and a pipe are left out")
            << QList<QByteArray>{"f kept.txt k", "l gone nothing-here", "l loop loop", "p pipe"}
            << QStringList{"kept.txt=k"} << QStringList{"gone", "loop", "pipe"} << QStringList{};
    }

    void namesAndLinks() {
        auto [source, disc, skipped, isoinfoSees] =
            fetch<QList<QByteArray>, QStringList, QStringList, QStringList>(
                "source", "disc", "skipped", "isoinfoSees");
        EngineRig rig("CD-R 80", EngineRig::Data);
        QSignalSpy notices(&rig.engine, &CDWriterPro::SourceFileNotice);
        QTemporaryDir dir;
        // Qt can't name a file whose name is not UTF-8, so it can't remove one either.
        struct Remover {
            QString path;
            ~Remover() { QProcess::execute("rm", {"-rf", path}); }
        } remover{dir.filePath("src")};
        makeTree(dir.filePath("src"), source);
        rig.engine.AddISODirectory("\\", dir.filePath("src") + "/*.*");
        QStringList told;
        for (const QList<QVariant> &n : notices)
            told.append(QFileInfo(n.first().toString()).fileName());
        told.sort();
        QCOMPARE(told, skipped);
        const DiscReadBack::Tree expected = DiscReadBack::treeOf(disc);
        const QString iso = dir.filePath("out.iso");
        QVERIFY(rig.engine.CreateISOFile(iso));
        DiscReadBack::expectEverywhere(iso, expected, DiscReadBack::treeOf(isoinfoSees));
        // The size the ruler shows is the size written.
        QCOMPARE(qint64(rig.engine.ISOImageBlocks()) * 2048, QFileInfo(iso).size());
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        DiscReadBack::expectEverywhere(rig.eject("iso"), expected,
                                       DiscReadBack::treeOf(isoinfoSees));
        // The folder made for the relocation is no item of the image.
        QSignalSpy listed(&rig.engine, &CDWriterPro::EnumISOItems);
        rig.engine.ListISOItems("\\");
        for (const QList<QVariant> &item : listed)
            QVERIFY(item.at(2).toString() != u"rr_moved");
    }

    void staleCachesGoAtStart() {
        TestEnvironment env;
        QProcess gone;
        gone.start("true");
        QVERIFY(gone.waitForStarted());
        const qint64 pid = gone.processId();
        QVERIFY(gone.waitForFinished());
        const QDir cache(env.appFolder() + "/Cache");
        QVERIFY(cache.mkpath("."));
        const QString stale = QStringLiteral("image-%1-1.cache").arg(pid);
        const QString live =
            QStringLiteral("audio-%1-2.cache").arg(QCoreApplication::applicationPid());
        for (const QString &name : {stale, live, QStringLiteral("notes.txt")})
            writeFile(cache.filePath(name), "x");
        CDWriterPro engine;
        QVERIFY(engine.InitializeDrives(false));
        QCOMPARE(cache.entryList(QDir::Files), QStringList({live, "notes.txt"}));
    }
};

QTEST_MAIN(tst_Sources)
#include "tst_sources.moc"
