// The disc and recorder information windows on the Image Recorder and a libburn file drive.
#include "DiscToolsRig.h"
#include "Waits.h"

#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "disctools/DiscInfoWindows.h"
#include "disctools/frmDiscInfo.h"
#include "disctools/frmRecorderInfo.h"
#include "disctools/frmSupDrives.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include <optional>

class tst_DiscInfo : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerDiscInfoWindows(); }
    void showsTheDisc_data();
    void showsTheDisc();
    void closesWhatStandsOpen_data();
    void closesWhatStandsOpen();
    void emptyTrayOnlySaysSo();
    void recorderInformation_data();
    void recorderInformation();
};

namespace {
enum Disc { Blank, OpenData, Incomplete, Audio, BlankRW };

void makeDisc(DiscToolsRig &rig, Disc disc) {
    if (disc == OpenData)
        QVERIFY(rig.writeData(QStringLiteral("FIRST")));
    if (disc == Incomplete) {
        EngineRig::setting(QStringLiteral("FailAtBlock"), QStringLiteral("40"));
        QVERIFY(rig.writeData(QStringLiteral("CUT")));
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteError"));
    }
    if (disc == Audio)
        QVERIFY(rig.writeAudio());
}
} // namespace

void tst_DiscInfo::showsTheDisc_data() {
    QTest::addColumn<int>("disc");
    QTest::addColumn<QString>("medium");
    QTest::addColumn<QString>("lastSession");
    QTest::addColumn<QString>("discStatus");
    QTest::addColumn<QString>("logo");
    QTest::addColumn<QString>("fileSystem");
    QTest::addColumn<bool>("canClose");
    QTest::addColumn<bool>("canErase");
    QTest::newRow("blank CD-R") << int(Blank) << "CD-R"
                                << "Empty Session"
                                << "Empty Disc"
                                << "CDR"
                                << "Unknown" << false << false;
    QTest::newRow("open data disc") << int(OpenData) << "CD-R"
                                    << "Empty Session"
                                    << "Disc Open"
                                    << "CDR"
                                    << "ISO 9660 + Joliet" << false << false;
    QTest::newRow("incomplete session") << int(Incomplete) << "CD-R"
                                        << "Incomplete Session"
                                        << "Disc Open"
                                        << "CDR"
                                        << "ISO 9660 + Joliet" << true << false;
    QTest::newRow("audio disc") << int(Audio) << "CD-R"
                                << "Closed Session"
                                << "Disc is Closed"
                                << "AUDIO"
                                << "CDDA" << false << false;
    QTest::newRow("blank CD-RW") << int(BlankRW) << "CD-RW"
                                 << "Empty Session"
                                 << "Empty Disc"
                                 << "CDRW"
                                 << "Unknown" << false << true;
}

void tst_DiscInfo::showsTheDisc() {
    QFETCH(int, disc);
    DiscToolsRig rig(disc == BlankRW ? QStringLiteral("CD-RW 80") : QStringLiteral("CD-R 80"),
                     disc == Audio ? EngineRig::Audio : EngineRig::Data);
    makeDisc(rig, Disc(disc));
    auto *info = rig.open<frmDiscInfo>(QStringLiteral("frmDiscInfo"));
    QVERIFY(info && info->isVisible());
    QTEST(info->lblValueMediaType->text(), "medium");
    QTEST(info->lblValueLastSessionStatus->text(), "lastSession");
    QTEST(info->lblValueDiscStatus->text(), "discStatus");
    QTEST(info->logoKey(), "logo");
    QTEST(info->lblValueFileSystem->text(), "fileSystem");
    QTEST(info->cmdCloseSession->isEnabled(), "canClose");
    QTEST(info->cmdCloseDisc->isEnabled(), "canClose");
    QTEST(info->cmdErase->isEnabled(), "canErase");
    QCOMPARE(info->lblValueSessions->text(), QString::number(rig.engine.SessionCount()));
    QCOMPARE(info->lblValueFreeSpaceBlocks->text(),
             QString::number(rig.engine.FreeBlocks()) + " blocks");
    QVERIFY(info->chartCaption().startsWith("Capacity: "));
    const bool hasVolume = disc == OpenData || disc == Incomplete;
    QCOMPARE(info->lblValueVolumeSerial->text() != "Unknown", hasVolume);
    const QString label = info->txtMedia->text();
    if (disc == Audio) {
        QCOMPARE(label, QStringLiteral("Audio CD"));
        // A disc without room left draws as a full chart.
        QCOMPARE(info->chartUsed(), 100.0);
        QCOMPARE(info->chartFree(), 0.0);
    } else if (!hasVolume) {
        QCOMPARE(label, QStringLiteral("No Label"));
        QCOMPARE(info->chartUsed(), 0.0);
        QVERIFY(info->chartFree() > 600);
    }
    info->cmdEjectDisk->click();
    QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
    QCOMPARE(rig.engine.MediaType(), qint32(CDWriterPro::MediaNone));
    if (hasVolume) // the label is the one other tools read off the disc
        QCOMPARE(label, isoinfoVolumeId(rig.eject("iso")));
}

void tst_DiscInfo::closesWhatStandsOpen_data() {
    QTest::addColumn<bool>("closeDisc");
    QTest::addColumn<QString>("failClose");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("discStatus");
    QTest::newRow("session") << false << ""
                             << "Session/Disc Closed Successful!"
                             << "Disc Open";
    QTest::newRow("disc") << true << ""
                          << "Session/Disc Closed Successful!"
                          << "Disc is Closed";
    QTest::newRow("failure") << false << "1005"
                             << "Writing Error: (3)"
                             << "Disc Open";
}

void tst_DiscInfo::closesWhatStandsOpen() {
    QFETCH(bool, closeDisc);
    QFETCH(QString, failClose);
    QFETCH(QString, said);
    DiscToolsRig rig;
    makeDisc(rig, Incomplete);
    EngineRig::setting(QStringLiteral("FailClose"), failClose);
    auto *info = rig.open<frmDiscInfo>(QStringLiteral("frmDiscInfo"));
    QVERIFY(info);
    (closeDisc ? info->cmdCloseDisc : info->cmdCloseSession)->click();
    QVERIFY(info->mblnClosing);
    QVERIFY(!info->close()); // no way out while the drive works
    QVERIFY(Waits::until([&] { return !rig.answers.boxes.isEmpty(); }));
    QVERIFY2(rig.prompts().constFirst().startsWith(said), qPrintable(rig.prompts().join('|')));
    QTRY_VERIFY(rig.engine.LastSessionStatus() != CDWriterPro::SessionIncomplete ||
                !failClose.isEmpty());
    QFETCH(QString, discStatus);
    if (failClose.isEmpty()) {
        // The dialog ends its wait by itself and shows the disc as it is now.
        QVERIFY(!info->mblnClosing);
        QVERIFY(info->cmdClose->isEnabled());
        QCOMPARE(info->lblValueDiscStatus->text(), discStatus);
        QCOMPARE(info->logoKey(), closeDisc ? QStringLiteral("CDROM") : QStringLiteral("CDR"));
        QVERIFY(info->close());
    } else {
        QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
        QCOMPARE(rig.engine.LastSessionStatus(), qint32(CDWriterPro::SessionIncomplete));
    }
}

void tst_DiscInfo::emptyTrayOnlySaysSo() {
    DiscToolsRig rig;
    rig.engine.MoveTray(false);
    rig.openByName(QStringLiteral("frmDiscInfo"));
    QCOMPARE(rig.prompts(), QStringList{"No Media Loaded...Cannot Get Disc Info!"});
    QTRY_VERIFY(!DefaultInstance<frmDiscInfo>::peek());
}

void tst_DiscInfo::recorderInformation_data() {
    QTest::addColumn<bool>("fileDrive");
    QTest::addColumn<QString>("withheld");
    QTest::addColumn<QStringList>("rows"); // "label=text"
    QTest::newRow("Image Recorder")
        << false << ""
        << QStringList{"lblValueDriveModel=Image Recorder",
                       "lblValueFirmware=1.00",
                       "lblValueMaxSpeed=52x (7800 kB/s)  Depends on media type loaded!",
                       "lblValueCDRW=Supported",
                       "lblValueRawWriting=Not Supported",
                       "lblValueReadCDR=Supported"};
    QTest::newRow("withheld CD-RW and CD-R reading")
        << false << "7, 0"
        << QStringList{"lblValueCDRW=Not Supported", "lblValueReadCDR=Unsupported",
                       "lblValueCDR=Supported"};
    QTest::newRow("libburn file drive")
        << true << ""
        << QStringList{"lblValueDriveVendor=libburn", "lblValueDriveModel=File drive",
                       "lblValueFirmware=N/A", "lblValueDVDRAM=Supported",
                       "lblValueCDR=Not Supported"};
}

void tst_DiscInfo::recorderInformation() {
    QFETCH(bool, fileDrive);
    QFETCH(QString, withheld);
    QFETCH(QStringList, rows);
    DiscToolsRig rig(QStringLiteral("CD-R 80"), EngineRig::Data,
                     {QStringLiteral("WithholdCapability=") + withheld});
    std::optional<EngineRig> file;
    if (fileDrive) {
        file.emplace(EngineRig::FileDrive);
        glngDriveIndex = 0;
        FormRegistry::setContext({&file->engine, nullptr, nullptr});
    }
    auto *info = rig.open<frmRecorderInfo>(QStringLiteral("frmRecorderInfo"));
    QVERIFY(info);
    QCOMPARE(info->windowTitle(), QStringLiteral("CD-Recorder Information"));
    for (const QString &row : rows) {
        auto *label = info->findChild<QLabel *>(row.section(u'=', 0, 0));
        QVERIFY2(label, qPrintable(row));
        QCOMPARE(label->text(), row.section(u'=', 1));
    }
    info->cmdClose->click();
    QTRY_VERIFY(!DefaultInstance<frmRecorderInfo>::peek());
    auto *drives = rig.open<frmSupDrives>(QStringLiteral("frmSupDrives"));
    QVERIFY(drives && drives->rtbSupported->toPlainText().contains("Image Recorder"));
    drives->close();
}

QTEST_MAIN(tst_DiscInfo)
#include "tst_discinfo.moc"
