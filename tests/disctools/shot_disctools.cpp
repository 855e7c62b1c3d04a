// Not a test: puts the options box of saving or of writing an ISO file on the screen over the
// frame and saves what the screen shows.   shot_disctools OUT.png saveiso|burniso
#include "Fixtures.h"
#include "ReadBack.h"
#include "Waits.h"
#include "WriteRig.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "engine/writer/CDWriterPro.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const bool burn = args.value(2) == QLatin1String("burniso");
    WriteRig rig({}, 99);
    if (args.size() < 3 || !rig.started())
        return 2;
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
            QTest::qWait(300);
            saved = QGuiApplication::primaryScreen()->grabWindow(0).save(args.at(1));
            box->findChild<QPushButton *>("cmdContinue")->click();
        }
    });
    rig.frame()->runCommand(burn ? "WRITEISO" : "SAVEASISO");
    Waits::until([&] { return !burn || !rig.ending.isEmpty(); });
    return saved ? 0 : 1;
}
