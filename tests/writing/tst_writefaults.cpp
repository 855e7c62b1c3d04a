// What a user meets around a write with the data window open: the test write followed by the
// real one, the disc put back from the windows, the end of every job, the power-off box and a
// disc whose last session was left open.
#include "SnapshotScrubs.h"
#include "WidgetSnapshot.h"
#include "WriteRig.h"

#include "DiscToolsRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
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
} // namespace

class tst_WriteFaults : public QObject {
    Q_OBJECT
private slots:
    void realWriteAfterTestCarriesTheShownLabel_data() {
        QTest::addColumn<bool>("fromDialog");
        QTest::newRow("disc put back from the dialog") << true;
        QTest::newRow("dialog closed, tray closed from the frame") << false;
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
        QVERIFY(rig.writeAndWait(burn));
        QCOMPARE(rig.ending, QStringLiteral("WriteComplete"));
        QCOMPARE(f->txtVolIdentifier->text(), shown);
        QCOMPARE(isoinfoVolumeId(rig.ejectedImage()), shown);
    }

    void everyEndLeavesTheWindowsAtRest_data() {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QString>("ending");
        QTest::addColumn<bool>("saysEjecting");
        QTest::newRow("cancelled") << QStringList{} << true << "WriteCancelled" << false;
        QTest::newRow("drive failure")
            << QStringList{"FailAtBlock=20"} << false << "WriteError" << true;
        QTest::newRow("disc pulled out")
            << QStringList{"RemoveMediumAtBlock=20"} << false << "WriteError" << false;
    }

    void everyEndLeavesTheWindowsAtRest() {
        QFETCH(QStringList, settings);
        QFETCH(bool, cancel);
        QFETCH(QString, ending);
        QFETCH(bool, saysEjecting);
        // At a drive's pace, so that the cancel finds the write under way.
        WriteRig rig(settings << "EmulateSpeed=1");
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        QTemporaryDir src;
        QVERIFY(openCompilation(rig, src));
        Fixtures::writeFile(src.filePath("big.bin"), Fixtures::pseudoRandom(3 << 20, 2));
        f->Tessaly->AddISOFile("\\big.bin", src.filePath("big.bin"));
        f->Tessaly->SetWriteSpeed(4 * 176);
        const qint32 blocks = f->Tessaly->ISOImageBlocks();
        rig.boxes.clear();
        frmBurn *burn = rig.openDialog();
        burn->optWrite->click();
        burn->chkCacheImage->setChecked(false);
        rig.cancelWhenOffered = cancel;
        // What the windows show while the ending's box is up.
        QStringList atBox;
        MessageBoxService::setAnswerer([&](const MessageBoxService::Request &r) {
            frmBurn *open = frmBurn::instance();
            atBox << r.prompt << f->smartStatusBar->Item("FILES")->Text()
                  << f->smartStatusBar->Item("DATA")->Text()
                  << QString::number(open && open->tmrBurn->isActive())
                  << QString::number(open && open->cmdCancel->isEnabled());
            return MessageBoxService::defaultButton(r.buttons);
        });
        QVERIFY(rig.writeAndWait(burn));
        QCOMPARE(rig.ending, ending);
        QCOMPARE(atBox.size(), 5);
        QCOMPARE(atBox[0].contains("Ejecting disc..."), saysEjecting);
        QCOMPARE(atBox[1], QStringLiteral(" Files: 2"));
        QCOMPARE(atBox.mid(3), (QStringList{"0", "0"}));
        QVERIFY(!frmBurn::instance());
        QCOMPARE(f->smartStatusBar->Item("CACHING")->Value(), 0);
        QVERIFY(f->SmartMenu->Enabled() && f->cboDevices->isEnabled() && gblnUnloadOk);
        QCOMPARE(WidgetSnapshot::differences(DefaultInstance<frmData>::peek(),
                                             "writefaults-data-at-rest",
                                             SnapshotScrubs::fileDates()),
                 QString());
        // The image survives every ending for a second try.
        QCOMPARE(f->Tessaly->ISOFileCount(), 2);
        QCOMPARE(f->Tessaly->ISOImageBlocks(), blocks);
        if (cancel) {
            // Offered at one per cent; the disc stays in, ready for the next try.
            QCOMPARE(atBox[0], QStringLiteral("Writing Cancelled!"));
            QCOMPARE(atBox[2], QStringLiteral(" Writing Cancelled......"));
            QCOMPARE(rig.cancelEnabledAt.value(0), 1);
            QVERIFY(rig.panelTexts.contains(" Aborting Write...Please Wait!"));
            QCOMPARE(rig.trayDiscs().size(), 1);
            QVERIFY(rig.ejectedDiscs().isEmpty());
            QCOMPARE(f->smartStatusBar->Item("STATUSIMG")->ImageKey(), QStringLiteral("MEDIA"));
            QVERIFY(f->mblnCacheFirst && f->mblnTrackWriteFirst);
        }
    }

    void closeWindowsWhenFinished_data() {
        QTest::addColumn<bool>("powerOff");
        QTest::newRow("the computer goes off") << true;
        QTest::newRow("the power-off is refused") << false;
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
    }
};

QTEST_MAIN(tst_WriteFaults)
#include "tst_writefaults.moc"
