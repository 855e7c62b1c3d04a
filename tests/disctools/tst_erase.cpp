// The erase dialog on the Image Recorder: the checks before an erase, both kinds of erase and
// a failure on purpose.
#include "DiscToolsRig.h"
#include "Waits.h"

#include "disctools/DiscInfoWindows.h"
#include "disctools/frmErase.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

class tst_Erase : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerDiscInfoWindows(); }
    void refusesWhatCantBeErased_data();
    void refusesWhatCantBeErased();
    void erasesToABlankDisc_data();
    void erasesToABlankDisc();
    void failureLeavesTheDialogToClose();
    void estimateClock_data();
    void estimateClock();
};

void tst_Erase::refusesWhatCantBeErased_data() {
    QTest::addColumn<QString>("medium");
    QTest::addColumn<QString>("withheld");
    QTest::addColumn<QString>("said");
    QTest::newRow("CD-R") << "CD-R 80"
                          << ""
                          << "The current media is not Re-Writable.";
    QTest::newRow("DVD-R") << "DVD-R"
                           << ""
                           << "The current media is not Re-Writable.";
    QTest::newRow("empty tray") << ""
                                << ""
                                << "No Media Loaded.";
    QTest::newRow("CD-RW, drive can't") << "CD-RW 80"
                                        << "7"
                                        << "Selected drive does not support Re-Writable discs "
                                           "of this format.";
    QTest::newRow("DVD+RW, drive can't") << "DVD+RW"
                                         << "39"
                                         << "Selected drive does not support Re-Writable discs "
                                            "of this format.";
}

void tst_Erase::refusesWhatCantBeErased() {
    QFETCH(QString, medium);
    QFETCH(QString, withheld);
    DiscToolsRig rig(medium.isEmpty() ? QStringLiteral("CD-RW 80") : medium, EngineRig::Data,
                     {QStringLiteral("WithholdCapability=") + withheld});
    QVERIFY(rig.writeData(QStringLiteral("KEEP")));
    if (medium.isEmpty())
        rig.engine.MoveTray(false);
    const auto disc = [&] { return medium.isEmpty() ? QString() : rig.descriptorText(); };
    const QString before = disc();
    auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
    QVERIFY(erase && erase->isVisible());
    erase->cmdErase->click();
    QFETCH(QString, said);
    QCOMPARE(rig.prompts(), QStringList{said});
    QTRY_VERIFY(!DefaultInstance<frmErase>::peek());
    QCOMPARE(disc(), before);
}

void tst_Erase::erasesToABlankDisc_data() {
    QTest::addColumn<QString>("medium");
    QTest::addColumn<bool>("quick");
    QTest::newRow("quick CD-RW") << "CD-RW 80" << true;
    QTest::newRow("full CD-RW") << "CD-RW 80" << false;
    QTest::newRow("quick DVD+RW") << "DVD+RW" << true;
}

void tst_Erase::erasesToABlankDisc() {
    QFETCH(QString, medium);
    QFETCH(bool, quick);
    DiscToolsRig rig(medium);
    QVERIFY(rig.writeData(QStringLiteral("OLD")));
    auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
    QVERIFY(erase);
    (quick ? erase->optQuickErase : erase->optFullErase)->setChecked(true);
    bool closedMeanwhile = true;
    QObject::connect(&rig.engine, &CDWriterPro::EraseDiscStart, erase,
                     [&] { closedMeanwhile = erase->close(); });
    erase->cmdErase->click();
    QVERIFY(erase->prgEstTime->isVisibleTo(erase));
    QCOMPARE(erase->prgEstTime->maximum() > 0, true);
    QVERIFY(Waits::until([&] { return !rig.answers.boxes.isEmpty(); }));
    QVERIFY(!closedMeanwhile);
    QCOMPARE(rig.prompts(), QStringList{"Erase completed successfully!\r\n\r\nEjecting disc..."});
    QVERIFY(!DefaultInstance<frmErase>::peek());
    // The disc came out; put back, it is blank, and a full erase left no byte of the old data.
    QCOMPARE(rig.engine.MediaType(), qint32(CDWriterPro::MediaNone));
    const QString data = rig.eject("iso");
    QVERIFY(ImageRecorder::putBack(ImageRecorder::lastEjected()));
    QCOMPARE(rig.engine.DiscStatus(), qint32(CDWriterPro::DiscEmpty));
    QCOMPARE(rig.engine.SessionCount(), 1);
    if (!quick) {
        QFile f(QDir(ImageRecorder::trayFolder()).filePath(QFileInfo(data).fileName()));
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(!f.readAll().contains("CD001"));
    }
}

void tst_Erase::failureLeavesTheDialogToClose() {
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
    QVERIFY(erase->cmdCancel->isEnabled());
    QVERIFY(!erase->cmdErase->isEnabled() && !erase->optFullErase->isEnabled());
    QVERIFY(!erase->prgEstTime->isVisibleTo(erase));
    QCOMPARE(rig.descriptorText(), before);
    erase->cmdCancel->click();
    QTRY_VERIFY(!DefaultInstance<frmErase>::peek());
}

void tst_Erase::estimateClock_data() {
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("left");
    QTest::newRow("quick") << 65 << "00:01:05" << 64;
    // Minutes are not reduced by the hours.
    QTest::newRow("over an hour") << 3700 << "01:61:40" << 3699;
    QTest::newRow("run out") << 0 << "00:00:00" << 0;
}

void tst_Erase::estimateClock() {
    QFETCH(int, seconds);
    DiscToolsRig rig(QStringLiteral("CD-RW 80"));
    auto *erase = rig.open<frmErase>(QStringLiteral("frmErase"));
    erase->prgEstTime->setMaximum(65);
    erase->mintCounter = 70; // past the end: the bar holds at its maximum
    erase->mintTimeSeconds = qint16(seconds);
    erase->mlngStart = Now();
    erase->tmrErase_Timer();
    QTEST(erase->prgEstTime->format(), "shown");
    QTEST(int(erase->mintTimeSeconds), "left");
    QCOMPARE(erase->prgEstTime->value(), 65);
    QVERIFY(erase->lblTime->text().startsWith("Time Elapsed (hh:mm:ss): 00:00:0"));
    erase->close();
}

QTEST_MAIN(tst_Erase)
#include "tst_erase.moc"
