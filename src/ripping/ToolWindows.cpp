#include "ToolWindows.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "diagnostics/ErrorTrap.h"
#include "frmDecode.h"
#include "frmNormalize.h"
#include "widgets/DefaultInstance.h"

#include <QCoreApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

namespace {

// "--command KEY" runs one command of the frame once the frame stands, as a click on its menu
// item would: a tool window to look at without a mouse (screenshots, demonstrations).
void runStartCommand() {
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype at = arguments.indexOf(QStringLiteral("--command"));
    if (at < 0 || at + 1 >= arguments.size())
        return;
    const QString key = arguments.at(at + 1);
    auto *poll = new QTimer;
    poll->setInterval(100);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, key] {
        mdiMain *main = DefaultInstance<mdiMain>::peek();
        if (!main || !main->isVisible())
            return;
        poll->deleteLater();
        ErrorTrap::run("runCommand", "ToolWindows", [main, key] { main->runCommand(key); });
    });
    poll->start();
}

// Puts the tool's default instance into the frame's area when it is made (on its own without a
// frame) and brings it to the front; an open one is only brought forward.
template<typename T> void openTool(QWidget *owner) {
    const bool fresh = !DefaultInstance<T>::exists();
    T *form = DefaultInstance<T>::get();
    if (fresh) {
        if (auto *main = qobject_cast<mdiMain *>(owner)) {
            QMdiSubWindow *window = main->mdiArea()->addSubWindow(form);
            window->setAttribute(Qt::WA_DeleteOnClose);
            QObject::connect(form, &QObject::destroyed, window, &QObject::deleteLater);
        }
        if constexpr (requires { form->Form_Load(); })
            ErrorTrap::run("Form_Load", T::staticMetaObject.className(),
                           [form] { form->Form_Load(); });
    }
    form->show();
    if (auto *window = qobject_cast<QMdiSubWindow *>(form->parentWidget())) {
        window->adjustSize();
        window->show();
        window->mdiArea()->setActiveSubWindow(window);
    }
    form->raise();
}

} // namespace

void registerToolWindows() {
    runStartCommand();
    FormRegistry::add(QStringLiteral("frmDecode"), openTool<frmDecode>);
    FormRegistry::add(QStringLiteral("frmNormalize"), openTool<frmNormalize>);
}
