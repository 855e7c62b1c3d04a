#include "CompilationWindows.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "frmData.h"
#include "frmLabels.h"
#include "widgets/DefaultInstance.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace {

mdiMain *frameOf(QWidget *owner) {
    if (auto *main = qobject_cast<mdiMain *>(owner))
        return main;
    return DefaultInstance<mdiMain>::peek();
}

void openData(QWidget *owner) {
    mdiMain *main = frameOf(owner);
    if (!main)
        return;
    const bool fresh = !DefaultInstance<frmData>::exists();
    frmData *data = DefaultInstance<frmData>::get();
    if (fresh) {
        QMdiSubWindow *window = main->mdiArea()->addSubWindow(data);
        window->setAttribute(Qt::WA_DeleteOnClose);
        // Unloading the window alone takes its frame in the area with it.
        QObject::connect(data, &QObject::destroyed, window, &QObject::deleteLater);
        data->Form_Load();
    }
    data->show();
    if (auto *window = qobject_cast<QMdiSubWindow *>(data->parentWidget())) {
        window->show();
        main->mdiArea()->setActiveSubWindow(window);
    }
}

} // namespace

void registerCompilationWindows() {
    FormRegistry::add(QStringLiteral("frmData"), openData);
    FormRegistry::add(QStringLiteral("ResetImage"), [](QWidget *owner) {
        if (mdiMain *main = frameOf(owner))
            main->ResetImage();
    });
    FormRegistry::add(QStringLiteral("frmLabels"),
                      [](QWidget *owner) { frmLabels::showModal(frameOf(owner)); });
}
