// Not a test: saves a picture of the print preview of a generated data or audio compilation,
// for a person to look at.   shot_preview OUT.png data|audio
#include "DataWindowRig.h"
#include "Fixtures.h"
#include "ViewGestures.h"

#include "app/frmChooseDiscType.h"
#include "app/mdiMain.h"
#include "compilation/frmAudio.h"
#include "compilation/frmData.h"
#include "printing/frmPreView.h"
#include "widgets/DefaultInstance.h"

#include <QApplication>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const bool audio = args.value(2) == u"audio";
    DataWindowRig rig;
    if (args.size() < 3 || !rig.started())
        return 2;
    QStringList paths;
    for (const char *name : {"Photos/2025 Holiday/beach.jpg", "Photos/portrait.png", "readme.txt",
                             "Letters/a letter with a name far too long to fit in its column of "
                             "the printed list, which cuts it short.odt"})
        paths.append(rig.source(name, QByteArray(300000, 'p')));
    if (audio) {
        rig.data()->close();
        rig.frame()->runCommand("NEW");
        QCoreApplication::processEvents();
        auto *chooser = rig.frame()->findChild<frmChooseDiscType *>();
        chooser->optAudio->click();
        chooser->cmdOK->click();
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
    frmPreView *preview = DefaultInstance<frmPreView>::peek();
    return preview && preview->grab().save(args.at(1)) ? 0 : 1;
}
