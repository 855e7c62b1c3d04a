// The Image Recorder seen through the engine: the drive list, media, tray and speeds.
#include "EngineRig.h"
#include "Rows.h"
#include "TestEnvironment.h"

#include "base/IniFile.h"
#include "engine/writer/recorders/DriveScanner.h"
#include "engine/writer/recorders/image/ImageMedium.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

class tst_ImageRecorder : public QObject {
    Q_OBJECT
private slots:
    void driveList_data() {
        columns<int, bool>("code", "expected");
        QTest::newRow("writes CD-R") << 6 << true;
        QTest::newRow("raw writing") << 40 << false;
        QTest::newRow("unknown code") << 2 << false;
    }

    void driveList() {
        auto [code, expected] = fetch<int, bool>("code", "expected");
        TestEnvironment env;
        CDWriterPro engine;
        DriveScanner::clearPseudoDrives();
        QVERIFY(!engine.SelectDrive(0)); // nothing scanned yet
        QCOMPARE(engine.MediaType(), 254);
        QVERIFY(engine.InitializeDrives(false));
        const qint32 last = engine.DriveCount() - 1;
        QVERIFY(last >= 0);
        // The Image Recorder comes last, after the machine's own /dev/sr* drives.
        for (qint32 i = 0; i < last; ++i)
            QVERIFY2(engine.DriveLetter(i).startsWith("sr"), qPrintable(engine.DriveLetter(i)));
        if (QDir("/dev").entryList({"sr*"}, QDir::System).isEmpty()) {
            QCOMPARE(last, 0);
            QVERIFY(DriveScanner::lastNotes().isEmpty());
        }
        QCOMPARE(engine.DriveLetter(last), QStringLiteral("IMG"));
        QCOMPARE(engine.DriveVendor(last), QStringLiteral("Tessaly"));
        QCOMPARE(engine.DriveProduct(last), QStringLiteral("Image Recorder"));
        QVERIFY(engine.DriveIsRecorder(last));
        QVERIFY(!engine.DriveIsRecorder(last + 1));
        QCOMPARE(engine.DriveLetter(-1), QString());
        QCOMPARE(engine.DriveCapability(code, last), expected);
        QVERIFY(!engine.CurrentDriveCapability(code)); // nothing selected yet
        QVERIFY(!engine.SelectDrive(last + 1));
        QVERIFY(engine.SelectDrive(last));
        QCOMPARE(engine.CurrentDriveCapability(code), expected);
        // An empty tray: no medium, no room, no speed.
        QCOMPARE(engine.MediaType(), 254);
        QCOMPARE(engine.FreeBlocks(), 0);
        QCOMPARE(engine.MaxWriteSpeed(), 0);
    }

    void closingLoadsBlank_data() {
        columns<QString, int, int, int>("setting", "mediaType", "freeBlocks", "maxSpeed");
        QTest::newRow("default") << QString() << 255 << 360000 << 52 * 176;
        QTest::newRow("CD-RW 80") << "CD-RW 80" << 253 << 360000 << 24 * 176;
        QTest::newRow("DVD-RAM") << "DVD-RAM" << 1 << 2236704 << 5 * 1385;
        QTest::newRow("unknown name falls back") << "Floppy" << 255 << 360000 << 52 * 176;
        QTest::newRow("pressed media can't be loaded blank")
            << "DVD-ROM" << 255 << 360000 << 52 * 176;
        // A first start finds the blank already in the tray, without closing it.
        QTest::newRow("first start") << "first start" << 255 << 360000 << 52 * 176;
    }

    void closingLoadsBlank() {
        auto [setting, mediaType, freeBlocks, maxSpeed] =
            fetch<QString, int, int, int>("setting", "mediaType", "freeBlocks", "maxSpeed");
        TestEnvironment env;
        const bool firstStart = setting == QStringLiteral("first start");
        if (firstStart)
            QVERIFY(QDir(ImageRecorder::folder()).removeRecursively());
        else if (!setting.isEmpty())
            IniFile::write(ImageRecorder::settingsFile(), QStringLiteral("Image Recorder"),
                           QStringLiteral("BlankMedium"), setting);
        CDWriterPro engine;
        engine.InitializeDrives(false);
        QVERIFY(engine.SelectDrive(engine.DriveCount() - 1));
        if (!firstStart)
            engine.MoveTray(true);
        QCOMPARE(engine.MediaType(), mediaType);
        QCOMPARE(engine.DiscStatus(), 0);
        QCOMPARE(engine.LastSessionStatus(), 0);
        QCOMPARE(engine.SessionCount(), 1);
        QCOMPARE(engine.FreeBlocks(), freeBlocks);
        QCOMPARE(engine.MaxWriteSpeed(), maxSpeed);
        // Closing a tray that holds a disc changes nothing.
        const QString before = engine.mediumIdentity(engine.DriveCount() - 1);
        engine.MoveTray(true);
        QCOMPARE(engine.mediumIdentity(engine.DriveCount() - 1), before);
    }

    void sessionGaps() {
        // A CD's first session costs 11400 blocks of lead-out, lead-in and pregap; later ones
        // 6900, as their lead-out is shorter. The first gap is read back in tst_datawrite.
        ImageMedium cd = ImageMedium::blank(*ImageMedium::kindByName("CD-R 80"), "d.iso");
        cd.sessions.append({0, 1000, 1, true, {}});
        cd.sessions.append({12400, 500, 1, true, {}});
        QCOMPARE(cd.nextWritableAddress(), 12900 + 6900);
        QCOMPARE(cd.state().freeBlocks, 360000 - 12900 - 6900);
    }

    void descriptorRejectsBadText_data() {
        QTest::addColumn<QByteArray>("text");
        const QByteArray head = "[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\nData=d.iso\n";
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("binary") << QByteArray("\0\1\2\3", 4);
        QTest::newRow("wrong version")
            << QByteArray("[Tessaly Disc]\nVersion=2\nMedium=CD-R 80\nData=d.iso\nSessions=0\n");
        QTest::newRow("unknown medium")
            << QByteArray("[Tessaly Disc]\nVersion=1\nMedium=LP\nData=d.iso\nSessions=0\n");
        QTest::newRow("data path escapes")
            << QByteArray("[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\nData=../x\nSessions=0\n");
        QTest::newRow("too many sessions") << head + "Sessions=100\n";
        QTest::newRow("session missing") << head + "Sessions=1\n";
        QTest::newRow("beyond capacity")
            << head + "Sessions=1\n[Session1]\nStart=0\nBlocks=360001\nMode=1\n";
        QTest::newRow("overlapping") << head +
                                            "Sessions=2\n[Session1]\nStart=0\nBlocks=100\nMode=1\n["
                                            "Session2]\nStart=50\nBlocks=10\nMode=1\n";
        QTest::newRow("bad mode") << head + "Sessions=1\n[Session1]\nStart=0\nBlocks=1\nMode=7\n";
        QTest::newRow("open session before another")
            << head +
                   "Sessions=2\n[Session1]\nStart=0\nBlocks=1\nMode=1\nClosed=0\n[Session2]\nStart="
                   "20000\nBlocks=1\nMode=1\n";
        // Audio: one session from block 0 whose tracks start inside it, each after a full gap.
        const QByteArray audio = head + "Sessions=1\n[Session1]\nStart=0\nBlocks=2000\nMode=0\n";
        QTest::newRow("audio without tracks") << audio;
        QTest::newRow("tracks of a data session")
            << head + "Sessions=1\n[Session1]\nStart=0\nBlocks=2000\nMode=1\nTracks=0\n";
        QTest::newRow("first track after the start") << audio + "Tracks=10 600\n";
        QTest::newRow("gap too short") << audio + "Tracks=0 150\n";
        QTest::newRow("track past the end") << audio + "Tracks=0 2000\n";
        QTest::newRow("track not a number") << audio + "Tracks=0 x\n";
        QTest::newRow("data after audio")
            << head + "Sessions=2\n[Session1]\nStart=0\nBlocks=2000\nMode=0\nTracks=0 400\n"
                      "[Session2]\nStart=20000\nBlocks=1\nMode=1\n";
    }

    void descriptorRejectsBadText() {
        QFETCH(QByteArray, text);
        QVERIFY(!ImageMedium::parse(text));
    }

    void plainIsoIsPressedDisc() {
        EngineRig rig;
        CDWriterPro &engine = rig.engine;
        engine.MoveTray(false);
        QFile f(ImageRecorder::trayFolder() + "/plain.iso");
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(2048 * 300, '\0'));
        f.close();
        QCOMPARE(engine.MediaType(), 255);
        QCOMPARE(engine.DiscStatus(), 2);
        QCOMPARE(engine.LastSessionStatus(), 3);
        QCOMPARE(engine.SessionCount(), 1);
        QCOMPARE(engine.FreeBlocks(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_ImageRecorder)
#include "tst_imagerecorder.moc"
