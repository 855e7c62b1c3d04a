#include "mdiMain.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "modIniFunc.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QMdiArea>

mdiMain::mdiMain() {
    setAttribute(Qt::WA_DeleteOnClose);
    m_mdiArea = new QMdiArea(this);
    setCentralWidget(m_mdiArea);
    ErrorTrap::run("MDIForm_Load", "mdiMain", [this] { MDIForm_Load(); });
}

void mdiMain::MDIForm_Load() {
    setWindowTitle(App::ProductName() + QStringLiteral(" - [FreeWare] Version ") +
                   App::versionText());
    move(0, 0);
    const QString resolution = ScreenResolution();
    if (resolution == QLatin1String("640 X 480") || resolution == QLatin1String("800 X 600") ||
        resolution == QLatin1String("848 X 480")) {
        setWindowState(Qt::WindowMaximized);
    } else {
        const qint16 state = CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                                          QStringLiteral("Maximized Value"), QStringLiteral("0")));
        setWindowState(state == 2   ? Qt::WindowMaximized
                       : state == 1 ? Qt::WindowMinimized
                                    : Qt::WindowNoState);
        resize(Twips::toPixels(15400), Twips::toPixels(11100));
    }
}

void mdiMain::ToolMenuExit() {
    close();
}

void mdiMain::closeEvent(QCloseEvent *event) {
    int Cancel = 0;
    ErrorTrap::run("MDIForm_QueryUnload", "mdiMain", [&] { MDIForm_QueryUnload(Cancel, 0); });
    if (Cancel != 0) {
        event->ignore();
        return;
    }
    event->accept();
}

void mdiMain::MDIForm_QueryUnload(int &Cancel, int UnloadMode) {
    Q_UNUSED(UnloadMode);
    if (gblnCloseWindows)
        return;
    if (MsgBox(QStringLiteral("Tessaly Pro will shut down, really want to quit?"),
               vbYesNo | vbQuestion, App::ProductName() + QStringLiteral(" - Message")) == vbNo)
        Cancel = 1;
}
