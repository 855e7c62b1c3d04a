// Erasing rewritable media and closing sessions and discs on the Image Recorder.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"

#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

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

QString dataFile() {
    const QDir tray(ImageRecorder::trayFolder());
    const QStringList data = tray.entryList({"*.iso", "*.bin"}, QDir::Files);
    return data.isEmpty() ? QString() : tray.filePath(data.first());
}

} // namespace

class tst_EraseFinish : public QObject {
    Q_OBJECT
private slots:
    void erase_data();
    void erase();
    void eraseAnAudioDisc();
    void finish_data();
    void finish();
    void finishRefused_data();
    void finishRefused();
};

void tst_EraseFinish::erase_data() {
    QTest::addColumn<QString>("medium");
    QTest::addColumn<bool>("quick");
    QTest::addColumn<bool>("erasable");
    QTest::newRow("CD-RW quick") << "CD-RW 80" << true << true;
    QTest::newRow("CD-RW full") << "CD-RW 74" << false << true;
    QTest::newRow("DVD-RW quick") << "DVD-RW" << true << true;
    QTest::newRow("DVD+RW full") << "DVD+RW" << false << true;
    QTest::newRow("DVD-RAM quick") << "DVD-RAM" << true << true;
    QTest::newRow("CD-R") << "CD-R 80" << true << false;
    QTest::newRow("DVD-R full") << "DVD-R" << false << false;
    QTest::newRow("DVD+R") << "DVD+R" << true << false;
}

void tst_EraseFinish::erase() {
    QFETCH(QString, medium);
    QFETCH(bool, quick);
    QFETCH(bool, erasable);
    EngineRig rig(medium);
    QVERIFY(writeData(rig, true));
    const qint32 free = rig.engine.FreeBlocks();
    const qint64 written = QFileInfo(dataFile()).size();
    QVERIFY(written > 0);
    rig.probe.events.clear();
    QCOMPARE(rig.engine.EraseDisc(quick), erasable);
    if (!erasable) {
        // Refused before anything starts: no event, the disc as it was.
        QTest::qWait(50);
        QVERIFY(rig.probe.events.isEmpty());
        QCOMPARE(rig.engine.DiscStatus(), 1);
        QCOMPARE(rig.engine.FreeBlocks(), free);
        return;
    }
    QVERIFY(!rig.engine.EraseDisc(quick)); // one job at a time
    rig.engine.CancelWrite();              // an erase can't be cancelled
    QVERIFY(rig.probe.waitFor({"EraseDiscComplete", "WriteError"}));
    QCOMPARE(rig.probe.count("EraseDiscComplete"), 1);
    QCOMPARE(rig.probe.events, QStringList({"EraseDiscStart", "EraseDiscComplete"}));
    // A blank disc, as a drive reports it.
    QCOMPARE(rig.engine.DiscStatus(), 0);
    QCOMPARE(rig.engine.LastSessionStatus(), 0);
    QCOMPARE(rig.engine.SessionCount(), 1);
    QVERIFY(rig.engine.FreeBlocks() > free);
    // A quick erase leaves the old blocks where the table of contents no longer points; a full
    // one blanks the whole medium.
    QCOMPARE(QFileInfo(dataFile()).size(), quick ? written : 0);
    // And it takes a new session from block 0.
    QVERIFY(writeData(rig, true, 2));
    QCOMPARE(rig.engine.SessionCount(), 2);
}

void tst_EraseFinish::eraseAnAudioDisc() {
    EngineRig rig("CD-RW 80");
    QTemporaryDir dir;
    writeFile(dir.filePath("a.wav"), cdWave(pseudoRandom(588 * 400 * 4, 5)));
    QVERIFY(rig.engine.AddAudioTrack(dir.filePath("a.wav"), 1));
    QVERIFY(rig.write());
    QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
    QCOMPARE(QDir(ImageRecorder::trayFolder()).entryList({"*.cue"}).size(), 1);
    rig.probe.events.clear();
    QVERIFY(rig.engine.EraseDisc(false));
    QVERIFY(rig.probe.waitFor({"EraseDiscComplete", "WriteError"}));
    QCOMPARE(rig.probe.count("EraseDiscComplete"), 1);
    QCOMPARE(rig.engine.DiscStatus(), 0);
    QCOMPARE(rig.engine.FreeBlocks(), 360000);
    QCOMPARE(QDir(ImageRecorder::trayFolder()).entryList({"*.cue"}).size(), 0);
    // A data disc can go on it now.
    QVERIFY(writeData(rig, true));
}

void tst_EraseFinish::finish_data() {
    QTest::addColumn<bool>("closeSession"); // how the write left its session
    QTest::addColumn<bool>("closeDisc");
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<int>("discStatus");
    QTest::addColumn<int>("lastSessionStatus");
    QTest::addColumn<int>("sessionCount");
    const QStringList session{"ClosingSession", "WriteComplete"};
    const QStringList disc{"ClosingSession", "ClosingDisc", "WriteComplete"};
    // An incomplete session closed: the disc stays open with an empty session after it.
    QTest::newRow("incomplete, close session") << false << false << session << 1 << 0 << 2;
    QTest::newRow("incomplete, close disc") << false << true << disc << 2 << 3 << 1;
    QTest::newRow("open disc, close disc") << true << true << disc << 2 << 3 << 1;
    QTest::newRow("open disc, close session again") << true << false << session << 1 << 0 << 2;
}

void tst_EraseFinish::finish() {
    QFETCH(bool, closeSession);
    QFETCH(bool, closeDisc);
    QFETCH(QStringList, events);
    QFETCH(int, discStatus);
    QFETCH(int, lastSessionStatus);
    QFETCH(int, sessionCount);
    EngineRig rig("CD-R 80");
    QVERIFY(writeData(rig, closeSession));
    QCOMPARE(rig.engine.DiscStatus(), 1);
    QCOMPARE(rig.engine.LastSessionStatus(), closeSession ? 0 : 1);
    rig.probe.events.clear();
    QVERIFY(rig.engine.FinishDisc(closeDisc));
    QVERIFY(rig.probe.waitForEnd());
    QCOMPARE(rig.probe.events, events);
    QCOMPARE(rig.engine.DiscStatus(), discStatus);
    QCOMPARE(rig.engine.LastSessionStatus(), lastSessionStatus);
    QCOMPARE(rig.engine.SessionCount(), sessionCount);
    QCOMPARE(rig.engine.FreeBlocks() > 0, discStatus == 1);
    // The closed session still reads as the ISO image it holds.
    const QString iso = rig.eject("iso");
    const QByteArray found = ReadBack::run("xorriso", {"-indev", iso, "-find", "/a.bin"});
    QVERIFY2(found.contains("a.bin"), found.constData());
}

void tst_EraseFinish::finishRefused_data() {
    QTest::addColumn<QString>("state");
    QTest::newRow("no disc") << "none";
    QTest::newRow("blank disc") << "blank";
    QTest::newRow("closed disc") << "closed";
}

void tst_EraseFinish::finishRefused() {
    QFETCH(QString, state);
    EngineRig rig("CD-R 80");
    if (state == u"none")
        rig.engine.MoveTray(false);
    if (state == u"closed") {
        QVERIFY(writeData(rig, true));
        rig.probe.events.clear();
        QVERIFY(rig.engine.FinishDisc(true));
        QVERIFY(rig.probe.waitForEnd());
        QCOMPARE(rig.engine.DiscStatus(), 2);
    }
    rig.probe.events.clear();
    QVERIFY(!rig.engine.FinishDisc(false));
    QVERIFY(!rig.engine.FinishDisc(true));
    QTest::qWait(50);
    QVERIFY(rig.probe.events.isEmpty());
}

QTEST_GUILESS_MAIN(tst_EraseFinish)
#include "tst_erasefinish.moc"
