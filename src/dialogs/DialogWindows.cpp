#include "DialogWindows.h"
#include "app/FormRegistry.h"
#include "frmAbout.h"
#include "frmCoder.h"
#include "frmLicense.h"
#include "frmWeb.h"

#include <QApplication>
#include <QIcon>

void registerDialogWindows() {
    // The pictures and the licence live in this library's resources, which a static library
    // has to ask for.
    Q_INIT_RESOURCE(dialogs);
    // Window icons and the desktop's task list find the program under its desktop entry.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tessaly.Tessaly"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/dialogs/tessaly-96.png")));
    using Placement = FormRegistry::Placement;
    FormRegistry::addWindow<frmAbout>(QStringLiteral("frmAbout"), Placement::Dialog);
    FormRegistry::addWindow<frmCoder>(QStringLiteral("frmCoder"), Placement::Dialog);
    FormRegistry::addWindow<frmLicense>(QStringLiteral("frmLicense"), Placement::Dialog);
    FormRegistry::addWindow<frmWeb>(QStringLiteral("frmWeb"), Placement::Dialog);
}
