// Not a test: saves a picture of the print preview of a data or an audio compilation, for a
// person to look at.   shot_preview OUT.png data|audio [FOLDER to drop, default generated]
#include "DataWindowRig.h"
#include "Fixtures.h"
#include "ViewGestures.h"
#include "WriteRig.h"

#include "app/frmChooseDiscType.h"
#include "app/mdiMain.h"
#include "compilation/frmAudio.h"
#include "compilation/frmData.h"
#include "printing/frmPreView.h"
#include "widgets/DefaultInstance.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

namespace {

bool saveOpenPreview(mdiMain *frame, const QString &out) {
    frame->runCommand(QStringLiteral("PRINTPREVIEW"));
    QTest::qWait(300);
    frmPreView *preview = DefaultInstance<frmPreView>::peek();
    return preview && preview->grab().save(out);
}

} // namespace

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        qWarning("usage: shot_preview OUT.png data|audio [FOLDER]");
        return 2;
    }
    QTemporaryDir generated;
    const QString folder = args.value(3, generated.path());
    if (args.at(2) == u"audio") {
        const QStringList names = {"01 Morning", "02 Harbour Lights", "03 Rain"};
        for (int i = 0; i < names.size() && args.size() < 4; ++i)
            Fixtures::writeFile(generated.filePath(names[i] + ".wav"),
                                Fixtures::cdWave(Fixtures::pseudoRandom((5 + 3 * i) * 176400, i)));
        WriteRig rig({}, 99);
        if (!rig.started())
            return 1;
        rig.frame()->runCommand("NEW");
        QCoreApplication::processEvents();
        if (auto *chooser = rig.frame()->findChild<frmChooseDiscType *>()) {
            chooser->optAudio->click();
            chooser->cmdOK->click();
        }
        QCoreApplication::processEvents();
        frmAudio *audio = DefaultInstance<frmAudio>::peek();
        if (!audio)
            return 1;
        QStringList paths;
        const QDir dir(folder);
        for (const QString &name : dir.entryList({"*.wav"}, QDir::Files, QDir::Name))
            paths.append(dir.filePath(name));
        ViewGestures::drop(audio->lvwAudioTracks, paths);
        return saveOpenPreview(rig.frame(), args.at(1)) ? 0 : 1;
    }
    DataWindowRig rig;
    if (!rig.started())
        return 1;
    QStringList drops{folder};
    if (args.size() < 4) {
        drops.clear();
        for (const char *name : {"Photos/2025 Holiday/beach.jpg", "Photos/2025 Holiday/harbour.jpg",
                                 "Photos/portrait.png", "Letters/to the council.odt",
                                 "Letters/a letter with a name far too long to fit in its column "
                                 "of the printed list.odt"})
            rig.source(QString::fromLatin1(name), QByteArray(300000, 'p'));
        drops = {QFileInfo(rig.source("Photos/portrait.png")).path(),
                 QFileInfo(rig.source("Letters/to the council.odt")).path(),
                 rig.source("readme.txt")};
    }
    rig.drop(rig.data()->tvwDirectories, drops);
    return saveOpenPreview(rig.frame(), args.at(1)) ? 0 : 1;
}
