// Erasing rewritable media and closing sessions and discs on the Image Recorder.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"

#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

using namespace Fixtures;

namespace {
// Writes one data session; closed or left incomplete as `closeSession` says.
bool writeData(EngineRig &rig, bool closeSession, int seed = 1) {
    QTemporaryDir src;
    writeFile(src.filePath("a.bin"), pseudoRandom(200000, seed));
    rig.engine.setTrackMode(1);
    rig.engine.setFinalizeDisc(false);
    rig.engine.setCloseSession(closeSession);
    rig.engine.ClearISOImage();
    rig.engine.AddISODirectory("\\", src.path() + "/*.*");
    return rig.write() && rig.probe.endingEvent() == u"WriteComplete";
}

struct Finish {
    QString state;
    bool closeDisc;
    QStringList events;
    int discStatus, lastSessionStatus, sessionCount;
};

QString dataFile() {
    const QDir tray(ImageRecorder::trayFolder());
    const QStringList data = tray.entryList({"*.iso", "*.bin"}, QDir::Files);
    return data.isEmpty() ? QString() : tray.filePath(data.first());
}

} // namespace

class tst_EraseFinish : public QObject {
    Q_OBJECT
private slots:
    void erase_data() {
        columns<QString, bool, bool>("medium", "quick", "audio");
        QTest::addColumn<int>("capacity"); // free blocks once blank; 0: not erasable
        QTest::newRow("CD-RW quick") << "CD-RW 80" << true << false << 360000;
        QTest::newRow("CD-RW audio full") << "CD-RW 80" << false << true << 360000;
        QTest::newRow("DVD+RW full") << "DVD+RW" << false << false << 2295104;
        QTest::newRow("DVD-RAM quick") << "DVD-RAM" << true << false << 2236704;
        QTest::newRow("CD-R") << "CD-R 80" << true << false << 0;
        QTest::newRow("DVD-R full") << "DVD-R" << false << false << 0;
    }

    void erase() {
        auto [medium, quick, audio, capacity] =
            fetch<QString, bool, bool, int>("medium", "quick", "audio", "capacity");
        EngineRig rig(medium);
        if (audio) {
            QTemporaryDir dir;
            writeFile(dir.filePath("a.wav"), cdWave(pseudoRandom(588 * 400 * 4, 5)));
            QVERIFY(rig.engine.AddAudioTrack(dir.filePath("a.wav"), 1));
            QVERIFY(rig.write());
            QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
            QCOMPARE(QDir(ImageRecorder::trayFolder()).entryList({"*.cue"}).size(), 1);
        } else {
            QVERIFY(writeData(rig, true));
        }
        const qint32 free = rig.engine.FreeBlocks();
        const qint64 written = QFileInfo(dataFile()).size();
        QVERIFY(written > 0);
        rig.probe.events.clear();
        QCOMPARE(rig.engine.EraseDisc(quick), capacity > 0);
        if (capacity == 0) {
            // Refused before anything starts: no event, the disc as it was.
            QCoreApplication::processEvents();
            QVERIFY(rig.probe.events.isEmpty());
            QCOMPARE(rig.engine.DiscStatus(), 1);
            QCOMPARE(rig.engine.FreeBlocks(), free);
            return;
        }
        QVERIFY(!rig.engine.EraseDisc(quick)); // one job at a time
        rig.engine.CancelWrite();              // an erase can't be cancelled
        QVERIFY(rig.probe.waitFor({"EraseDiscComplete", "WriteError"}));
        QCOMPARE(rig.probe.events, QStringList({"EraseDiscStart", "EraseDiscComplete"}));
        // A blank disc, as a drive reports it, without the audio disc's cue sheet.
        QCOMPARE(rig.engine.DiscStatus(), 0);
        QCOMPARE(rig.engine.LastSessionStatus(), 0);
        QCOMPARE(rig.engine.SessionCount(), 1);
        QCOMPARE(rig.engine.FreeBlocks(), capacity);
        QVERIFY(QDir(ImageRecorder::trayFolder()).entryList({"*.cue"}).isEmpty());
        // A quick erase leaves the old blocks where no table of contents points; a full one
        // blanks the whole medium.
        QCOMPARE(QFileInfo(dataFile()).size(), quick ? written : 0);
        // And it takes a new data session from block 0.
        QVERIFY(writeData(rig, true, 2));
        QCOMPARE(rig.engine.SessionCount(), 2);
    }

    void finish_data() {
        const QStringList session{"ClosingSession", "WriteComplete"};
        const QStringList disc{"ClosingSession", "ClosingDisc", "WriteComplete"};
        // What lies in the drive, the job, its events (none: refused) and the disc after it. An
        // incomplete session closed leaves the disc open with an empty session after it.
        addRows<Finish>({
            {"incomplete, close session", {"incomplete", false, session, 1, 0, 2}},
            {"incomplete, close disc", {"incomplete", true, disc, 2, 3, 1}},
            {"open disc, close disc", {"open", true, disc, 2, 3, 1}},
            {"open disc, close session again", {"open", false, session, 1, 0, 2}},
            {"no disc", {"none", false, {}, 0, 0, 0}},
            {"blank disc", {"blank", true, {}, 0, 0, 1}},
            {"closed disc", {"closed", false, {}, 2, 3, 1}},
        });
    }

    void finish() {
        QFETCH(Finish, row);
        const auto &[state, closeDisc, events, discStatus, lastSessionStatus, sessionCount] = row;
        EngineRig rig("CD-R 80");
        if (state == u"none")
            rig.engine.MoveTray(false);
        else if (state != u"blank")
            QVERIFY(writeData(rig, state != u"incomplete"));
        if (state == u"closed") {
            rig.probe.events.clear(); // so that the wait is for this job's end
            QVERIFY(rig.engine.FinishDisc(true));
            QVERIFY(rig.probe.waitForEnd());
        }
        rig.probe.events.clear();
        QCOMPARE(rig.engine.FinishDisc(closeDisc), !events.isEmpty());
        if (events.isEmpty()) {
            QVERIFY(!rig.engine.FinishDisc(!closeDisc));
            QCoreApplication::processEvents(); // refused before anything starts: no event
        } else {
            QVERIFY(rig.probe.waitForEnd());
        }
        QCOMPARE(rig.probe.events, events);
        if (state == u"none")
            return;
        QCOMPARE(rig.engine.DiscStatus(), discStatus);
        QCOMPARE(rig.engine.LastSessionStatus(), lastSessionStatus);
        QCOMPARE(rig.engine.SessionCount(), sessionCount);
        QCOMPARE(rig.engine.FreeBlocks() > 0, discStatus < 2);
        QCOMPARE(rig.engine.MaxWriteSpeed() > 0, discStatus < 2);
        // A closed disc is still imported for a look at it.
        if (discStatus == 2) {
            rig.engine.ClearISOImage();
            QVERIFY(rig.engine.ImportLastSession(true));
            QCOMPARE(rig.engine.ISOFileCount(), 1);
        }
        if (state == u"blank")
            return;
        // The closed session still reads as the ISO image it holds.
        const QString iso = rig.eject("iso");
        const QByteArray found = ReadBack::run("xorriso", {"-indev", iso, "-find", "/a.bin"});
        QVERIFY2(found.contains("a.bin"), found.constData());
    }
};

QTEST_GUILESS_MAIN(tst_EraseFinish)
#include "tst_erasefinish.moc"
