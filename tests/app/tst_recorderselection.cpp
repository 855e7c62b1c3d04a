// Recorder selection: the speed lists, and the media states as the Image Recorder's tray moves.
#include "FrameFixture.h"
#include "Rows.h"
#include "TestEnvironment.h"
#include "app/FormRegistry.h"
#include "app/WriteSpeedList.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "engine/notify/CDNotify.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/AnimationControl.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/LineControl.h"

#include <QtTest>
#include <QtWidgets>

using namespace FrameFixture;

namespace {

// A disc laid in the Image Recorder's tray by hand, as a user would.
void layDisc(const TestEnvironment &env, const QByteArray &descriptor) {
    env.writeFile("Image Recorder/Tray/disc.iso", QByteArray(150 * 2048, '\0'));
    if (!descriptor.isEmpty())
        env.writeFile("Image Recorder/Tray/disc.tdisc", descriptor);
}

// The frame with the Image Recorder chosen, whatever other recorders the machine has.
mdiMain *frameOnImageRecorder() {
    mdiMain *f = frame();
    const int last = f->Tessaly->DriveCount() - 1;
    f->cboDevices->setCurrentIndex(f->cboDevices->findData(last));
    return f;
}

const QByteArray appendableDisc = "[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\nData=disc.iso\n"
                                  "Finalized=0\nSessions=1\n\n[Session1]\nStart=0\nBlocks=150\n"
                                  "Mode=1\nClosed=1\n";

} // namespace

class tst_RecorderSelection : public QObject {
    Q_OBJECT
private slots:
    void speedList_data() {
        columns<int, int>("mediaType", "maxSpeed");
        QTest::addColumn<QStringList>("entries"); // text=item data
        QTest::newRow("unknown speed") << 255 << 0 << QStringList{"Default="};
        QTest::newRow("negative speed, DVD") << 2 << -5 << QStringList{"Default="};
        QTest::newRow("352 on a CD-R") << 255 << 352 << QStringList{"2x 300 kB/s=352"};
        QTest::newRow("200 counts as 1x") << 255 << 200 << QStringList{"1x 150 kB/s=200"};
        // 704 taken off while at 1200 or more, 352 below.
        QTest::newRow("1232 on a CD-RW")
            << 253 << 1232
            << QStringList{"7x 1050 kB/s=1232", "3x 450 kB/s=528", "1x 150 kB/s=176"};
        // 2.5 shows as 3x while the kB/s round to even; half a speed below 2 counts as 1x.
        QTest::newRow("halves") << 254 << 440 << QStringList{"3x 300 kB/s=440", "1x 150 kB/s=88"};
        const QStringList dvd = {"4.0x=5540", "3.5x=4850", "3.0x=4160", "2.5x=3470",
                                 "2.0x=2780", "1.5x=2090", "1.0x=1400"};
        for (int type : {2, 0, 1, 9, 10, 252, 256, -1})
            QTest::addRow("media type %d takes DVD speeds", type) << type << 5540 << dvd;
        QTest::newRow("DVD below one speed") << 3 << 690 << QStringList{".5x=690"};
    }

    void speedList() {
        auto [mediaType, maxSpeed] = fetch<int, int>("mediaType", "maxSpeed");
        QStringList got;
        for (const auto &e : WriteSpeedList::entries(mediaType, maxSpeed))
            got.append(e.text + u'=' + e.itemData.toString());
        QTEST(got, "entries");
    }

    void closingTheTrayShowsAWritableDisc() {
        TestEnvironment env;
        QVERIFY(env.startProgram());
        mdiMain *f = frameOnImageRecorder();
        f->runCommand("CLOSETRAY");
        // A blank CD-R of 80 minutes: 360,000 blocks, 703 MB, at most 52 times 176 kB/s.
        QTRY_COMPARE(f->smartStatusBar->Item("STATUSIMG")->ImageKey(), QStringLiteral("MEDIA"));
        QCOMPARE(f->linCDSize->X1(), (703 - 5) * 10 + 100); // twips, finer than the snapshot
        // 704 kB/s apart down to 1408, then 352 apart until nothing is left; the session check
        // stays greyed (an unscripted box would fail the test).
        QCOMPARE(differences("recorderselection-blank-cd", env.appFolder()), QString());
        QCOMPARE(f->cboWriteSpeed->itemData(11).toInt(), 1408);
        QCOMPARE(f->mstrSpeed, QStringLiteral("52x 7800 kB/s"));
    }

    void noWritableDisc_data() {
        columns<QString, QString>("how", "snapshot");
        QTest::newRow("at the start") << "start" << QString("frame");
        QTest::newRow("ejected") << "eject" << QString("frame");
        QTest::newRow("a pressed disc laid in") << "closed" << QString("recorderselection-pressed");
    }

    void noWritableDisc() {
        auto [how, snapshot] = fetch<QString, QString>("how", "snapshot");
        TestEnvironment env;
        QVERIFY(env.startProgram());
        mdiMain *f = frameOnImageRecorder();
        QCOMPARE(qint32(glngCurrentDrive), f->Tessaly->DriveCount() - 1);
        if (how == "eject") {
            f->runCommand("CLOSETRAY");
            QTRY_COMPARE(f->smartStatusBar->Item("STATUSIMG")->ImageKey(), QStringLiteral("MEDIA"));
            f->SmartMenu->Item("SESSION")->setEnabled(true);
            f->runCommand("EJECTCD");
        } else if (how == "closed") {
            layDisc(env, {}); // one closed session
            f->CDNotify1->checkDrives();
            QCOMPARE(f->Tessaly->LastSessionStatus(), 3);
        }
        QTRY_COMPARE(f->smartStatusBar->Item("STATUSIMG")->ImageKey(), QStringLiteral("NOMEDIA"));
        QVERIFY(f->aniRuler->isPlaying());
        QCOMPARE(differences(snapshot, env.appFolder()), QString());
    }

    void sessionCheckOnlyWhenShown_data() {
        columns<bool, bool, bool>("minimised", "testWrite", "opens");
        QTest::newRow("frame shown") << false << false << true;
        QTest::newRow("frame minimised") << true << false << false;
        QTest::newRow("after a test write") << false << true << false;
    }

    void sessionCheckOnlyWhenShown() {
        auto [minimised, testWrite, opens] =
            fetch<bool, bool, bool>("minimised", "testWrite", "opens");
        TestEnvironment env;
        QVERIFY(env.startProgram());
        mdiMain *f = frameOnImageRecorder();
        f->show();
        if (minimised)
            f->showMinimized();
        gblnIsTestWrite = testWrite;
        int checks = 0;
        FormRegistry::add("frmSessionCheck", [&checks](QWidget *) { ++checks; });
        layDisc(env, appendableDisc);
        f->CDNotify1->checkDrives();
        FormRegistry::remove("frmSessionCheck");
        // An open disc with one closed session and room for the next.
        QCOMPARE(f->Tessaly->DiscStatus(), 1);
        QCOMPARE(f->Tessaly->LastSessionStatus(), 0);
        QCOMPARE(f->Tessaly->SessionCount(), 2);
        QCOMPARE(checks, opens ? 1 : 0);
        QCOMPARE(differences(opens ? "recorderselection-appendable"
                                   : "recorderselection-appendable-unasked",
                             env.appFolder()),
                 QString());
    }
};

QTEST_MAIN(tst_RecorderSelection)
#include "tst_recorderselection.moc"
