// The ripper window and the extraction dialog, offscreen, on a disc the writer put on the Image
// Recorder; boxes are answered by the script.
#include "RipperRig.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "WidgetSnapshot.h"

#include "engine/writer/recorders/image/ImageRecorder.h"
#include "ripping/frmExtract.h"
#include "ripping/frmRipper.h"
#include "widgets/KeyedStatusBar.h"

#include <QtTest>
#include <QtWidgets>

namespace {
// Loads the window and chooses the Image Recorder, listed after any drive of the machine.
void loadOnImageRecorder(frmRipper &window) {
    window.Form_Load();
    window.show(); // laid out as the user sees it
    window.cboDevices->setCurrentIndex(window.cboDevices->count() - 1);
    window.cboDevices_Click();
}
} // namespace

class tst_RipperWindows : public QObject {
    Q_OBJECT
private slots:
    void rowsFollowTheDisc() {
        RipperRig rig;
        frmRipper window(rig.ripper.get());
        loadOnImageRecorder(window);
        KeyedPanel *media = window.smartStatusBarRipper->Item("MEDIA");
        QTRY_COMPARE(media->Text(), QStringLiteral(" Disc Loaded..."));
        // Stepping back from the first row stays there.
        window.lvwTracks->setCurrentItem(window.lvwTracks->topLevelItem(0));
        window.cmdBack->click();
        QCOMPARE(window.lvwTracks->currentItem(), window.lvwTracks->topLevelItem(0));
        QCOMPARE(WidgetSnapshot::differences(&window, "ripperwindows-disc-loaded"), QString());
        window.cmdEject->click();
        QTRY_COMPARE(media->Text(), QStringLiteral(" No Disc Loaded..."));
        QCOMPARE(WidgetSnapshot::differences(&window, "ripperwindows-ejected"), QString());
        // The disc goes back in: the rows come back, none ticked.
        const QDir ejected(ImageRecorder::ejectedFolder());
        for (const QString &file : ejected.entryList(QDir::Files))
            QVERIFY(
                QFile::rename(ejected.filePath(file), ImageRecorder::trayFolder() + "/" + file));
        QTRY_COMPARE(window.lvwTracks->topLevelItemCount(), 3);
        QCOMPARE(WidgetSnapshot::differences(&window, "ripperwindows-disc-back"), QString());
    }

    // What the drive reports is logged in words; unknown codes and progress add no line.
    void statusLines() {
        RipperRig rig;
        frmExtract dialog;
        dialog.show();
        for (int status : {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14, 15})
            dialog.m_objRipper_ExtractionStatus(status, 1234);
        const QString app = QRegularExpression::escape(rig.writer.env.appFolder());
        QCOMPARE(WidgetSnapshot::differences(&dialog, "ripperwindows-status-lines",
                                             {{QRegularExpression(app), "APP"}}),
                 QString());
    }

    void extract_data() {
        columns<QList<int>, QStringList>("ticked", "files");
        QTest::newRow("tracks 1 and 3")
            << QList<int>{1, 3} << QStringList{"Song01.wav", "Song03.wav"};
        QTest::newRow("cancelled in track 2") << QList<int>{1, 2, 3} << QStringList{"Song01.wav"};
        QTest::newRow("nothing ticked") << QList<int>{} << QStringList{};
    }

    // The dialog's log and buttons when the extraction has ended, for each row.
    void extract() {
        auto [ticked, files] = fetch<QList<int>, QStringList>("ticked", "files");
        RipperRig rig;
        ScriptedAnswers answers;
        frmRipper window(rig.ripper.get());
        loadOnImageRecorder(window);
        window.cboEncoders->setCurrentIndex(1); // Wav
        for (int t : ticked)
            window.lvwTracks->topLevelItem(t - 1)->setCheckState(0, Qt::Checked);
        const QString app = rig.writer.env.appFolder(), out = app + "/Music";
        QDir().mkpath(out);
        // Waves all the same, through an encoder that holds inside Song02 until the user cancels.
        auto encoder = std::make_shared<HoldingEncoder>();
        encoder->holdIn = QStringLiteral("Song02.wav");
        rig.ripper->SetEncoder(encoder);
        rig.ripper->setUseEncoder(true);
        const QList<std::pair<QRegularExpression, QString>> scrub = {
            {QRegularExpression(QRegularExpression::escape(app)), "APP"},
            {QRegularExpression(" Time: \\S+"), " Time: T"}, // the clock
            // How far the track held by the user got before the cancel reached the ripper.
            {QRegularExpression("(Track: 02 +)\\S+"), "\\1PART"},
            {QRegularExpression("(QProgressBar2 \\(QProgressBar\\)) text=\\d\\d?% value=\\d+"),
             "\\1 PART"}};
        const QString ended =
            "ripperwindows-extract-" + QString(QTest::currentDataTag()).replace(' ', '-');
        QString opened,
            finished = ended; // compared out here: a failure inside would leave the box up
        QTimer::singleShot(0, [&] {
            frmExtract *dialog = frmExtract::instance();
            opened = WidgetSnapshot::differences(dialog, "ripperwindows-extract-open", scrub);
            dialog->txtFileName->setText(out + "/Song.wav");
            dialog->cmdGo->click();
            if (ticked.contains(2)) {
                QTRY_VERIFY(
                    !dialog->lstStatus
                         ->findItems("Ripping Track#02 to " + out + "/Song02.wav", Qt::MatchExactly)
                         .isEmpty());
                QCOMPARE(dialog->cmdCancel->text(), QStringLiteral("&Cancel"));
                dialog->cmdCancel->click();
                encoder->cancelled = true;
            }
            if (!ticked.isEmpty()) {
                QTRY_VERIFY_WITH_TIMEOUT(
                    !dialog->lstStatus->findItems("Audio Ripping Complete!", Qt::MatchExactly)
                         .isEmpty(),
                    60000);
                finished = WidgetSnapshot::differences(dialog, ended, scrub);
                dialog->cmdCancel->click();
            }
        });
        window.cmdExtract->click(); // modal until the dialog closes
        QCOMPARE(opened, QString());
        QCOMPARE(finished, ticked.isEmpty() ? ended : QString());
        QCOMPARE(QDir(out).entryList(QDir::Files, QDir::Name), files);
        QCOMPARE(answers.boxes.size(), ticked.isEmpty() ? 1 : 0);
        if (ticked.isEmpty())
            QCOMPARE(answers.boxes.first().prompt,
                     QStringLiteral("No Tracks Selected for Extraction."));
        QVERIFY(window.Timer1->isActive());
    }
};

QTEST_MAIN(tst_RipperWindows)
#include "tst_ripperwindows.moc"
