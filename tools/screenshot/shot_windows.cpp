// Not a test: plays one scene of the program and saves a picture of it, for a person to look
// at (scripts/screenshot runs it).   shot_windows SCENE OUT.png [ARGUMENT]
//   audio [FOLDER]      the audio window half-way through its second track
//   write [FOLDER]      the write dialog a third of the way through writing FOLDER
//   data FOLDER         the data window opened at the dropped FOLDER
#include "DataWindowRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "RecordingWaveOutput.h"
#include "RipperRig.h"
#include "ViewGestures.h"
#include "Waits.h"
#include "WriteRig.h"

#include "app/FormRegistry.h"
#include "app/frmChooseDiscType.h"
#include "app/mdiMain.h"
#include "compilation/frmAudio.h"
#include "compilation/frmData.h"
#include "compilation/modCDPlay.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwErrHandler.h"
#include "diagnostics/vbwExceptions.h"
#include "diagnostics/vbwFrmErrHandler.h"
#include "engine/writer/CDWriterPro.h"
#include "printing/frmPreView.h"
#include "ripping/frmExtract.h"
#include "ripping/frmRipper.h"
#include "widgets/DefaultInstance.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

namespace {

bool grabScreen(const QString &out) {
    QTest::qWait(300);
    return QGuiApplication::primaryScreen()->grabWindow(0).save(out);
}

// NEW and the disc type box answered, as a user starts a compilation.
void newCompilation(mdiMain *f, bool audio) {
    f->runCommand("NEW");
    QCoreApplication::processEvents();
    if (auto *chooser = f->findChild<frmChooseDiscType *>()) {
        (audio ? chooser->optAudio : chooser->optData)->click();
        chooser->cmdOK->click();
    }
    QCoreApplication::processEvents();
}

bool audioWindow(const QString &out, QString folder) {
    QTemporaryDir generated;
    if (folder.isEmpty()) {
        folder = generated.path();
        const QStringList names = {"01 Morning", "02 Harbour Lights", "03 Rain",
                                   "04 The Long Road"};
        for (int i = 0; i < names.size(); ++i)
            Fixtures::writeFile(
                generated.filePath(names[i] + ".wav"),
                Fixtures::cdWave(Fixtures::pseudoRandom((20 + 17 * i) * 176400, i)));
    }
    RecordingWaveOutput sink;
    sink.held = true;
    WriteRig rig({}, 99);
    if (!rig.started())
        return false;
    newCompilation(rig.frame(), true);
    frmAudio *audio = DefaultInstance<frmAudio>::peek();
    QStringList paths;
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name))
        paths.append(dir.filePath(name));
    ViewGestures::drop(audio->lvwAudioTracks, paths);
    QTreeWidgetItem *second = audio->lvwAudioTracks->topLevelItem(1);
    if (!second)
        return false;
    audio->lvwAudioTracks->setCurrentItem(second);
    audio->lvwAudioTracks_ItemClick(second);
    audio->cmdPlay->click();
    while (modCDPlay::Position() < modCDPlay::Length() / 2 && modCDPlay::isPlaying()) {
        QCoreApplication::processEvents();
        sink.release(1);
    }
    return grabScreen(out);
}

// The Image Recorder writes at a drive's pace so that the write is caught a third of the way.
bool writeDialog(const QString &out, QString folder, bool dataOnly) {
    QTemporaryDir generated;
    if (folder.isEmpty()) {
        for (int i = 0; i < 8; ++i)
            Fixtures::writeFile(generated.filePath(QString("Holiday/photo%1.jpg").arg(i)),
                                Fixtures::pseudoRandom(4 * 1024 * 1024, i));
        folder = generated.filePath("Holiday");
    }
    WriteRig rig({"EmulateSpeed=1"}, 99);
    if (!rig.started())
        return false;
    mdiMain *f = rig.frame();
    newCompilation(f, false);
    frmData *data = DefaultInstance<frmData>::peek();
    ViewGestures::drop(data->tvwDirectories, {QDir(folder).absolutePath()});
    if (QTreeWidgetItem *top = data->tvwDirectories->topLevelItem(0))
        top->setExpanded(true);
    if (dataOnly) {
        const QString name = frmData::GetLastPathItem(QDir::cleanPath(folder));
        if (QTreeWidgetItem *node = data->node(QStringLiteral("\\") + name)) {
            data->tvwDirectories->setCurrentItem(node);
            data->UpdateImage();
        }
        return grabScreen(out);
    }
    f->cboWriteSpeed->setCurrentIndex(f->cboWriteSpeed->count() - 1);
    frmBurn *burn = rig.openDialog();
    burn->move(f->geometry().center() - burn->rect().center());
    burn->optWrite->click();
    burn->cmdWrite->click();
    (void)QTest::qWaitFor(
        [&] { return !frmBurn::instance() || burn->prgTrackProgress->value() >= 33; }, 120000);
    const bool saved = grabScreen(out);
    if (frmBurn::instance() && burn->cmdCancel->isEnabled())
        burn->cmdCancel->click();
    (void)QTest::qWaitFor([] { return !frmBurn::instance(); }, 60000);
    return saved;
}

} // namespace

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString scene = args.value(1), out = args.value(2), arg = args.value(3);
    bool saved = false;
    if (scene == u"audio")
        saved = audioWindow(out, arg);
    else if (scene == u"write" || scene == u"data")
        saved = writeDialog(out, arg, scene == u"data");
    else
        return 2;
    return saved ? 0 : 1;
}
