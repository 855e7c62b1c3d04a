// The disc and recorder information windows and the erase dialog, on the Image Recorder and a
// libburn file drive.
#include "DiscToolsRig.h"
#include "Fixtures.h"
#include "OutsideTools.h"
#include "Rows.h"
#include "Waits.h"
#include "WidgetSnapshot.h"

#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "disctools/DiscInfoWindows.h"
#include "disctools/frmDiscInfo.h"
#include "disctools/frmErase.h"
#include "disctools/frmRecorderInfo.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>
#include <QtWidgets>
#include <optional>

namespace {
struct Refusal {
    QString medium, withheld, said;
};

// The serial number of a written disc follows the time it was written.
const QList<std::pair<QRegularExpression, QString>> serialScrub = {
    {QRegularExpression("(lblValueVolumeSerial .*text=)-?\\d+"), "\\1SERIAL"}};

enum Disc { Blank, OpenData, Incomplete, Audio };
struct Shown {
    Disc disc;
    QString medium, snapshot;
};

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
        const QString cd = "CD-R 80";
        addRows<Shown>({{"blank CD-R", {Blank, cd, "frmDiscInfo"}},
                        {"open data disc", {OpenData, cd, "disctools-open-data"}},
                        {"incomplete session", {Incomplete, cd, "disctools-incomplete"}},
                        {"audio disc", {Audio, cd, "disctools-audio"}},
                        {"blank CD-RW", {Blank, "CD-RW 80", "disctools-blank-cd-rw"}},
                        {"blank DVD-R", {Blank, "DVD-R", "disctools-blank-dvd-r"}},
                        {"blank DVD+R", {Blank, "DVD+R", "disctools-blank-dvd+r"}},
                        {"blank DVD-RW", {Blank, "DVD-RW", "disctools-blank-dvd-rw"}},
                        {"blank DVD+RW", {Blank, "DVD+RW", "disctools-blank-dvd+rw"}},
                        {"blank DVD-RAM", {Blank, "DVD-RAM", "disctools-blank-dvd-ram"}}});
    }

    void showsTheDisc() {
        QFETCH(Shown, row);
        const Disc disc = row.disc;
        DiscToolsRig rig(row.medium, disc == Audio ? EngineRig::Audio : EngineRig::Data);
        makeDisc(rig, disc);
        auto *info = rig.open<frmDiscInfo>(QStringLiteral("frmDiscInfo"));
        QVERIFY(info && info->isVisible());
        QCOMPARE(WidgetSnapshot::differences(info, row.snapshot, serialScrub), QString());
        const QString label = info->txtMedia->text();
        info->cmdEjectDisk->click();
        QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
        QCOMPARE(rig.engine.MediaType(), qint32(CDWriterPro::MediaNone));
        if (disc == OpenData || disc == Incomplete) // the label other tools read off the disc
            QCOMPARE(label, isoinfoVolumeId(rig.eject("iso")));
    }

    // A close the engine refuses at once (the disc went out under the window) gives every
    // button back; one that fails in the drive ends with the error and the window gone.
    void closesWhatStandsOpen_data() {
        columns<bool, QString>("closeDisc", "failClose");
        for (const auto &[name, disc, fail] : {std::tuple{"session", false, ""},
                                               {"disc", true, ""},
                                               {"failure", false, "1005"},
                                               {"refused", true, "tray"}})
            QTest::newRow(name) << disc << QString(fail);
    }

    void closesWhatStandsOpen() {
        auto [closeDisc, failClose] = fetch<bool, QString>("closeDisc", "failClose");
        DiscToolsRig rig;
        makeDisc(rig, Incomplete);
        EngineRig::setting(QStringLiteral("FailClose"), failClose == u"tray" ? "" : failClose);
        auto *info = rig.open<frmDiscInfo>(QStringLiteral("frmDiscInfo"));
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        if (failClose == u"tray") {
            rig.engine.MoveTray(false); // its media event is still queued
            info->cmdCloseDisc->click();
            QCOMPARE(rig.prompts(), QStringList{"Error attempting to Close Disc!"});
            QCOMPARE(WidgetSnapshot::differences(info, "disctools-close-refused", serialScrub),
                     QString());
            QVERIFY(info->close());
            return;
        }
        (closeDisc ? info->cmdCloseDisc : info->cmdCloseSession)->click();
        QVERIFY(info->mblnClosing && !info->close()); // no way out while the drive works
        QCOMPARE(WidgetSnapshot::differences(info, "disctools-closing", serialScrub), QString());
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
        QVERIFY(!info->mblnClosing);
        QCOMPARE(WidgetSnapshot::differences(info, "disctools-closed-" + tag, serialScrub),
                 QString());
        QVERIFY(info->close());
    }

    void emptyTrayOnlySaysSo() {
        DiscToolsRig rig;
        rig.engine.MoveTray(false);
        FormRegistry::open(QStringLiteral("frmDiscInfo"));
        QCOMPARE(rig.prompts(), QStringList{"No Media Loaded...Cannot Get Disc Info!"});
        QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
    }

    // The plain Image Recorder is pinned where the window first opens.
    // withheld: empty: a libburn file drive instead
    void recorderInformation_data() {
        rows<QString>("withheld",
                      {{"withheld CD-RW and CD-R reading", "7, 0"}, {"libburn file drive", ""}});
    }

    void recorderInformation() {
        QFETCH(QString, withheld);
        DiscToolsRig rig(QStringLiteral("CD-R 80"), EngineRig::Data,
                         {QStringLiteral("WithholdCapability=") + withheld});
        std::optional<EngineRig> file;
        if (withheld.isEmpty()) { // its volume is read back through libburn as well
            file.emplace(EngineRig::FileDrive);
            glngDriveIndex = 0;
            FormRegistry::setContext({&file->engine, nullptr, nullptr});
            Fixtures::writeFile(rig.sources.filePath("a.bin"), Fixtures::pseudoRandom(100000, 3));
            file->engine.AddISOFile("\\a.bin", rig.sources.filePath("a.bin"));
            file->engine.setVolumeIdentifier("ON_FILE");
            QVERIFY(file->write());
            QCOMPARE(isoinfoVolumeId(file->disc), QStringLiteral("ON_FILE"));
            QCOMPARE(SystemCalls::GetVolumeName("FILE:\\"), QStringLiteral("ON_FILE"));
            QCOMPARE(SystemCalls::GetFileSystem("FILE:\\"), QStringLiteral("ISO 9660 + Joliet"));
            QVERIFY(SystemCalls::VolumeSerialNumber("FILE:\\") != 0);
        }
        auto *info = rig.open<frmRecorderInfo>(QStringLiteral("frmRecorderInfo"));
        QCOMPARE(WidgetSnapshot::differences(info, file ? "disctools-recorder-file-drive"
                                                        : "disctools-recorder-withheld"),
                 QString());
        info->cmdClose->click();
        QTRY_VERIFY(!DefaultInstance<frmRecorderInfo>::peek());
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
        columns<QString, bool>("medium", "quick");
        QTest::newRow("quick CD-RW") << "CD-RW 80" << true;
        QTest::newRow("full CD-RW") << "CD-RW 80" << false;
        QTest::newRow("quick DVD+RW") << "DVD+RW" << true;
    }

    void erasesToABlankDisc() {
        auto [medium, quick] = fetch<QString, bool>("medium", "quick");
        DiscToolsRig rig(medium);
        QVERIFY(rig.writeData(QStringLiteral("OLD")));
        auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
        (quick ? erase->optQuickErase : erase->optFullErase)->setChecked(true);
        bool closedMeanwhile = true;
        QString during; // the clock the dialog runs is left out
        QObject::connect(&rig.engine, &CDWriterPro::EraseDiscStart, erase, [&] {
            closedMeanwhile = erase->close();
            during = WidgetSnapshot::differences(
                erase, "disctools-erasing-" + QString(QTest::currentDataTag()).replace(' ', '-'),
                {{QRegularExpression("(lblTime .*text=).*"), "\\1TIME"},
                 {QRegularExpression("text=\\d+% value=\\d+"), "text=P% value=P"}});
        });
        QList<int> shownProgress; // a full erase shows the drive's own course
        QObject::connect(&rig.engine, &CDWriterPro::eraseProgress, erase,
                         [&] { shownProgress << erase->prgEstTime->value(); });
        erase->cmdErase->click();
        QVERIFY(Waits::until([&] { return !rig.answers.boxes.isEmpty(); }));
        QCOMPARE(during, QString());
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
        QVERIFY(!erase->mblnErasing);
        QCOMPARE(WidgetSnapshot::differences(erase, "disctools-erase-failed"), QString());
        QCOMPARE(rig.descriptorText(), before);
        erase->cmdCancel->click();
        QTRY_VERIFY(!DefaultInstance<frmErase>::peek());
    }
};

QTEST_MAIN(tst_DiscTools)
#include "tst_disctools.moc"
