// The copy windows on Image Recorders: their lists, speed lists, boxes and ends.
#include "CopierRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "Waits.h"
#include "WidgetSnapshot.h"

#include "copying/frmBurnBin.h"
#include "copying/frmCD2CD.h"
#include "copying/frmIsoripper.h"
#include "copying/modCD2CD.h"

#include <QtTest>
#include <QtWidgets>

class tst_CopyWindows : public QObject {
    Q_OBJECT
private slots:
    // The list runs up to the drive's highest speed code, MAX last (whole in the copy window's
    // snapshot for code 9); MAX asks for the top code or, past the list, for the drive's best.
    void speedLists() {
        for (const auto &[code, count, top, maxGives] :
             {std::tuple{0, 2, "1x", 1}, {8, 10, "16x", 9}, {9, 11, "18x", 255}}) {
            QComboBox list;
            modCD2CD::PopulateSpeed(&list, code);
            QCOMPARE(list.count(), count);
            QCOMPARE(list.itemText(count - 2) + u'|' + list.itemText(count - 1),
                     QString(top) + "|MAX");
            QCOMPARE(modCD2CD::SpeedCodeOfIndex(count - 1), maxGives);
        }
    }

    // Two recorders (one alone is the window as it first opens); a test copy of the blank first
    // recorder's disc has nothing to read and fails clearly.
    void copyForm() {
        CopierRig r(EngineRig::Data, {"SecondDrive=1"});
        ScriptedAnswers answers;
        frmCD2CD form({&r.rig.engine, nullptr, nullptr});
        form.Form_Load();
        form.show(); // lays the buttons out as the user sees them
        QCOMPARE(WidgetSnapshot::differences(&form, "copywindows-cd2cd-two-drives"), QString());
        form.CD2CDX_PercentDone(99.9); // all but done: no closing words yet
        QCOMPARE(form.prgProgress->value(), 100);
        QVERIFY(!form.lblInfo->isVisibleTo(&form));
        form.cmdCopyBurn_Click();
        form.CD2CDX_PercentDone(42.5);
        QCOMPARE(WidgetSnapshot::differences(&form, "copywindows-cd2cd-copying"), QString());
        QVERIFY(Waits::until([&] { return !answers.boxes.isEmpty(); }));
        QCOMPARE(answers.boxes.last().prompt,
                 QStringLiteral("The copy did not finish: The disc in Image Recorder is blank."));
        QCOMPARE(WidgetSnapshot::differences(&form, "copywindows-cd2cd-failed"), QString());
    }

    void imageBurner_data() {
        columns<bool, QByteArray, QString, QString>("used", "mode", "snapshot", "box");
        QTest::newRow("used disc") << true << QByteArray("MODE1/2048") << "used"
                                   << "The Disc Is Not Blank. Please Replace The Disc With A New "
                                      "Blank Disc and Try Again. ;)";
        QTest::newRow("MODE2/2352")
            << false << QByteArray("MODE2/2352") << "mode2"
            << "SubmitAudioJob returned an error -4\nTrack 1 is MODE2/2352: "
               "only AUDIO and MODE1/2048 tracks can be written.";
        QTest::newRow("ISO with MODE1/2048") << false << QByteArray("MODE1/2048") << "written"
                                             << "The disc was written.";
    }

    void imageBurner() {
        auto [used, mode, snapshot, box] =
            fetch<bool, QByteArray, QString, QString>("used", "mode", "snapshot", "box");
        CopierRig r;
        ScriptedAnswers answers;
        QTemporaryDir dir;
        r.addFiles(dir.path(), 1, 70000);
        QVERIFY(r.rig.engine.CreateISOFile(dir.filePath("image.iso")));
        Fixtures::writeFile(dir.filePath("image.cue"), "FILE \"image.iso\" BINARY\nTRACK 01 " +
                                                           mode + "\nINDEX 01 00:00:00\n");
        if (used)
            QVERIFY(r.rig.write());
        frmBurnBin form({&r.rig.engine, nullptr, nullptr});
        form.Form_Load();
        form.show();
        form.cboDrives->setCurrentIndex(form.cboDrives->count() - 1); // the second recorder
        form.txtOpenFile->setText(dir.filePath("image.cue"));
        form.cmdBurn_Click();
        QVERIFY(Waits::until([&] { return !answers.boxes.isEmpty(); }));
        QCOMPARE(answers.boxes.last().prompt, box);
        QCOMPARE(WidgetSnapshot::differences(
                     &form, "copywindows-burnbin-" + snapshot,
                     {{QRegularExpression(QRegularExpression::escape(dir.path())), "DIR"}}),
                 QString());
        QVERIFY(!r.copier.TrayLocked(CopierRig::Second));
        if (snapshot == u"written")
            QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, CopierRig::trayData(1)).size(),
                     1);
    }

    void discRipper() {
        CopierRig r;
        ScriptedAnswers answers;
        QTemporaryDir dir;
        r.addFiles(dir.path(), 1, 90000);
        QVERIFY(r.rig.write());
        frmIsoripper form({&r.rig.engine, nullptr, nullptr});
        form.Form_Load();
        form.show();
        form.cboDrives->setCurrentIndex(1);
        answers.answerFile(dir.filePath("out.iso"));
        form.cmdOpen_Click();
        form.cmdRipData_Click();
        form.CD2CDX_PercentDone(57.9);
        const QList<std::pair<QRegularExpression, QString>> scrub = {
            {QRegularExpression(QRegularExpression::escape(dir.path())), "DIR"}};
        QCOMPARE(WidgetSnapshot::differences(&form, "copywindows-isoripper-ripping", scrub),
                 QString());
        QVERIFY(Waits::until([&] { return !answers.boxes.isEmpty(); }));
        QCOMPARE(WidgetSnapshot::differences(&form, "copywindows-isoripper-done", scrub),
                 QString());
        QVERIFY(!r.copier.TrayLocked(CopierRig::First));
        QCOMPARE(ReadBack::fileHashes(ReadBack::Tool::Xorriso, dir.filePath("out.iso")).size(), 1);
    }
};

QTEST_MAIN(tst_CopyWindows)
#include "tst_copywindows.moc"
