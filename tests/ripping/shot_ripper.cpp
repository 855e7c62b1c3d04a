// Not a test: shows the ripper window with a disc and the extraction dialog mid-job, and saves
// each as a picture for a person to look at.
//   shot_ripper RIPPER.png EXTRACT.png
#include "RipperRig.h"

#include "ripping/frmExtract.h"
#include "ripping/frmRipper.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    if (argc < 3)
        return 2;
    RipperRig rig;
    frmRipper window(rig.ripper.get());
    window.resize(760, 420);
    window.Form_Load();
    window.cboEncoders->setCurrentIndex(1);
    // Waves, held inside the last file so that the job is caught in the middle.
    auto encoder = std::make_shared<HoldingEncoder>();
    encoder->holdIn = QStringLiteral("Track03.wav");
    rig.ripper->SetEncoder(encoder);
    rig.ripper->setUseEncoder(true);
    window.show();
    for (int row : {0, 2})
        window.lvwTracks->topLevelItem(row)->setCheckState(0, Qt::Checked);
    window.lvwTracks->setCurrentItem(window.lvwTracks->topLevelItem(0));
    QTest::qWait(600);
    bool saved = window.grab().save(QString::fromLocal8Bit(argv[1]));
    QTimer::singleShot(0, [&] {
        frmExtract *dialog = frmExtract::instance();
        dialog->txtFileName->setText(rig.writer.env.appFolder() + "/Track.wav");
        dialog->cmdGo->click();
        saved =
            QTest::qWaitFor([dialog] { return dialog->prgTotal->value() == 1; }, 60000) && saved;
        QTest::qWait(300);
        saved = dialog->grab().save(QString::fromLocal8Bit(argv[2])) && saved;
        encoder->cancelled = true;
        dialog->close();
    });
    window.cmdExtract->click();
    return saved ? 0 : 1;
}
