// What a user meets around a write with the data window open: the test write followed by the
// real one, the disc put back from the windows, the end of every job, the power-off box and a
// disc whose last session was left open.
#include "SnapshotScrubs.h"
#include "WidgetSnapshot.h"
#include "WriteRig.h"

#include "DiscToolsRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "base/App.h"
#include "compilation/frmData.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

namespace {
// The data window opened as the disc type box opens it, with one file in the image.
frmData *openCompilation(WriteRig &rig, const QTemporaryDir &src) {
    FormRegistry::open(QStringLiteral("frmData"));
    FormRegistry::open(QStringLiteral("ResetImage"));
    Fixtures::writeFile(src.filePath("a.txt"), Fixtures::pseudoRandom(100000, 1));
    rig.frame()->Tessaly->AddISOFile("\\a.txt", src.filePath("a.txt"));
    rig.boxes.clear();
    return DefaultInstance<frmData>::peek();
}

// The steps a write shows, on the dialog's action line or, each after a space and with the
// directories' step, in the status panel.
QStringList writeSteps(bool cached, bool panel) {
    QStringList steps{"Preparing to Write Disc...", "Writing Block: #", "Closing Track...",
                      "Closing Session..."};
    if (cached)
        steps.insert(1, "Caching Track... #");
    if (!panel)
        return steps;
    for (QString &step : steps)
        step.prepend(u' ');
    steps.insert(steps.size() - 3, " Creating Directories...");
    return steps;
}

// How a write ends: the recorder's settings, cancelled or not, cached or not, the ending's event,
// its box (title after the product's name, then text), the status panel after, discs left in.
struct Ending {
    QStringList settings;
    bool cancel, cache;
    QString ending, prompt, panel;
    int discsInTray;
};
} // namespace

class tst_WriteFaults : public QObject {
    Q_OBJECT
private slots:
    void realWriteAfterTestCarriesTheShownLabel_data() {
        rows<bool>("fromDialog", {{"disc put back from the dialog", true},
                                  {"dialog closed, tray closed from the frame", false}});
    }

    void realWriteAfterTestCarriesTheShownLabel() {
        QFETCH(bool, fromDialog);
        WriteRig rig;
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        QTemporaryDir src;
        QVERIFY(openCompilation(rig, src));
        const QString shown = f->txtVolIdentifier->text();
        QVERIFY(!shown.isEmpty());
        frmBurn *burn = rig.openDialog();
        QVERIFY(rig.writeAndWait(burn));
        // A test write caches first; cancel was offered at one per cent only, never while caching.
        QCOMPARE(rig.panelTexts, writeSteps(true, true));
        QCOMPARE(rig.actionTexts, writeSteps(true, false));
        QCOMPARE(rig.cancelEnabledAt, QList<int>({1}));
        // The disc is out, nothing burnt on it, and the dialog offers the real write and says
        // how to get the disc back in.
        QVERIFY(QFileInfo(rig.ejectedImage()).size() == 0 ||
                ReadBack::run("isoinfo", {"-d", "-i", rig.ejectedImage()}).isEmpty());
        QVERIFY(rig.boxes.isEmpty() && burn->isVisible() && !gblnIsTestWrite);
        QCOMPARE(WidgetSnapshot::differences(burn, "writedialog-after-test"), QString());
        QVERIFY(!burn->tmrBurn->isActive());
        if (fromDialog) {
            burn->cmdCloseTray->click();
        } else {
            burn->cmdClose->click();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            f->runCommand("CLOSETRAY");
            burn = rig.openDialog();
            burn->optWrite->click();
        }
        // The same disc went back, not a new blank.
        QCOMPARE(rig.boxes.size(), 1);
        QVERIFY(rig.boxes[0].prompt.startsWith("Put the disc ejected last"));
        QCOMPARE(rig.trayDiscs().size(), 1);
        QVERIFY(rig.ejectedDiscs().isEmpty());
        // The disc's arrival reaches the dialog as a queued media event.
        QTRY_VERIFY(burn->cmdWrite->isEnabled());
        QCOMPARE(WidgetSnapshot::differences(burn, fromDialog ? "writefaults-disc-back"
                                                              : "writefaults-reopened-after-test"),
                 QString());
        // The real write streams.
        burn->chkCacheImage->setChecked(false);
        rig.panelTexts.clear();
        rig.actionTexts.clear();
        QVERIFY(rig.writeAndWait(burn));
        QCOMPARE(rig.ending, QStringLiteral("WriteComplete"));
        // Through a dialog opened anew, the image's size stands where the first step was shown.
        QStringList panel = writeSteps(false, true);
        if (!fromDialog)
            panel[0] = " Data Image Size: 0.16 MB  ";
        QCOMPARE(rig.panelTexts, panel);
        QCOMPARE(rig.actionTexts, writeSteps(false, false));
        QCOMPARE(rig.cancelEnabledAt, QList<int>({1, 1}));
        QCOMPARE(rig.boxes.size(), 2);
        QCOMPARE(rig.boxes[1].prompt, "Burn process completed successfully at " + f->mstrSpeed +
                                          ".\r\n\r\nEjecting disc...");
        QCOMPARE(rig.boxes[1].title, QStringLiteral("Tessaly - Information"));
        QCOMPARE(rig.boxes[1].buttons, int(vbInformation));
        QCOMPARE(rig.boxes[1].dataPanel, QStringLiteral(" Writing Complete!"));
        QVERIFY(rig.trayDiscs().isEmpty() && rig.answers.errors.isEmpty());
        QCOMPARE(f->smartStatusBar->Item("CACHING")->Value(), 0);
        QVERIFY(f->SmartMenu->Enabled() && gblnUnloadOk);
        QCOMPARE(f->txtVolIdentifier->text(), shown);
        QCOMPARE(isoinfoVolumeId(rig.ejectedImage()), shown);
    }

    void everyEndLeavesTheWindowsAtRest_data() {
        addRows<Ending>({
            {"cancelled",
             {{},
              true,
              false,
              "WriteCancelled",
              "Information|Writing Cancelled!",
              " Writing Cancelled......",
              1}},
            {"drive failure, cached",
             {{"FailAtBlock=20", "FailDriveCode=1008", "FailSense=3/0C/09 LOSS"},
              false,
              true,
              "WriteError",
              "Critical|Writing Error: (3)   The drive failed to write block 20\r\n"
              "A buffer under-run has occurred (1008).\r\n"
              "Error Sense Data: 3/0C/09 LOSS\r\n\r\nEjecting disc...",
              " A write error occurred...",
              0}},
            {"disc pulled out",
             {{"RemoveMediumAtBlock=20"},
              false,
              false,
              "WriteError",
              "Critical|Writing Error: (3)   The medium was removed during the write\r\n"
              "A disc is not present (1033).\r\nError Sense Data: 2/3A/00 MEDIUM NOT PRESENT",
              " A write error occurred...",
              0}},
        });
    }

    void everyEndLeavesTheWindowsAtRest() {
        QFETCH(Ending, row);
        // At a drive's pace, so that the cancel finds the write under way.
        WriteRig rig(row.settings + QStringList{"EmulateSpeed=1"});
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        QTemporaryDir src;
        QVERIFY(openCompilation(rig, src));
        Fixtures::writeFile(src.filePath("big.bin"), Fixtures::pseudoRandom(3 << 20, 2));
        f->Tessaly->AddISOFile("\\big.bin", src.filePath("big.bin"));
        f->Tessaly->SetWriteSpeed(4 * 176);
        const qint32 blocks = f->Tessaly->ISOImageBlocks();
        gstrVolumeSetIdentifier = "KEPT";
        rig.boxes.clear();
        frmBurn *burn = rig.openDialog();
        burn->optWrite->click();
        burn->chkCacheImage->setChecked(row.cache);
        rig.cancelWhenOffered = row.cancel;
        // What the windows show while the ending's box is up.
        QStringList atBox;
        MessageBoxService::setAnswerer([&](const MessageBoxService::Request &r) {
            frmBurn *open = frmBurn::instance();
            atBox << r.title.mid(App::ProductName().size() + 3) + u'|' + r.prompt
                  << f->smartStatusBar->Item("FILES")->Text()
                  << QString::number(open && open->tmrBurn->isActive())
                  << QString::number(open && open->cmdCancel->isEnabled());
            return MessageBoxService::defaultButton(r.buttons);
        });
        QVERIFY(rig.writeAndWait(burn));
        QCOMPARE(rig.ending, row.ending);
        QCOMPARE(atBox, (QStringList{row.prompt, " Files: 2", "0", "0"}));
        QCOMPARE(f->smartStatusBar->Item("DATA")->Text(), row.panel);
        QVERIFY(!frmBurn::instance());
        QCOMPARE(f->smartStatusBar->Item("CACHING")->Value(), 0);
        QVERIFY(f->SmartMenu->Enabled() && f->cboDevices->isEnabled() && gblnUnloadOk);
        QCOMPARE(WidgetSnapshot::differences(DefaultInstance<frmData>::peek(),
                                             "writefaults-data-at-rest",
                                             SnapshotScrubs::fileDates()),
                 QString());
        // The image survives every ending for a second try, and so do the labels but the three
        // of the dialog; a cache that was made is remembered.
        QCOMPARE(f->Tessaly->ISOFileCount(), 2);
        QCOMPARE(f->Tessaly->ISOImageBlocks(), blocks);
        QVERIFY(gstrVolumeIdentifier.isEmpty());
        QCOMPARE(gstrVolumeSetIdentifier, QStringLiteral("KEPT"));
        QVERIFY(f->mblnTrackWriteFirst);
        QCOMPARE(f->mblnCacheFirst, !row.cache);
        // Only the cancel keeps the disc in the tray for another go.
        QCOMPARE(rig.trayDiscs().size(), row.discsInTray);
        QCOMPARE(rig.ejectedDiscs().size(), 1 - row.discsInTray);
        if (row.cancel) {
            // Offered at one per cent.
            QCOMPARE(rig.cancelEnabledAt.value(0), 1);
            QVERIFY(rig.panelTexts.contains(" Aborting Write...Please Wait!"));
            QCOMPARE(f->smartStatusBar->Item("STATUSIMG")->ImageKey(), QStringLiteral("MEDIA"));
        }
    }

    void closeWindowsWhenFinished_data() {
        rows<bool>("powerOff",
                   {{"the computer goes off", true}, {"the power-off is refused", false}});
    }

    void closeWindowsWhenFinished() {
        QFETCH(bool, powerOff);
        int asked = 0;
        {
            WriteRig rig;
            QVERIFY(rig.started());
            SystemCalls::setPowerOffHandler([&] {
                ++asked;
                return powerOff;
            });
            QTemporaryDir src;
            QVERIFY(openCompilation(rig, src));
            frmBurn *burn = rig.openDialog();
            burn->optWrite->click();
            burn->chkCloseWin->setChecked(true);
            QVERIFY(rig.writeAndWait(burn));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(asked, 1);
            QVERIFY(!frmBurn::instance());
            QCOMPARE(DefaultInstance<mdiMain>::exists(), !powerOff);
            QCOMPARE(DefaultInstance<frmData>::exists(), !powerOff);
            // Leaving asks nothing.
            QCOMPARE(rig.boxes.isEmpty(), powerOff);
            if (!powerOff) {
                // Told, and still usable: the menus work and the compilation can be closed.
                QCOMPARE(rig.boxes.size(), 1);
                QVERIFY(rig.boxes[0].prompt.contains("could not be switched off"));
                QVERIFY(rig.frame()->SmartMenu->Enabled());
                QVERIFY(!gblnCloseWindows);
                QCOMPARE(WidgetSnapshot::differences(DefaultInstance<frmData>::peek(),
                                                     "writefaults-data-at-rest",
                                                     SnapshotScrubs::fileDates()),
                         QString());
                DefaultInstance<frmData>::unload();
                QVERIFY(!DefaultInstance<frmData>::exists());
            }
        }
        SystemCalls::setPowerOffHandler([] { return false; });
    }

    void openLastSessionIsTold() {
        WriteRig rig({"FailAtBlock=20"});
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        QTemporaryDir src;
        QVERIFY(openCompilation(rig, src));
        frmBurn *burn = rig.openDialog();
        burn->optWrite->click();
        QVERIFY(rig.writeAndWait(burn));
        QCOMPARE(rig.ending, QStringLiteral("WriteError"));
        rig.boxes.clear();
        // The failed disc put back: its last session is open.
        f->runCommand("CLOSETRAY");
        QCOMPARE(f->Tessaly->LastSessionStatus(), int(CDWriterPro::SessionIncomplete));
        QTRY_COMPARE(rig.boxes.size(), 2); // the arrival is told by a queued media event
        const QString told = rig.boxes[1].prompt;
        QVERIFY(told.startsWith("The last session of this disc is open"));
        QVERIFY(f->SmartMenu->Item("SESSION")->Enabled());
        // A write is refused with the same words, before anything goes to the drive.
        burn = rig.openDialog();
        burn->optWrite->click();
        burn->cmdWrite->click();
        QCOMPARE(rig.boxes.last().prompt, told);
        QVERIFY(!burn->tmrBurn->isActive());
        QCOMPARE(WidgetSnapshot::differences(burn, "writefaults-refused-open-session"), QString());
    }
};

QTEST_MAIN(tst_WriteFaults)
#include "tst_writefaults.moc"
