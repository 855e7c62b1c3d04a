// Not a test: puts the program on the screen mid-write, the write dialog over the frame, and
// saves what the screen shows, so that a person can look at it.
//   shot_writedialog OUT.png [FOLDER] [--data-only]
// With --data-only it stops before the write, with the dropped folder open in the data window.
// FOLDER (default: a generated one) goes into the data image; the Image Recorder writes at a
// drive's pace so that the write is caught a third of the way through.
#include "Fixtures.h"
#include "WriteRig.h"

#include "app/frmChooseDiscType.h"
#include "app/mdiMain.h"
#include "compilation/frmData.h"
#include "widgets/DefaultInstance.h"
#include "writing/frmBurn.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        qWarning("usage: shot_writedialog OUT.png [FOLDER]");
        return 2;
    }
    QTemporaryDir generated;
    const bool dataOnly = args.contains(QStringLiteral("--data-only"));
    QString folder = args.value(2) == QStringLiteral("--data-only") ? QString() : args.value(2);
    if (folder.isEmpty()) {
        for (int i = 0; i < 8; ++i)
            Fixtures::writeFile(generated.filePath(QString("Holiday/photo%1.jpg").arg(i)),
                                Fixtures::pseudoRandom(4 * 1024 * 1024, i));
        folder = generated.filePath("Holiday");
    }
    WriteRig rig({"EmulateSpeed=1"}, 99);
    if (!rig.started())
        return 1;
    mdiMain *f = rig.frame();
    // NEW, a data disc, and the folder dropped into it.
    f->runCommand("NEW");
    QCoreApplication::processEvents();
    auto *chooser = f->findChild<frmChooseDiscType *>();
    if (!chooser)
        return 1;
    chooser->optData->click();
    chooser->cmdOK->click();
    QCoreApplication::processEvents();
    frmData *data = DefaultInstance<frmData>::peek();
    if (!data)
        return 1;
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(QDir(folder).absolutePath())});
    data->OLEDragDrop(&dropped);
    QCoreApplication::processEvents();
    if (QTreeWidgetItem *top = data->tvwDirectories->topLevelItem(0))
        top->setExpanded(true);
    if (dataOnly) {
        // Opened at the dropped folder, as a user clicking into it sees it.
        const QString name = frmData::GetLastPathItem(QDir::cleanPath(folder));
        if (QTreeWidgetItem *node = data->node(QStringLiteral("\\") + name)) {
            data->tvwDirectories->setCurrentItem(node);
            data->UpdateImage();
        }
        QTest::qWait(300);
        return QGuiApplication::primaryScreen()->grabWindow(0).save(args.at(1)) ? 0 : 1;
    }
    // A slow speed, as a user with a cautious drive would pick.
    f->cboWriteSpeed->setCurrentIndex(f->cboWriteSpeed->count() - 1);
    frmBurn *burn = rig.openDialog();
    burn->move(f->geometry().center() - burn->rect().center());
    burn->optWrite->click();
    burn->cmdWrite->click();
    (void)QTest::qWaitFor(
        [&] { return !frmBurn::instance() || burn->prgTrackProgress->value() >= 33; }, 120000);
    QTest::qWait(300);
    const bool saved = QGuiApplication::primaryScreen()->grabWindow(0).save(args.at(1));
    if (frmBurn::instance() && burn->cmdCancel->isEnabled())
        burn->cmdCancel->click();
    (void)QTest::qWaitFor([] { return !frmBurn::instance(); }, 60000);
    return saved ? 0 : 1;
}
