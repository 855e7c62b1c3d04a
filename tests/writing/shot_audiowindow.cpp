// Not a test: saves a picture of the audio window half-way through its second track, for a
// person to look at.   shot_audiowindow OUT.png [FOLDER of waves, default four generated ones]
#include "WriteRig.h"

#include "Fixtures.h"
#include "RecordingWaveOutput.h"
#include "ViewGestures.h"
#include "app/frmChooseDiscType.h"
#include "app/mdiMain.h"
#include "compilation/frmAudio.h"
#include "compilation/modCDPlay.h"
#include "widgets/DefaultInstance.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        qWarning("usage: shot_audiowindow OUT.png [FOLDER]");
        return 2;
    }
    QTemporaryDir generated;
    const QString folder = args.value(2, generated.path());
    const QStringList names = {"01 Morning", "02 Harbour Lights", "03 Rain", "04 The Long Road"};
    for (int i = 0; i < names.size() && args.size() < 3; ++i)
        Fixtures::writeFile(generated.filePath(names[i] + ".wav"),
                            Fixtures::cdWave(Fixtures::pseudoRandom((20 + 17 * i) * 176400, i)));
    RecordingWaveOutput sink;
    sink.held = true;
    WriteRig rig({}, 99);
    if (!rig.started())
        return 1;
    mdiMain *f = rig.frame();
    // NEW, an audio disc, and the waves dropped into it.
    f->runCommand("NEW");
    QCoreApplication::processEvents();
    if (auto *chooser = f->findChild<frmChooseDiscType *>()) {
        chooser->optAudio->click();
        chooser->cmdOK->click();
    }
    QCoreApplication::processEvents();
    frmAudio *audio = DefaultInstance<frmAudio>::peek();
    if (!audio)
        return 1;
    QStringList paths;
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name))
        paths.append(dir.filePath(name));
    ViewGestures::drop(audio->lvwAudioTracks, paths);
    QTreeWidgetItem *second = audio->lvwAudioTracks->topLevelItem(1);
    if (!second)
        return 1;
    // The second track clicked and played until half of it has been heard.
    audio->lvwAudioTracks->setCurrentItem(second);
    audio->lvwAudioTracks_ItemClick(second);
    audio->cmdPlay->click();
    while (modCDPlay::Position() < modCDPlay::Length() / 2 && modCDPlay::isPlaying()) {
        QCoreApplication::processEvents();
        sink.release(1);
    }
    QTest::qWait(300);
    return QGuiApplication::primaryScreen()->grabWindow(0).save(args.at(1)) ? 0 : 1;
}
