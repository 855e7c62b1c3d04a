// The write dialog and the frame's handling of a write, on the Image Recorder: what a user sees
// from the click to the end, and what is left for the next try.
#include "Fixtures.h"
#include "Rows.h"
#include "SnapshotScrubs.h"
#include "VolumeLabels.h"
#include "WidgetSnapshot.h"
#include "WriteRig.h"

#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "engine/notify/CDNotify.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/AnimationControl.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;

namespace {

// A small data image of two files in a folder.
void fillImage(CDWriterPro *cd, const QTemporaryDir &src, int size = 200 * 1024) {
    writeFile(src.filePath("docs/a.txt"), pseudoRandom(size, 1));
    writeFile(src.filePath("b.bin"), pseudoRandom(size / 2, 2));
    cd->AddISOFile("\\docs\\a.txt", src.filePath("docs/a.txt"));
    cd->AddISOFile("\\b.bin", src.filePath("b.bin"));
}

const QStringList labelValues{"VOLUME", "APP", "PUB", "SYS", "SET", "PREP", "COPY", "ABS", "BIB"};

struct Options {
    int kind;
    bool finalize, joliet, cache, mode2, logging, expectFinalize;
    int expectFileSystem, expectTrackMode;
};
struct Medium {
    int kind;
    WriteRig::Tray tray;
    QString text, snapshot; // the dialog after the refusal
};
struct Percent {
    int tracks, track, written, toWrite;
    QString snapshot; // bars left at 37 where the numbers give no percentage
};
} // namespace

class tst_WriteDialog : public QObject {
    Q_OBJECT
private slots:
    void openingState_data() {
        columns<int, QString>("kind", "snapshot");
        QTest::newRow("data") << 0 << "writedialog-data";
        QTest::newRow("audio") << 1 << "writedialog-audio";
    }

    void openingState() {
        auto [kind, snapshot] = fetch<int, QString>("kind", "snapshot");
        WriteRig rig({}, kind);
        QVERIFY(rig.started());
        frmBurn *burn = rig.openDialog();
        QVERIFY(burn && burn->isVisible() && !burn->tmrBurn->isActive());
        // Pressing the button straight away runs a test, never the real write.
        QCOMPARE(WidgetSnapshot::differences(burn, snapshot), QString());
        burn->optWrite->click();
        QVERIFY(!gblnIsTestWrite);
        burn->optTest->click();
        QVERIFY(gblnIsTestWrite);
        // The test write took the close-all box away; the real write leaves it as it was.
        burn->optWrite->click();
        burn->chkLogging->click();
        QCOMPARE(WidgetSnapshot::differences(burn, snapshot + "-real-logged",
                                             SnapshotScrubs::folder(rig.appFolder())),
                 QString());
        burn->chkLogging->click();
        QCOMPARE(burn->chkLogging->text(), QStringLiteral("Enable Logging"));
    }

    void mediumChecks_data() {
        using Tray = WriteRig::Tray;
        addRows<Medium>({
            {"data, no disc",
             {0, Tray::Empty, "Please Insert Writable Media before continuing!",
              "writedialog-refused-no-disc"}},
            {"data, closed disc",
             {0, Tray::ClosedDisc,
              "This disc is closed, please insert an empty disc or a multisession disc!",
              "writedialog-refused-closed-disc"}},
            {"audio, no disc",
             {1, Tray::Empty, "Please load an empty disc for recording audio.",
              "writedialog-refused-audio-no-disc"}},
            {"audio, a disc with a session",
             {1, Tray::AppendableDisc, "Please insert an empty disc for recording audio.",
              "writedialog-refused-audio-appendable"}},
            {"no recorder",
             {0, Tray::NoRecorder, "A drive is not selected or does not exist.",
              "writedialog-refused-no-recorder"}},
        });
    }

    void mediumChecks() {
        QFETCH(Medium, row);
        WriteRig rig({}, row.kind, "CD-R 80", row.tray);
        QVERIFY(rig.started());
        if (row.tray == WriteRig::Tray::NoRecorder && glngCurrentDrive >= 0)
            QSKIP("this machine has a recorder of its own");
        rig.boxes.clear();
        frmBurn *burn = rig.openDialog();
        burn->cmdWrite->click();
        QTest::qWait(20);
        QCOMPARE(rig.boxes.size(), 1);
        QCOMPARE(rig.boxes[0].prompt, row.text);
        QCOMPARE(rig.boxes[0].title, QStringLiteral("Tessaly - Information"));
        QCOMPARE(rig.boxes[0].buttons, int(vbInformation));
        // The dialog stays as it was: nothing started. Without a drive to protect the write the
        // burn-proof box is greyed and off.
        QCOMPARE(frmBurn::instance(), burn);
        QCOMPARE(WidgetSnapshot::differences(burn, row.snapshot), QString());
        QVERIFY(!burn->tmrBurn->isActive() && rig.panelTexts.isEmpty());
    }

    void optionsReachTheEngine_data() {
        // An audio write leaves the file system as it was (1).
        addRows<Options>({
            {"data, all off", {0, false, false, false, false, false, false, 0, 1}},
            {"data, all on", {0, true, true, true, true, true, true, 1, 2}},
            {"data, joliet and cache", {0, false, true, true, false, false, false, 1, 1}},
            {"audio, cache off", {1, false, false, false, false, false, true, 1, 0}},
            {"audio, logging asked", {1, false, false, true, false, true, true, 1, 0}},
        });
    }

    void optionsReachTheEngine() {
        QFETCH(Options, row);
        const int kind = row.kind;
        WriteRig rig({}, kind);
        QVERIFY(rig.started());
        CDWriterPro *cd = rig.frame()->Tessaly;
        QTemporaryDir src;
        if (kind == 0) {
            fillImage(cd, src);
        } else {
            writeFile(src.filePath("t.wav"), cdWave(rampPcm(44100 * 4)));
            QVERIFY(cd->AddAudioTrack(src.filePath("t.wav"), 1));
        }
        // What the engine held before: a field the write must not touch keeps it.
        cd->setISOFileSystem(1);
        cd->setVolumeIdentifier("BEFORE");
        cd->setCloseSession(false);
        for (int i = 0; i < labelValues.size(); ++i)
            *volumeLabels()[i].global = labelValues[i];
        frmBurn *burn = rig.openDialog();
        if (burn->chkFinalizeDisc->isEnabled())
            burn->chkFinalizeDisc->setChecked(row.finalize);
        if (burn->chkUseJoliet->isEnabled())
            burn->chkUseJoliet->setChecked(row.joliet);
        burn->chkCacheImage->setChecked(row.cache);
        if (burn->chkUseMode2XA->isEnabled())
            burn->chkUseMode2XA->setChecked(row.mode2);
        burn->chkLogging->setChecked(row.logging);
        QVERIFY(rig.writeAndWait(burn));
        QCOMPARE(rig.ending, QStringLiteral("WriteComplete"));
        QVERIFY(cd->TestWrite() && cd->CloseSession());
        QCOMPARE(cd->FinalizeDisc(), row.expectFinalize);
        QCOMPARE(cd->CacheImage(), row.cache);
        QCOMPARE(cd->TrackMode(), row.expectTrackMode);
        QCOMPARE(cd->ISOFileSystem(), row.expectFileSystem);
        if (kind == 0) {
            const QStringList labels{cd->VolumeIdentifier(),        cd->ApplicationIdentifier(),
                                     cd->PublisherIdentifier(),     cd->SystemIdentifier(),
                                     cd->VolumeSetIdentifier(),     cd->DataPreparerIdentifier(),
                                     cd->CopyrightFileIdentifier(), cd->AbstractFileIdentifier(),
                                     cd->BiblioFileIdentifier()};
            QCOMPARE(labels, labelValues);
        } else {
            QCOMPARE(cd->VolumeIdentifier(), QStringLiteral("BEFORE"));
        }
        // The log is the engine's; the dialog only names it, and only for data.
        QCOMPARE(QFile::exists(rig.appFolder() + "/Dat/Burnlog.txt"), row.logging && kind == 0);
        QVERIFY(rig.answers.errors.isEmpty());
    }

    void trackPercentages_data() {
        addRows<Percent>({
            {"half of the second of three", {3, 2, 500, 1000, "writedialog-track2-50-total-50"}},
            {"one per cent of the first", {3, 1, 10, 1000, "writedialog-track1-1-total-0"}},
            {"a step over one per cent", {3, 1, 20, 1000, "writedialog-track1-2-total-1"}},
            {"end of the last of three", {3, 3, 1000, 1000, "writedialog-track3-100-total-100"}},
            {"half rounds to even, down", {1, 1, 25, 1000, "writedialog-track1-2-total-2"}},
            {"half rounds to even, up", {1, 1, 35, 1000, "writedialog-track1-4-total-4"}},
            {"no tracks to write", {0, 1, 500, 1000, "writedialog-track1-50-total-37"}},
            {"nothing to write in the track", {1, 1, 0, 0, "writedialog-track1-37-total-37"}},
        });
    }

    void trackPercentages() {
        QFETCH(Percent, row);
        WriteRig rig({}, 1);
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        frmBurn *burn = rig.openDialog();
        burn->prgTotalProgress->setValue(37);
        burn->prgTrackProgress->setValue(37);
        gintTracksToWrite = qint16(row.tracks);
        // As the engine tells it: the frame and the dialog each hear it.
        Q_EMIT f->Tessaly->TrackWriteStatus(row.track, row.written, row.toWrite);
        // A fault of the display is passed over, never shown.
        QVERIFY(rig.answers.errors.isEmpty());
        // Cancel is offered at one per cent only.
        QCOMPARE(WidgetSnapshot::differences(burn, row.snapshot), QString());
        const QString number = QString::number(row.track).rightJustified(2, u'0');
        QCOMPARE(f->smartStatusBar->Item("DATA")->Text(), " Writing Track #" + number + "... ");
        // The first block of a write empties the caching bar, cached or not.
        QCOMPARE(f->smartStatusBar->Item("CACHING")->Value(), 0);
        QVERIFY(!f->mblnTrackWriteFirst);
    }

    // Each step the engine or the tray reports, after one per cent of a track gave Cancel back:
    // the snapshot is named after the row.
    void engineSteps_data() {
        QTest::addColumn<int>("kind");
        for (const char *step : {"preparing", "caching", "closing-track", "closing-session",
                                 "closing-disc", "disc-arrived", "disc-removed"})
            QTest::addRow("data-%s", step) << 0;
        for (const char *step : {"caching", "closing-track"})
            QTest::addRow("audio-%s", step) << 1;
    }

    void engineSteps() {
        QFETCH(int, kind);
        WriteRig rig({}, kind);
        QVERIFY(rig.started());
        CDWriterPro *cd = rig.frame()->Tessaly;
        frmBurn *burn = rig.openDialog();
        gintTracksToWrite = 1;
        Q_EMIT cd->TrackWriteStatus(1, 10, 1000);
        const QString drive = cd->DriveLetter(glngCurrentDrive);
        const QMap<QString, std::function<void()>> steps{
            {"preparing", [&] { Q_EMIT cd->PreparingToWrite(); }},
            {"caching", [&] { Q_EMIT cd->CachingStatus(42); }},
            {"closing-track", [&] { Q_EMIT cd->ClosingTrack(3); }},
            {"closing-session", [&] { Q_EMIT cd->ClosingSession(); }},
            {"closing-disc", [&] { Q_EMIT cd->ClosingDisc(); }},
            {"disc-arrived", [&] { Q_EMIT rig.frame()->CDNotify1->Arrival(drive); }},
            {"disc-removed", [&] { Q_EMIT rig.frame()->CDNotify1->RemoveComplete(drive); }},
        };
        const QString tag = QTest::currentDataTag();
        steps[tag.section(u'-', 1)]();
        QCOMPARE(WidgetSnapshot::differences(burn, "writedialog-step-" + tag), QString());
        QVERIFY(rig.answers.errors.isEmpty());
    }

    void closingEmptiesThreeLabels() {
        WriteRig rig;
        QVERIFY(rig.started());
        // Refused during a write, then done at rest.
        for (bool writing : {true, false}) {
            for (const VolumeLabel &label : volumeLabels())
                *label.global = "LABEL";
            frmBurn *burn = rig.openDialog();
            rig.frame()->EnableForm(!writing);
            burn->cmdClose->click();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(frmBurn::instance() != nullptr, writing);
            if (writing)
                QCOMPARE(WidgetSnapshot::differences(burn, "writedialog-data"), QString());
            QStringList values;
            for (const VolumeLabel &label : volumeLabels())
                values << *label.global;
            QCOMPARE(values, QStringList({"", "", "", "LABEL", "LABEL", "LABEL", "LABEL", "LABEL",
                                          "LABEL"}));
        }
    }
};

QTEST_MAIN(tst_WriteDialog)
#include "tst_writedialog.moc"
