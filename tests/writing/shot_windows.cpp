// Not a test: plays one scene of the program and saves a picture of it, for a person to look
// at (scripts/screenshot runs it).   shot_windows SCENE OUT.png [ARGUMENT]
//   audio [FOLDER]      the audio window half-way through its second track
//   write [FOLDER]      the write dialog a third of the way through writing FOLDER
//   data FOLDER         the data window opened at the dropped FOLDER
//   saveiso | burniso   the options box of saving or of writing an ISO file
//   preview data|audio  the print preview of a generated compilation
//   error [reported]    the trap's dialog after a division by zero
//   ripper EXTRACT.png  the ripper window, and the extraction dialog mid-job in EXTRACT.png
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

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>

namespace {

volatile int zero = 0;

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
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(QDir(folder).absolutePath())});
    data->OLEDragDrop(&dropped);
    QCoreApplication::processEvents();
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

bool isoOptions(const QString &out, bool burn) {
    WriteRig rig({}, 99);
    if (!rig.started())
        return false;
    QTemporaryDir dir;
    const QString iso = dir.filePath("photos.iso");
    Fixtures::writeFile(dir.filePath("src/photo.jpg"), Fixtures::pseudoRandom(300000, 1));
    ReadBack::run("xorriso", {"-as", "mkisofs", "-quiet", "-o", iso, dir.filePath("src")});
    if (!burn) {
        FormRegistry::open(QStringLiteral("frmData"));
        FormRegistry::open(QStringLiteral("ResetImage"));
        rig.frame()->Tessaly->AddISODirectory("\\Photos", dir.filePath("src"));
    }
    rig.answers.answerFile(burn ? std::optional<QString>(iso) : std::nullopt);
    bool saved = false;
    QTimer::singleShot(200, [&] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            saved = grabScreen(out);
            box->findChild<QPushButton *>("cmdContinue")->click();
        }
    });
    rig.frame()->runCommand(burn ? "WRITEISO" : "SAVEASISO");
    Waits::until([&] { return !burn || !rig.ending.isEmpty(); });
    return saved;
}

bool preview(const QString &out, bool audio) {
    DataWindowRig rig;
    if (!rig.started())
        return false;
    QStringList paths;
    for (const char *name : {"Photos/2025 Holiday/beach.jpg", "Photos/portrait.png", "readme.txt",
                             "Letters/a letter with a name far too long to fit in its column of "
                             "the printed list, which cuts it short.odt"})
        paths.append(rig.source(name, QByteArray(300000, 'p')));
    if (audio) {
        rig.data()->close();
        newCompilation(rig.frame(), true);
        paths.clear();
        for (const char *name : {"01 Morning.wav", "02 Harbour Lights.wav", "03 Rain.wav"})
            paths.append(rig.source(name, Fixtures::cdWave(Fixtures::pseudoRandom(900000, 1))));
        ViewGestures::drop(DefaultInstance<frmAudio>::peek()->lvwAudioTracks, paths);
    } else {
        rig.drop(rig.data()->tvwDirectories,
                 {QFileInfo(paths[1]).path(), paths[2], QFileInfo(paths[3]).path()});
    }
    rig.frame()->runCommand(QStringLiteral("PRINTPREVIEW"));
    QTest::qWait(300);
    frmPreView *shown = DefaultInstance<frmPreView>::peek();
    return shown && shown->grab().save(out);
}

bool errorDialog(const QString &out, bool reported) {
    TestEnvironment env;
    if (!env.startProgram())
        return false;
    vbwHandleException();
    vbwFrmErrHandler::setAnswerer({});
    vbwState().vbwfHasReported = reported;
    QTest::qWait(500);
    bool saved = false;
    QTimer::singleShot(1000, [&] {
        saved = QGuiApplication::primaryScreen()->grabWindow(0).save(out);
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialog->close();
    });
    ErrorTrap::run("cmdDivide_Click", "frmData", [] { zero = 7 / zero; });
    env.stopProgram();
    return saved;
}

// Waves held inside the last file, so that the extraction is caught in the middle.
bool ripper(const QString &out, const QString &extractOut) {
    RipperRig rig;
    frmRipper window(rig.ripper.get());
    window.resize(760, 420);
    window.Form_Load();
    window.cboEncoders->setCurrentIndex(1);
    auto encoder = std::make_shared<HoldingEncoder>();
    encoder->holdIn = QStringLiteral("Track03.wav");
    rig.ripper->SetEncoder(encoder);
    rig.ripper->setUseEncoder(true);
    window.show();
    for (int row : {0, 2})
        window.lvwTracks->topLevelItem(row)->setCheckState(0, Qt::Checked);
    window.lvwTracks->setCurrentItem(window.lvwTracks->topLevelItem(0));
    QTest::qWait(600);
    bool saved = window.grab().save(out);
    QTimer::singleShot(0, [&] {
        frmExtract *dialog = frmExtract::instance();
        dialog->txtFileName->setText(rig.writer.env.appFolder() + "/Track.wav");
        dialog->cmdGo->click();
        saved =
            QTest::qWaitFor([dialog] { return dialog->prgTotal->value() == 1; }, 60000) && saved;
        QTest::qWait(300);
        saved = dialog->grab().save(extractOut) && saved;
        encoder->cancelled = true;
        dialog->close();
    });
    window.cmdExtract->click();
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
    else if (scene == u"saveiso" || scene == u"burniso")
        saved = isoOptions(out, scene == u"burniso");
    else if (scene == u"preview")
        saved = preview(out, arg == u"audio");
    else if (scene == u"error")
        saved = errorDialog(out, arg == u"reported");
    else if (scene == u"ripper" && !arg.isEmpty())
        saved = ripper(out, arg);
    else
        return 2;
    return saved ? 0 : 1;
}
