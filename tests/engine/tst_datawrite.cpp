// Data discs written on the Image Recorder, then read back at their block addresses.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"

#include <QtTest>

using namespace Fixtures;

class tst_DataWrite : public QObject {
    Q_OBJECT
private slots:
    void writeAndAppendSession_data() {
        columns<bool, QString>("cache", "medium");
        QTest::newRow("streamed, CD-R") << false << "CD-R 80";
        QTest::newRow("cached, CD-R") << true << "CD-R 80";
        QTest::newRow("streamed, DVD+R") << false << "DVD+R";
    }

    void writeAndAppendSession() {
        auto [cache, medium] = fetch<bool, QString>("cache", "medium");
        EngineRig rig(medium, EngineRig::Data);
        QTemporaryDir src;
        writeFile(src.filePath("docs/report one.txt"), pseudoRandom(300000, 1));
        writeFile(src.filePath("docs/Ünïcode.bin"), pseudoRandom(12345, 2));
        writeFile(src.filePath("keep.txt"), "kept\n");
        writeFile(src.filePath("gone.txt"), "removed later\n");
        rig.engine.AddISODirectory("\\", src.path() + "\\*.*");
        rig.engine.setVolumeIdentifier("FIRST");
        rig.engine.setPublisherIdentifier("TESSALY TEST");
        rig.engine.setCacheImage(cache);
        rig.engine.setTestWrite(false);
        const qint32 blocks = rig.engine.ISOImageBlocks();
        const qint32 free0 = rig.engine.FreeBlocks();
        QVERIFY(rig.engine.WriteDisc());
        QVERIFY(!rig.engine.WriteDisc()); // one job at a time
        QVERIFY(rig.probe.waitForEnd());

        // The events in the order the windows rest on. While caching, a file's name is told
        // only if the reading thread opens it after the copy began: that is up to the pace.
        QStringList events = rig.probe.events;
        events.removeAll(QStringLiteral("ReadingTrackFile"));
        QCOMPARE(squeezed(events).join(u' '),
                 QString(cache ? "PreparingToWrite CachingStatus " : "PreparingToWrite ") +
                     "CreatingDirectories TrackWriteStatus ClosingTrack ClosingSession "
                     "WriteComplete");
        QVERIFY(rig.probe.trackPercents.contains(1));
        QCOMPARE(rig.probe.trackPercents.last(), 100);
        QVERIFY(QDir(rig.env.appFolder() + "/Cache").entryList(QDir::Files).isEmpty());

        // An open disc with one session, its space less the session and its overhead.
        const bool cd = medium.startsWith("CD");
        QCOMPARE(rig.engine.DiscStatus(), 1);
        QCOMPARE(rig.engine.LastSessionStatus(), 0);
        QCOMPARE(rig.engine.SessionCount(), 2);
        const qint32 second = cd ? blocks + 11400 : (blocks + 15) / 16 * 16;
        QCOMPARE(rig.engine.FreeBlocks(), free0 - second);

        // Import, change and append.
        rig.engine.ClearISOImage();
        rig.engine.setVolumeIdentifier("SOMETHING ELSE");
        rig.probe.added.clear();
        QVERIFY(rig.engine.ImportLastSession(true));
        QVERIFY(rig.probe.added.contains("\\docs\\report one.txt"));
        QVERIFY(rig.probe.added.indexOf("\\docs") <
                rig.probe.added.indexOf("\\docs\\report one.txt"));
        QCOMPARE(rig.engine.VolumeIdentifier(), QStringLiteral("FIRST"));
        QCOMPARE(rig.engine.PublisherIdentifier(), QStringLiteral("TESSALY TEST"));
        QCOMPARE(rig.engine.ISOFileCount(), 4);
        writeFile(src.filePath("new/added.bin"), pseudoRandom(50000, 3));
        writeFile(src.filePath("keep v2.txt"), "kept, second version\n");
        rig.engine.AddISODirectory("\\new", src.filePath("new") + "/*.*");
        QVERIFY(rig.engine.RemoveISOItem("\\gone.txt"));
        QVERIFY(rig.engine.RenameISODirectory("\\docs", "papers"));
        // A collision with an imported file asks; refused first, then accepted.
        rig.engine.AddISOFile("\\keep.txt", src.filePath("keep v2.txt"));
        QCOMPARE(rig.probe.replaceAsked, QStringList({"\\keep.txt"}));
        rig.probe.replaceAnswer = true;
        rig.engine.AddISOFile("\\keep.txt", src.filePath("keep v2.txt"));
        QCOMPARE(rig.probe.replaceAsked.size(), 2);

        const qint32 nwa = 360000 - rig.engine.FreeBlocks();
        rig.probe.events.clear();
        QVERIFY(rig.engine.WriteDisc());
        QVERIFY(rig.probe.waitForEnd());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(rig.engine.SessionCount(), 3);

        const QString image = rig.eject();
        const qint32 start2 = cd ? nwa : second;
        const auto hashes = [&](const QStringList &pairs) {
            QMap<QString, QByteArray> out; // "disc path=source path"
            for (const QString &p : pairs)
                out.insert(p.section(u'=', 0, 0),
                           ReadBack::sha256(src.filePath(p.section(u'=', 1))));
            return out;
        };
        QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, image, start2),
                 hashes({"/keep.txt=keep v2.txt", "/new/added.bin=new/added.bin",
                         "/papers/report one.txt=docs/report one.txt",
                         "/papers/Ünïcode.bin=docs/Ünïcode.bin"}));
        // The first session is still whole at its own address.
        QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, image, 0),
                 hashes({"/docs/report one.txt=docs/report one.txt",
                         "/docs/Ünïcode.bin=docs/Ünïcode.bin", "/gone.txt=gone.txt",
                         "/keep.txt=keep.txt"}));
    }

    void testWriteLeavesMediumUntouched() {
        EngineRig rig("CD-R 80", EngineRig::Data);
        QTemporaryDir src;
        writeFile(src.filePath("a.bin"), pseudoRandom(400000, 5));
        rig.engine.AddISOFile("\\a.bin", src.filePath("a.bin"));
        rig.engine.setTestWrite(true);
        rig.engine.setFinalizeDisc(true);
        const QString before = rig.descriptorText();
        QVERIFY(rig.engine.WriteDisc());
        QVERIFY(rig.probe.waitForEnd());
        QCOMPARE(
            squeezed(rig.probe.events).join(u' '),
            QStringLiteral("PreparingToWrite CreatingDirectories TrackWriteStatus ClosingTrack "
                           "ClosingSession ClosingDisc WriteComplete"));
        QCOMPARE(rig.probe.trackPercents.last(), 100);
        QVERIFY(rig.engine.TestWrite()); // read back by the window at the end
        QCOMPARE(rig.descriptorText(), before);
        QCOMPARE(rig.engine.DiscStatus(), 0);
        QCOMPARE(rig.engine.FreeBlocks(), 360000);
    }

    void imageLargerThanMedium() {
        EngineRig rig("CD-R 74", EngineRig::Data);
        QTemporaryDir src;
        QFile big(src.filePath("big.bin"));
        QVERIFY(big.open(QIODevice::WriteOnly) && big.resize(qint64(700) << 20)); // sparse
        big.close();
        rig.engine.AddISOFile("\\big.bin", big.fileName());
        QVERIFY(rig.write()); // refused before anything is read
        QCOMPARE(rig.probe.events, QStringList({"PreparingToWrite", "WriteError"}));
        QCOMPARE(rig.probe.driveError, 1021);
        QCOMPARE(rig.engine.DiscStatus(), 0);
    }

    void importRefusesWhatIsNotModeOne() {
        EngineRig rig("CD-R 80", EngineRig::Data);
        QVERIFY(!rig.engine.ImportLastSession(true)); // a blank disc
        QTemporaryDir src;
        writeFile(src.filePath("f.txt"), "xa\n");
        rig.engine.AddISOFile("\\f.txt", src.filePath("f.txt"));
        rig.engine.setTrackMode(2);
        QVERIFY(rig.engine.WriteDisc());
        QVERIFY(rig.probe.waitForEnd());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(rig.engine.DiscType(), 32);
        QVERIFY(!rig.engine.ImportLastSession(true));
        // A DVD takes no Mode 2 track.
        EngineRig dvd("DVD-R", EngineRig::Data);
        dvd.engine.AddISOFile("\\f.txt", src.filePath("f.txt"));
        dvd.engine.setTrackMode(2);
        QVERIFY(dvd.engine.WriteDisc());
        QVERIFY(dvd.probe.waitForEnd());
        QCOMPARE(dvd.probe.driveError, 1040);
        // No drive, no import.
        CDWriterPro none;
        QVERIFY(!none.ImportLastSession(true));
        QVERIFY(!none.WriteDisc());
    }

    void writeIsoFile() {
        EngineRig rig("CD-R 80", EngineRig::Data);
        QTemporaryDir src;
        writeFile(src.filePath("f.bin"), pseudoRandom(200000, 9));
        rig.engine.AddISOFile("\\f.bin", src.filePath("f.bin"));
        QVERIFY(rig.engine.CreateISOFile(src.filePath("made.iso")));
        rig.probe.events.clear();
        QVERIFY(!rig.engine.WriteISOFile(src.filePath("missing.iso")));
        QVERIFY(rig.engine.WriteISOFile(src.filePath("made.iso")));
        QVERIFY(rig.probe.waitForEnd());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(rig.probe.count("CachingStatus"), 0);
        // A plain image goes on an empty disc only.
        QVERIFY(!rig.engine.WriteISOFile(src.filePath("made.iso")));
        const QString image = rig.eject();
        QTemporaryDir out;
        QCOMPARE(ReadBack::xorrisoExtract(image, "/f.bin", out, 0),
                 ReadBack::sha256(src.filePath("f.bin")));
    }

    void filesOverFourGiBAreLaidOut() {
        EngineRig rig("DVD+R", EngineRig::Data);
        QTemporaryDir src;
        QFile big(src.filePath("huge.bin"));
        QVERIFY(big.open(QIODevice::WriteOnly));
        QVERIFY(big.resize(qint64(5) * 1024 * 1024 * 1024)); // sparse
        big.close();
        writeFile(src.filePath("one.bin"), "1");
        rig.engine.AddISOFile("\\huge.bin", src.filePath("one.bin"));
        const qint64 small = rig.engine.ISOImageBlocks();
        QVERIFY(rig.engine.RemoveISOItem("\\huge.bin"));
        rig.engine.AddISOFile("\\huge.bin", big.fileName());
        QCOMPARE(rig.engine.ISOFileCount(), 1);
        // Level 3 gives the file several extents; the layout counts every block of it.
        QCOMPARE(rig.engine.ISOImageBlocks() - small, qint64(5) * 1024 * 1024 * 1024 / 2048 - 1);
    }
};

QTEST_GUILESS_MAIN(tst_DataWrite)
#include "tst_datawrite.moc"
