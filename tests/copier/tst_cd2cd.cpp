// The copier on Image Recorders and libburn file drives: discs read into files, cue sheets
// written, discs copied, each read back with xorriso, cd-info and cd-paranoia.
#include "CopierRig.h"
#include "EngineProbe.h"
#include "Fixtures.h"
#include "OutsideTools.h"
#include "ReadBack.h"
#include "Rows.h"
#include "TestEnvironment.h"
#include "Waits.h"

#include "base/IniFile.h"
#include "engine/writer/recorders/DriveScanner.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

namespace {
// The first `blocks` 2048-byte blocks of a file from block `start`.
QByteArray blocksOf(const QString &path, qint64 start, qint64 bytes) {
    return OutsideTools::fileBytes(path).mid(start * 2048, bytes);
}

// A data disc of two files on the rig's second recorder.
void writeDataDisc(CopierRig &r, QTemporaryDir &dir, int size) {
    r.addFiles(dir.path(), 2, size);
    QVERIFY(r.rig.write());
    QCOMPARE(r.rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
}
} // namespace

class tst_CD2CD : public QObject {
    Q_OBJECT
private slots:
    void deviceListAndSpeeds() {
        TestEnvironment env;
        QDir().mkpath(ImageRecorder::folder());
        IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", "SecondDrive", "1");
        QTemporaryDir media;
        DriveScanner::addPseudoDrive(media.filePath("disc.iso"));
        CDWriterPro engine;
        engine.InitializeDrives(false);
        DriveScanner::clearPseudoDrives();
        CD2CD copier(&engine);
        QStringList lines;
        for (int i = 0; i < copier.DeviceCount(); ++i)
            lines << copier.listLine(copier.DeviceAddress(i));
        QCOMPARE(lines, QStringList({"254:0:0  libburn File drive              FILE",
                                     "255:0:0  Tessaly Image Recorder          1.00",
                                     "255:1:0  Tessaly Image Recorder 2        1.00"}));
        QCOMPARE(copier.QueryRevision(0x123456), 0); // no such device: not listed
        // Codes by the medium's real speeds: 52x CD-R, 6x DVD-RW, 5x DVD-RAM, no disc.
        const QList<QPair<QString, qint32>> media_ = {
            {"CD-R 80", 9}, {"DVD-RW", 3}, {"DVD-RAM", 2}, {"", 0}};
        for (const auto &[medium, code] : media_) {
            copier.EjectTray(CopierRig::First);
            IniFile::write(ImageRecorder::settingsFile(), "Image Recorder", "BlankMedium", medium);
            if (!medium.isEmpty())
                copier.CloseTray(CopierRig::First);
            copier.SelectDevice(CopierRig::First);
            QCOMPARE(copier.MaxSpeedCode(), code);
        }
    }

    void discToFile_data() { rows<int>("flag", {{"ISO", 0}, {"BIN and cue sheet", 1}}); }

    void discToFile() {
        QFETCH(int, flag);
        CopierRig r;
        QTemporaryDir dir;
        writeDataDisc(r, dir, 300000);
        const auto toc = ReadBack::xorrisoToc(CopierRig::trayData(1));
        QCOMPARE(toc.size(), 1);
        const QString out = dir.filePath(flag ? "disc.bin" : "disc.iso");
        QCOMPARE(r.copier.ReadDiscToFile(CopierRig::Second, out, flag), 0);
        QVERIFY2(r.waitForJob(), qPrintable(r.failure));
        // Rising through the copy, 100 once at the end.
        QVERIFY(r.percents.size() > 5 && r.percents.last() == 100.0);
        QVERIFY(std::adjacent_find(r.percents.begin(), r.percents.end(), std::greater_equal<>()) ==
                r.percents.end());
        const QByteArray bytes = OutsideTools::fileBytes(out);
        const qint64 size = qint64(toc[0].second) * 2048;
        QCOMPARE(bytes.left(size), blocksOf(CopierRig::trayData(1), toc[0].first, size));
        QCOMPARE(bytes.mid(size), QByteArray(flag ? qint64(toc[0].second) * 304 : 0, '\0'));
        if (!flag)
            return;
        // cd-info lists one data track of the session's sectors; the image burner writes it back.
        const QString cue = dir.filePath("disc.cue");
        const QList<int> starts = ReadBack::cdInfoTrackStarts(cue);
        QCOMPARE(starts, QList<int>({0, toc[0].second}));
        QCOMPARE(r.copier.SubmitAudioJob(CopierRig::First, cue, 255, 0, 0), 0);
        QVERIFY2(r.waitForJob(), qPrintable(r.failure));
        QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, CopierRig::trayData(0)),
                 ReadBack::fileHashes(ReadBack::Tool::Xorriso, CopierRig::trayData(1)));
    }

    void readFailureLeavesNoFile_data() {
        columns<bool, QString>("abort", "reason");
        QTest::newRow("unreadable sector") << false << "Sector 40 could not be read after 3 tries.";
        QTest::newRow("abort") << true << "The job was aborted.";
    }

    void readFailureLeavesNoFile() {
        auto [abort, reason] = fetch<bool, QString>("abort", "reason");
        CopierRig r;
        QTemporaryDir dir, out;
        writeDataDisc(r, dir, abort ? 20000000 : 100000);
        if (!abort)
            IniFile::write(ImageRecorder(1).ownSettings(), "Image Recorder", "UnreadableSector",
                           "40");
        QCOMPARE(r.copier.ReadDiscToFile(CopierRig::Second, out.filePath("disc.bin"), 1), 0);
        if (abort)
            r.copier.AbortJob();
        QVERIFY(!r.waitForJob());
        QVERIFY2(r.failure.contains(reason), qPrintable(r.failure));
        QCOMPARE(r.percents.count(100.0), 0);
        QCOMPARE(QDir(out.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    void refusedCueSheets_data() {
        columns<QByteArray, QString>("sheet", "reason");
        const QByteArray file = "FILE \"d.bin\" BINARY\n";
        QTest::newRow("MODE2/2352") << file + "TRACK 01 MODE2/2352\nINDEX 01 00:00:00\n"
                                    << "Track 1 is MODE2/2352: only AUDIO and MODE1/2048";
        QTest::newRow("mixed") << file + "TRACK 01 MODE1/2048\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
                                         "INDEX 01 00:10:00\n"
                               << "mixes audio and data";
        QTest::newRow("wave file")
            << QByteArray("FILE \"d.wav\" WAVE\nTRACK 01 AUDIO\n") << "only BINARY files";
        QTest::newRow("missing file") << QByteArray("FILE \"none.bin\" BINARY\nTRACK 01 AUDIO\n"
                                                    "INDEX 01 00:00:00\n")
                                      << "is missing";
        QTest::newRow("no track") << file << "lists no track";
        QByteArray hundred = file;
        for (int t = 1; t <= 100; ++t)
            hundred += QStringLiteral("TRACK %1 AUDIO\nINDEX 01 00:%2:00\n")
                           .arg(t)
                           .arg(t % 60, 2, 10, QChar(u'0'))
                           .toLatin1();
        QTest::newRow("100 tracks") << hundred << "A disc holds at most 99 tracks.";
        QTest::newRow("no sheet") << QByteArray() << "No cue sheet was given.";
    }

    void refusedCueSheets() {
        auto [sheet, reason] = fetch<QByteArray, QString>("sheet", "reason");
        CopierRig r;
        QTemporaryDir dir;
        Fixtures::writeFile(dir.filePath("d.bin"), QByteArray(2352 * 300, 'x'));
        const QString cue = sheet.isEmpty() ? QString() : dir.filePath("d.cue");
        if (!cue.isEmpty())
            Fixtures::writeFile(cue, sheet);
        QVERIFY(r.copier.SubmitAudioJob(CopierRig::First, cue, 255, 0, 0) < 0);
        QVERIFY2(r.copier.ResultText().contains(reason), qPrintable(r.copier.ResultText()));
        QVERIFY(!r.copier.JobRunning());
        QCOMPARE(r.copier.DiscState(CopierRig::First), qint32(CD2CD::StateBlank));
        QVERIFY(!r.copier.TrayLocked(CopierRig::First));
    }

    void dataCopy_data() {
        columns<bool, qint32>("test", "destination");
        QTest::newRow("real") << false << CopierRig::First;
        QTest::newRow("test write") << true << CopierRig::First;
        QTest::newRow("one drive") << false << CopierRig::Second;
    }

    void dataCopy() {
        auto [test, destination] = fetch<bool, qint32>("test", "destination");
        CopierRig r;
        QTemporaryDir dir;
        writeDataDisc(r, dir, 200000);
        const auto original = ReadBack::fileHashes(ReadBack::Tool::Xorriso, CopierRig::trayData(1));
        QCOMPARE(original.size(), 2);
        QCOMPARE(r.copier.CopyDisc(CopierRig::Second, destination, 255, test ? 1 : 0, 0), 0);
        // The drives are the copier's until the job ends.
        QVERIFY(!r.rig.engine.WriteDisc());
        QVERIFY2(r.waitForJob(), qPrintable(r.failure));
        QCOMPARE(r.percents.count(100.0), 1);
        const qint32 unit = destination == CopierRig::First ? 0 : 1;
        if (test)
            QCOMPARE(r.copier.DiscState(destination), qint32(CD2CD::StateBlank));
        else
            QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, CopierRig::trayData(unit)),
                     original);
    }

    void audioCopyAndBurnBack() {
        CopierRig r(EngineRig::Audio);
        QTemporaryDir dir;
        for (int i = 0; i < 2; ++i) {
            const QString wave = dir.filePath(QStringLiteral("t%1.wav").arg(i));
            Fixtures::writeFile(wave,
                                Fixtures::cdWave(Fixtures::pseudoRandom(2352 * (400 + 37 * i), i)));
            QVERIFY(r.rig.engine.AddAudioTrack(wave, i + 1));
        }
        QVERIFY(r.rig.write());
        QCOMPARE(r.rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(r.copier.CopyDisc(CopierRig::Second, CopierRig::First, 255, 0, 0), 0);
        QVERIFY2(r.waitForJob(), qPrintable(r.failure));
        QCOMPARE(r.percents.count(100.0), 1);
        // Both discs out: the source's and the copy's cue sheets in their recorders' Ejected
        // folders.
        r.copier.EjectTray(CopierRig::Second);
        r.copier.EjectTray(CopierRig::First);
        const auto cueIn = [](const QString &folder) {
            const QStringList cues = QDir(folder).entryList({"*.cue"}, QDir::Files, QDir::Time);
            return cues.isEmpty() ? QString() : QDir(folder).filePath(cues.first());
        };
        const QString source = cueIn(ImageRecorder(1).ownEjected());
        QString copy = cueIn(ImageRecorder(0).ownEjected());
        for (int track = 1; track <= 2; ++track)
            QCOMPARE(ReadBack::cdParanoiaTrack(copy, track, dir),
                     ReadBack::cdParanoiaTrack(source, track, dir));
        // The recorder's own ejected BIN/CUE, burnt back, gives the same frames.
        r.copier.CloseTray(CopierRig::First);
        QCOMPARE(r.copier.SubmitAudioJob(CopierRig::First, source, 255, 0, 0), 0);
        QVERIFY2(r.waitForJob(), qPrintable(r.failure));
        r.copier.EjectTray(CopierRig::First);
        copy = cueIn(ImageRecorder(0).ownEjected());
        QCOMPARE(OutsideTools::fileBytes(QString(copy).replace(".cue", ".bin")),
                 OutsideTools::fileBytes(QString(source).replace(".cue", ".bin")));
    }

    void fileDrives() {
        TestEnvironment env;
        QTemporaryDir media;
        const QString a = media.filePath("a.iso"), b = media.filePath("b.iso");
        DriveScanner::addPseudoDrive(a);
        DriveScanner::addPseudoDrive(b);
        CDWriterPro engine;
        engine.InitializeDrives(false);
        DriveScanner::clearPseudoDrives();
        EngineProbe probe(&engine);
        engine.SelectDrive(0);
        engine.setTrackMode(1);
        const QString file = media.filePath("f.bin");
        Fixtures::writeFile(file, Fixtures::pseudoRandom(500000, 7));
        engine.AddISOFile("\\f.bin", file);
        QVERIFY(engine.WriteDisc() && probe.waitForEnd());
        QCOMPARE(probe.endingEvent(), QStringLiteral("WriteComplete"));
        CD2CD copier(&engine);
        QSignalSpy done(&copier, &CD2CD::JobComplete), failed(&copier, &CD2CD::JobFailed);
        const auto ended = [&](int n) { return Waits::until([&] { return done.count() == n; }); };
        const qint32 first = 0xfe0000, second = 0xfe0100;
        // A file drive reads its session back: the ISO equals the file's blocks.
        const QString out = media.filePath("out.iso");
        QCOMPARE(copier.ReadDiscToFile(first, out, 0), 0);
        QVERIFY(ended(1));
        const auto toc = ReadBack::xorrisoToc(a);
        QCOMPARE(OutsideTools::fileBytes(out),
                 blocksOf(a, toc[0].first, qint64(toc[0].second) * 2048));
        // And copies to the other file drive.
        QCOMPARE(copier.CopyDisc(first, second, 255, 0, 0), 0);
        QVERIFY(ended(2));
        QCOMPARE(failed.count(), 0);
        QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, b),
                 ReadBack::fileHashes(ReadBack::Tool::Xorriso, a));
        // A file has no table of contents to close: it stays appendable.
        QCOMPARE(copier.DiscState(second), qint32(CD2CD::StateAppendable));
    }
};

QTEST_MAIN(tst_CD2CD)
#include "tst_cd2cd.moc"
