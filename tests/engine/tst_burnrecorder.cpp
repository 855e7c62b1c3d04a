// The libburn recorder on a file drive ("stdio:"), through the engine's own interface; what it
// writes is read back by xorriso.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"
#include "TestEnvironment.h"

#include "engine/writer/recorders/burn/BurnDrive.h"
#include "engine/writer/recorders/burn/BurnRecorder.h"
#include "engine/writer/recorders/burn/BurnWriter.h"

#include <QtTest>
#include <QtWidgets>

#include <csignal>
#include <cstdio>

using namespace Fixtures;

namespace {
// A track of bytes held in memory.
class BytesTrack : public TrackSource {
public:
    BytesTrack(qint32 mode, qint64 blocks)
        : m_mode(mode)
        , m_blocks(blocks) {}
    qint32 mode() const override { return m_mode; }
    qint64 blockCount() const override { return m_blocks; }
    bool read(char *buffer, qint64 bytes) override {
        std::fill(buffer, buffer + bytes, char(0x5a));
        return true;
    }

private:
    qint32 m_mode;
    qint64 m_blocks;
};

// File descriptors of this process open on `path`.
int openHandlesTo(const QString &path) {
    const QString target = QFileInfo(path).canonicalFilePath();
    int n = 0;
    const QDir fds(QStringLiteral("/proc/self/fd"));
    for (const QString &fd : fds.entryList(QDir::System | QDir::NoDotAndDotDot)) {
        if (QFileInfo(fds.filePath(fd)).symLinkTarget() == target)
            ++n;
    }
    return n;
}

void flipByte(const QString &path, qint64 offset) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadWrite));
    QVERIFY(f.seek(offset));
    char c = 0;
    QVERIFY(f.getChar(&c));
    QVERIFY(f.seek(offset));
    QVERIFY(f.putChar(char(c ^ 0x40)));
}
} // namespace

class tst_BurnRecorder : public QObject {
    Q_OBJECT
private slots:
    void twoSessionsReadBackByXorriso() {
        EngineRig rig(EngineRig::FileDrive);
        QCOMPARE(rig.engine.DriveLetter(0), QStringLiteral("FILE"));
        QCOMPARE(rig.engine.MediaType(), 1); // a file resembles a DVD-RAM
        QCOMPARE(rig.engine.DiscStatus(), 0);
        QCOMPARE(rig.engine.SessionCount(), 1);
        QVERIFY(rig.engine.CurrentDriveCapability(10));  // writes DVD-RAM
        QVERIFY(!rig.engine.CurrentDriveCapability(6));  // no CD-R
        QVERIFY(!rig.engine.CurrentDriveCapability(64)); // past the last code
        QVERIFY(rig.engine.CurrentDriveCapability(41) && rig.engine.CurrentDriveCapability(42));
        QTemporaryDir src;
        writeFile(src.filePath("docs/report one.txt"), pseudoRandom(300000, 1));
        writeFile(src.filePath("docs/Ünïcode.bin"), pseudoRandom(12345, 2));
        writeFile(src.filePath("keep.txt"), "kept\n");
        rig.engine.AddISODirectory("\\", src.path() + "\\*.*");
        rig.engine.setVolumeIdentifier("FIRST");
        const QString log = QDir(rig.env.appFolder()).filePath("Dat/Burnlog.txt");
        rig.engine.SetLogging(true, log);
        QVERIFY(rig.write());
        QCOMPARE(
            squeezed(rig.probe.events).join(u' '),
            QStringLiteral("PreparingToWrite CreatingDirectories TrackWriteStatus ClosingTrack "
                           "ClosingSession WriteComplete"));
        QCOMPARE(rig.probe.trackPercents.last(), 100);
        QFile logFile(log);
        QVERIFY(logFile.open(QIODevice::ReadOnly));
        const QByteArray logText = logFile.readAll();
        QVERIFY2(logText.contains("Write type"), logText.constData());
        QVERIFY(logText.contains("reads back as written"));

        QCOMPARE(rig.engine.DiscStatus(), 1);
        QCOMPARE(rig.engine.LastSessionStatus(), 0);
        QCOMPARE(rig.engine.SessionCount(), 2);

        rig.engine.ClearISOImage();
        rig.probe.added.clear();
        QVERIFY(rig.engine.ImportLastSession(true));
        QVERIFY(rig.probe.added.contains("\\docs\\report one.txt"));
        QCOMPARE(rig.engine.VolumeIdentifier(), QStringLiteral("FIRST"));
        writeFile(src.filePath("new/added.bin"), pseudoRandom(70000, 3));
        writeFile(src.filePath("keep v2.txt"), "second version\n");
        rig.engine.AddISODirectory("\\new", src.filePath("new") + "/*.*");
        rig.probe.replaceAnswer = true;
        rig.engine.AddISOFile("\\keep.txt", src.filePath("keep v2.txt"));
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(rig.engine.SessionCount(), 3);

        // xorriso finds both sessions where this recorder put them, as it lays them out itself.
        const auto toc = ReadBack::xorrisoToc(rig.disc);
        QCOMPARE(toc.size(), 2);
        QCOMPARE(toc[0].first, 32);
        QCOMPARE(toc[1].first, (32 + toc[0].second + 31) / 32 * 32);
        QMap<QString, QByteArray> first{{"/keep.txt", ReadBack::sha256(src.filePath("keep.txt"))}};
        for (const char *name : {"docs/report one.txt", "docs/Ünïcode.bin"})
            first.insert(u'/' + QString(name), ReadBack::sha256(src.filePath(name)));
        QMap<QString, QByteArray> second = first;
        second["/keep.txt"] = ReadBack::sha256(src.filePath("keep v2.txt"));
        second["/new/added.bin"] = ReadBack::sha256(src.filePath("new/added.bin"));
        // The first session whole at its own address; the second at its address and through the
        // disc's head, as a mount sees it.
        QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, rig.disc, 32), first);
        for (qint32 at : {toc[1].first, -1})
            QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, rig.disc, at), second);
    }

    void simulationWritesNothing() {
        EngineRig rig(EngineRig::FileDrive);
        QTemporaryDir src;
        writeFile(src.filePath("a.bin"), pseudoRandom(400000, 5));
        rig.engine.AddISOFile("\\a.bin", src.filePath("a.bin"));
        rig.engine.setTestWrite(true);
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(QFileInfo(rig.disc).size(), 0);
        QCOMPARE(rig.engine.DiscStatus(), 0);
    }

    void cancelReleasesTheDrive() {
        EngineRig rig(EngineRig::FileDrive);
        QTemporaryDir src;
        // Large (and sparse, so free) enough that the cancel sent at 1 % lands long before the end.
        QFile big(src.filePath("big.bin"));
        QVERIFY(big.open(QIODevice::WriteOnly));
        QVERIFY(big.resize(qint64(2) * 1024 * 1024 * 1024));
        big.close();
        rig.engine.AddISOFile("\\big.bin", big.fileName());
        rig.probe.cancelAtOnePercent = true;
        // While the drive is busy the windows still learn what medium it holds.
        QList<qint32> typesDuringWrite;
        connect(&rig.engine, &CDWriterPro::TrackWriteStatus, this,
                [&] { typesDuringWrite << rig.engine.MediaType(); });
        QVERIFY(rig.write());
        QVERIFY(!typesDuringWrite.isEmpty());
        QCOMPARE(typesDuringWrite, QList<qint32>(typesDuringWrite.size(), 1));
        QCOMPARE(
            squeezed(rig.probe.events).join(u' '),
            QStringLiteral("PreparingToWrite CreatingDirectories TrackWriteStatus WriteCancelled"));
        // The disc's head never led to the broken session: the medium reads as blank.
        QCOMPARE(rig.engine.DiscStatus(), 0);
        QVERIFY(ReadBack::xorrisoToc(rig.disc).isEmpty());

        // Released: no handle on the file, and a new grab finds the drive idle.
        QCOMPARE(openHandlesTo(rig.disc), 0);
        {
            QString why;
            auto held = BurnDrive::grab("stdio:" + rig.disc, false, &why);
            QVERIFY2(held, qPrintable(why));
            QCOMPARE(burn::burn_drive_get_status(held->get(), nullptr), burn::BURN_DRIVE_IDLE);
        }
        // The next write works.
        rig.engine.ClearISOImage();
        writeFile(src.filePath("small.txt"), "after the cancel\n");
        rig.engine.AddISOFile("\\small.txt", src.filePath("small.txt"));
        rig.probe.cancelAtOnePercent = false;
        QVERIFY(rig.write());
        QVERIFY2(rig.probe.endingEvent() == "WriteComplete", qPrintable(rig.probe.errorInfo));
        QTemporaryDir out;
        QCOMPARE(ReadBack::xorrisoExtract(rig.disc, "/small.txt", out, -1),
                 ReadBack::sha256(src.filePath("small.txt")));
    }

    // block: relative to the session's start
    void mismatchAfterWriteIsAWriteError_data() {
        rows<qint32>("block", {{"first block of the volume descriptors", 16},
                               {"inside the file's data", 60}});
    }

    void mismatchAfterWriteIsAWriteError() {
        QFETCH(qint32, block);
        EngineRig rig(EngineRig::FileDrive);
        QTemporaryDir src;
        writeFile(src.filePath("a.bin"), pseudoRandom(400000, 9));
        rig.engine.AddISOFile("\\a.bin", src.filePath("a.bin"));
        qint32 hookStart = -1;
        BurnWriter::setBeforeVerifyHook([&](const QString &address, qint32 start, qint32) {
            hookStart = start;
            flipByte(address.mid(6), (qint64(start) + block) * 2048 + 100);
        });
        QVERIFY(rig.write());
        QCOMPARE(hookStart, 32);
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteError"));
        QCOMPARE(rig.probe.count("WriteComplete"), 0);
        QCOMPARE(rig.probe.writeError, 3);
        QCOMPARE(rig.probe.driveError, 1005);
        QVERIFY2(rig.probe.errorInfo.contains("differs"), qPrintable(rig.probe.errorInfo));
        // The first differing run of blocks is named.
        const qint32 run = (block / 32) * 32;
        QVERIFY2(rig.probe.errorInfo.contains(QString::number(32 + run)),
                 qPrintable(rig.probe.errorInfo));
    }

    void isoFileGoesToBlockZero() {
        EngineRig rig(EngineRig::FileDrive);
        QTemporaryDir src;
        writeFile(src.filePath("in/one.txt"), pseudoRandom(5000, 11));
        const QString iso = src.filePath("plain.iso");
        int status = -1;
        ReadBack::run("xorriso", {"-as", "mkisofs", "-R", "-o", iso, src.filePath("in")}, &status);
        QCOMPARE(status, 0);
        QVERIFY(rig.engine.WriteISOFile(iso));
        QVERIFY(rig.probe.waitForEnd(60000));
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QTemporaryDir out;
        QCOMPARE(ReadBack::xorrisoExtract(rig.disc, "/one.txt", out, 0),
                 ReadBack::sha256(src.filePath("in/one.txt")));
        // An image at block 0 stands alone: the medium takes no further session.
        QCOMPARE(rig.engine.DiscStatus(), 2);
        QCOMPARE(rig.engine.SessionCount(), 1);
        QCOMPARE(rig.engine.FreeBlocks(), 0);
    }

    void precheckOnABlankFile_data() {
        columns<qint32, qint32>("mode", "start");
        columns<qint32, QString>("driveError", "said"); // driveError: 0: the drive takes it
        QTest::newRow("data for the first session") << 1 << 32 << 0 << "";
        QTest::newRow("a plain image at block 0") << 1 << 0 << 0 << "";
        QTest::newRow("data laid out elsewhere") << 1 << 100 << 1038 << "laid out for block 100";
        // libburn's own check refuses, and its reason reaches the user.
        QTest::newRow("audio") << 0 << 32 << 1040 << "audio track prohibited";
    }

    void precheckOnABlankFile() {
        auto [mode, start, driveError, said] =
            fetch<qint32, qint32, qint32, QString>("mode", "start", "driveError", "said");
        TestEnvironment env;
        QTemporaryDir media;
        BurnRecorder recorder({"stdio:" + media.filePath("p.bin"), "libburn", "File drive", true});
        BytesTrack track(mode, 750);
        WritePlan plan;
        plan.tracks = {&track};
        plan.startAddress = start;
        const JobOutcome o = recorder.precheck(plan);
        QCOMPARE(o.kind, driveError ? JobOutcome::Failed : JobOutcome::Completed);
        QCOMPARE(o.driveError, driveError);
        QVERIFY2(o.errorInfo.contains(said), qPrintable(o.errorInfo));
        if (driveError)
            QCOMPARE(o.writeError, 3);
    }

    void eraseMakesTheFileBlank_data() { rows<bool>("quick", {{"quick", true}, {"full", false}}); }

    void eraseMakesTheFileBlank() {
        QFETCH(bool, quick);
        EngineRig rig(EngineRig::FileDrive);
        QTemporaryDir src;
        const QByteArray marker = "MARKER-" + pseudoRandom(64, 12).toHex() + "-END";
        // A file ahead of it pushes the marker's data past the blocks a quick erase clears.
        writeFile(src.filePath("a.bin"), pseudoRandom(300000, 15));
        writeFile(src.filePath("m.txt"), marker);
        rig.engine.AddISOFile("\\a.bin", src.filePath("a.bin"));
        rig.engine.AddISOFile("\\m.txt", src.filePath("m.txt"));
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
        QCOMPARE(rig.engine.DiscStatus(), 1);
        const QStringList endings{"WriteError", "WriteComplete", "EraseDiscComplete"};
        // A file has no sessions to close: finishing completes at once.
        rig.probe.events.clear();
        QVERIFY(rig.engine.FinishDisc(true));
        QVERIFY(rig.probe.waitFor(endings));
        QCOMPARE(rig.probe.events, QStringList({"ClosingSession", "ClosingDisc", "WriteComplete"}));
        QCOMPARE(rig.engine.DiscStatus(), 1);
        // Through the engine, so that no second libburn drive object reads the file while the
        // engine's own one may; the result is read by xorriso on the plain file.
        rig.probe.events.clear();
        QVERIFY(rig.engine.EraseDisc(quick));
        QVERIFY(rig.probe.waitFor(endings));
        QCOMPARE(rig.probe.events.last(), QStringLiteral("EraseDiscComplete"));
        QCOMPARE(rig.engine.DiscStatus(), 0);
        QVERIFY(ReadBack::xorrisoToc(rig.disc).isEmpty());
        QFile f(rig.disc);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll().contains(marker), quick);
        // The next session starts where the first one did.
        QVERIFY(rig.write());
        QCOMPARE(ReadBack::xorrisoToc(rig.disc).value(0).first, 32);
    }
};

QTEST_MAIN(tst_BurnRecorder)
#include "tst_burnrecorder.moc"
