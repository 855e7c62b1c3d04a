// Not a test: puts the program's frame on the screen, divides by zero in a handler and saves
// the screen while the trap's dialog stands over it, so that a person can look at it.
//   shot_errordialog OUT.png [--reported]
// With --reported the dialog shows its face after a report.
#include "TestEnvironment.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwErrHandler.h"
#include "diagnostics/vbwExceptions.h"
#include "diagnostics/vbwFrmErrHandler.h"

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTimer>

namespace {
volatile int zero = 0;
}

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2)
        return 2;
    TestEnvironment env;
    if (!env.startProgram())
        return 1;
    vbwHandleException();
    vbwFrmErrHandler::setAnswerer({});
    vbwState().vbwfHasReported = args.contains(QStringLiteral("--reported"));
    QTest::qWait(500);
    bool saved = false;
    QTimer::singleShot(1000, [&] {
        saved = QGuiApplication::primaryScreen()->grabWindow(0).save(args.at(1));
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialog->close();
    });
    ErrorTrap::run("cmdDivide_Click", "frmData", [] { zero = 7 / zero; });
    env.stopProgram();
    return saved ? 0 : 1;
}
