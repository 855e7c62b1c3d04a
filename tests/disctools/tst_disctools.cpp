// The disc and recorder information windows and the erase dialog, on the Image Recorder and a
// libburn file drive.
#include "DiscToolsRig.h"
#include "Fixtures.h"
#include "OutsideTools.h"
#include "Rows.h"
#include "Waits.h"

#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "disctools/DiscInfoWindows.h"
#include "disctools/frmDiscInfo.h"
#include "disctools/frmErase.h"
#include "disctools/frmRecorderInfo.h"
#include "disctools/frmSupDrives.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>
#include <QtWidgets>
#include <optional>

namespace {
struct Refusal {
    QString medium, withheld, said;
};

enum Disc { Blank, OpenData, Incomplete, Audio, BlankRW };

void makeDisc(DiscToolsRig &rig, Disc disc) {
    if (disc == Incomplete)
        EngineRig::setting(QStringLiteral("FailAtBlock"), QStringLiteral("40"));
    if (disc == OpenData || disc == Incomplete)
        QVERIFY(rig.writeData(disc == OpenData ? QStringLiteral("FIRST") : QStringLiteral("CUT")));
    if (disc == Audio)
        QVERIFY(rig.writeAudio());
}
} // namespace

class tst_DiscTools : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerDiscInfoWindows(); }

    void showsTheDisc_data() {
        QTest::addColumn<int>("disc");
        QTest::addColumn<QString>("logo");
        QTest::addColumn<QString>("shown");
        QTest::newRow("blank CD-R") << int(Blank) << "CDR"
                                    << "lblValueMediaType=CD-R|lblValueDiscStatus=Empty Disc|"
                                       "lblValueLastSessionStatus=Empty Session|txtMedia=No Label|"
                                       "lblValueFileSystem=Unknown|lblValueVolumeSerial=Unknown|"
                                       "cmdCloseSession=off|cmdErase=off";
        QTest::newRow("open data disc") << int(OpenData) << "CDR"
                                        << "lblValueDiscStatus=Disc Open|lblValueSessions=2|"
                                           "lblValueLastSessionStatus=Empty Session|"
                                           "lblValueFileSystem=ISO 9660 + Joliet|cmdCloseDisc=off";
        QTest::newRow("incomplete session") << int(Incomplete) << "CDR"
                                            << "lblValueLastSessionStatus=Incomplete Session|"
                                               "cmdCloseSession=on|cmdCloseDisc=on";
        QTest::newRow("audio disc")
            << int(Audio) << "AUDIO"
            << "txtMedia=Audio CD|lblValueFileSystem=CDDA|"
               "lblValueDiscStatus=Disc is Closed|lblValueFreeSpaceBlocks=0 "
               "blocks|lblValueLastSessionStatus=Closed Session";
        QTest::newRow("blank CD-RW") << int(BlankRW) << "CDRW"
                                     << "lblValueMediaType=CD-RW|cmdErase=on";
    }

    void showsTheDisc() {
        QFETCH(int, disc);
        DiscToolsRig rig(disc == BlankRW ? QStringLiteral("CD-RW 80") : QStringLiteral("CD-R 80"),
                         disc == Audio ? EngineRig::Audio : EngineRig::Data);
        makeDisc(rig, Disc(disc));
        auto *info = rig.open<frmDiscInfo>(QStringLiteral("frmDiscInfo"));
        QVERIFY(info && info->isVisible());
        QTEST(info->logoKey(), "logo");
        QFETCH(QString, shown);
        expectShown(info, shown);
        QVERIFY(info->chartCaption().startsWith("Capacity: "));
        // A disc without room (closed, or a session left open) charts 100 against 0; the others
        // share out the whole disc (703 MB), a blank one all free.
        const bool full = rig.engine.FreeBlocks() == 0;
        QCOMPARE(full, disc == Audio || disc == Incomplete);
        if (full)
            QVERIFY(info->chartUsed() == 100 && info->chartFree() == 0);
        else
            QVERIFY(qAbs(info->chartUsed() + info->chartFree() - 703) <= 1 &&
                    (info->chartUsed() > 0) == (disc == OpenData));
        const QString label = info->txtMedia->text();
        info->cmdEjectDisk->click();
        QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
        QCOMPARE(rig.engine.MediaType(), qint32(CDWriterPro::MediaNone));
        if (disc == OpenData || disc == Incomplete) // the label other tools read off the disc
            QCOMPARE(label, isoinfoVolumeId(rig.eject("iso")));
    }

    void closesWhatStandsOpen_data() {
        QTest::addColumn<bool>("closeDisc");
        QTest::addColumn<QString>("failClose");
        for (const auto &[name, disc, fail] :
             {std::tuple{"session", false, ""}, {"disc", true, ""}, {"failure", false, "1005"}})
            QTest::newRow(name) << disc << QString(fail);
    }

    void closesWhatStandsOpen() {
        QFETCH(bool, closeDisc);
        QFETCH(QString, failClose);
        DiscToolsRig rig;
        makeDisc(rig, Incomplete);
        EngineRig::setting(QStringLiteral("FailClose"), failClose);
        auto *info = rig.open<frmDiscInfo>(QStringLiteral("frmDiscInfo"));
        (closeDisc ? info->cmdCloseDisc : info->cmdCloseSession)->click();
        QVERIFY(info->mblnClosing && !info->close()); // no way out while the drive works
        expectShown(info, "cmdClose=off|cmdCloseDisc=off|cmdCloseSession=off");
        QVERIFY(Waits::until([&] { return !rig.answers.boxes.isEmpty(); }));
        const QString first = rig.prompts().constFirst();
        if (!failClose.isEmpty()) {
            QVERIFY2(first.startsWith("Writing Error: (3)"), qPrintable(first));
            QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
            QCOMPARE(rig.engine.LastSessionStatus(), qint32(CDWriterPro::SessionIncomplete));
            return;
        }
        // The dialog ends its wait by itself and shows the disc as it is now.
        QCOMPARE(first, QStringLiteral("Session/Disc Closed Successful!"));
        QVERIFY(!info->mblnClosing && info->cmdClose->isEnabled());
        QCOMPARE(info->logoKey(), closeDisc ? QStringLiteral("CDROM") : QStringLiteral("CDR"));
        expectShown(info, closeDisc ? "lblValueDiscStatus=Disc is Closed|cmdCloseSession=off"
                                    : "lblValueDiscStatus=Disc Open|cmdCloseSession=off");
        QVERIFY(info->close());
    }

    void emptyTrayOnlySaysSo() {
        DiscToolsRig rig;
        rig.engine.MoveTray(false);
        FormRegistry::open(QStringLiteral("frmDiscInfo"));
        QCOMPARE(rig.prompts(), QStringList{"No Media Loaded...Cannot Get Disc Info!"});
        QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
    }

    void fileDriveVolumeReadThroughLibburn() {
        EngineRig rig(EngineRig::FileDrive);
        QTemporaryDir src;
        Fixtures::writeFile(src.filePath("a.bin"), Fixtures::pseudoRandom(100000, 3));
        rig.engine.AddISOFile("\\a.bin", src.filePath("a.bin"));
        rig.engine.setVolumeIdentifier("ON_FILE");
        QVERIFY(rig.write());
        QCOMPARE(isoinfoVolumeId(rig.disc), QStringLiteral("ON_FILE"));
        QCOMPARE(SystemCalls::GetVolumeName("FILE:\\"), QStringLiteral("ON_FILE"));
        QCOMPARE(SystemCalls::GetFileSystem("FILE:\\"), QStringLiteral("ISO 9660 + Joliet"));
        QVERIFY(SystemCalls::VolumeSerialNumber("FILE:\\") != 0);
    }

    void recorderInformation_data() {
        QTest::addColumn<bool>("fileDrive");
        QTest::addColumn<QString>("withheld");
        QTest::addColumn<QString>("shown");
        QTest::newRow("Image Recorder")
            << false << ""
            << "lblValueDriveModel=Image Recorder|lblValueFirmware=1.00|lblValueCDRW=Supported|"
               "lblValueMaxSpeed=52x (7800 kB/s)  Depends on media type loaded!|"
               "lblValueRawWriting=Not Supported|lblValueReadCDR=Supported";
        QTest::newRow("withheld CD-RW and CD-R reading")
            << false << "7, 0"
            << "lblValueCDRW=Not Supported|lblValueReadCDR=Unsupported|lblValueCDR=Supported";
        QTest::newRow("libburn file drive")
            << true << ""
            << "lblValueDriveVendor=libburn|lblValueDriveModel=File drive|lblValueFirmware=FILE|"
               "lblValueDVDRAM=Supported|lblValueCDR=Not Supported";
    }

    void recorderInformation() {
        QFETCH(bool, fileDrive);
        QFETCH(QString, withheld);
        DiscToolsRig rig(QStringLiteral("CD-R 80"), EngineRig::Data,
                         {QStringLiteral("WithholdCapability=") + withheld});
        std::optional<EngineRig> file;
        if (fileDrive) {
            file.emplace(EngineRig::FileDrive);
            glngDriveIndex = 0;
            FormRegistry::setContext({&file->engine, nullptr, nullptr});
        }
        auto *info = rig.open<frmRecorderInfo>(QStringLiteral("frmRecorderInfo"));
        QCOMPARE(info->windowTitle(), QStringLiteral("CD-Recorder Information"));
        QFETCH(QString, shown);
        expectShown(info, shown);
        info->cmdClose->click();
        QTRY_VERIFY(!DefaultInstance<frmRecorderInfo>::peek());
        auto *drives = rig.open<frmSupDrives>(QStringLiteral("frmSupDrives"));
        QVERIFY(drives && drives->rtbSupported->toPlainText().contains("Image Recorder"));
        drives->close();
    }

    void eraseRefusesWhatItCant_data() {
        const QString once = "The current media is not Re-Writable.",
                      cant = "Selected drive does not support Re-Writable discs of this format.";
        addRows<Refusal>({{"CD-R", {"CD-R 80", "", once}},
                          {"DVD-R", {"DVD-R", "", once}},
                          {"empty tray", {"", "", "No Media Loaded."}},
                          {"CD-RW, drive can't", {"CD-RW 80", "7", cant}},
                          {"DVD+RW, drive can't", {"DVD+RW", "39", cant}}});
    }

    void eraseRefusesWhatItCant() {
        QFETCH(Refusal, row);
        const QString &medium = row.medium;
        DiscToolsRig rig(medium.isEmpty() ? QStringLiteral("CD-RW 80") : medium, EngineRig::Data,
                         {QStringLiteral("WithholdCapability=") + row.withheld});
        QVERIFY(rig.writeData(QStringLiteral("KEEP")));
        if (medium.isEmpty())
            rig.engine.MoveTray(false);
        const QString before = medium.isEmpty() ? QString() : rig.descriptorText();
        auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
        QVERIFY(erase && erase->isVisible());
        erase->cmdErase->click();
        QCOMPARE(rig.prompts(), QStringList{row.said});
        QTRY_VERIFY(!DefaultInstance<frmErase>::peek());
        if (!medium.isEmpty())
            QCOMPARE(rig.descriptorText(), before);
    }

    void erasesToABlankDisc_data() {
        QTest::addColumn<QString>("medium");
        QTest::addColumn<bool>("quick");
        QTest::newRow("quick CD-RW") << "CD-RW 80" << true;
        QTest::newRow("full CD-RW") << "CD-RW 80" << false;
        QTest::newRow("quick DVD+RW") << "DVD+RW" << true;
    }

    void erasesToABlankDisc() {
        QFETCH(QString, medium);
        QFETCH(bool, quick);
        DiscToolsRig rig(medium);
        QVERIFY(rig.writeData(QStringLiteral("OLD")));
        auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
        (quick ? erase->optQuickErase : erase->optFullErase)->setChecked(true);
        bool closedMeanwhile = true;
        QObject::connect(&rig.engine, &CDWriterPro::EraseDiscStart, erase,
                         [&] { closedMeanwhile = erase->close(); });
        QList<int> shownProgress; // a full erase shows the drive's own course
        QObject::connect(&rig.engine, &CDWriterPro::eraseProgress, erase,
                         [&] { shownProgress << erase->prgEstTime->value(); });
        erase->cmdErase->click();
        QVERIFY(erase->prgEstTime->isVisibleTo(erase) && erase->prgEstTime->maximum() > 0);
        QVERIFY(Waits::until([&] { return !rig.answers.boxes.isEmpty(); }));
        QCOMPARE(rig.prompts(),
                 QStringList{"Erase completed successfully!\r\n\r\nEjecting disc..."});
        QVERIFY(!closedMeanwhile && !DefaultInstance<frmErase>::peek());
        QCOMPARE(shownProgress, quick ? QList<int>() : QList<int>({0, 100}));
        // The disc came out; put back, it is blank, and a full erase left no byte of the old data.
        QCOMPARE(rig.engine.MediaType(), qint32(CDWriterPro::MediaNone));
        const QString data = rig.eject("iso");
        QVERIFY(ImageRecorder::putBack(ImageRecorder::lastEjected()));
        QVERIFY(rig.engine.DiscStatus() == CDWriterPro::DiscEmpty &&
                rig.engine.SessionCount() == 1);
        const QString tray = QDir(ImageRecorder::trayFolder()).filePath(QFileInfo(data).fileName());
        QCOMPARE(OutsideTools::fileBytes(tray).contains("CD001"), quick);
    }

    void eraseFailureLeavesTheDialogToClose() {
        DiscToolsRig rig(QStringLiteral("CD-RW 80"));
        QVERIFY(rig.writeData(QStringLiteral("STAYS")));
        EngineRig::setting(QStringLiteral("FailErase"), QStringLiteral("1005"));
        const QString before = rig.descriptorText();
        auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
        erase->cmdErase->click();
        QVERIFY(Waits::until([&] { return !rig.answers.boxes.isEmpty(); }));
        QVERIFY2(rig.prompts().constFirst().contains("Error Sense Data: "),
                 qPrintable(rig.prompts().join('|')));
        QVERIFY(!erase->mblnErasing && !erase->prgEstTime->isVisibleTo(erase));
        expectShown(erase, "cmdCancel=on|cmdErase=off|optFullErase=off");
        QCOMPARE(rig.descriptorText(), before);
        erase->cmdCancel->click();
        QTRY_VERIFY(!DefaultInstance<frmErase>::peek());
    }
};

QTEST_MAIN(tst_DiscTools)
#include "tst_disctools.moc"
