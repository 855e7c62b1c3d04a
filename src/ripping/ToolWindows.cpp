#include "ToolWindows.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "diagnostics/ErrorTrap.h"
#include "frmDecode.h"
#include "frmNormalize.h"
#include "widgets/DefaultInstance.h"

#include <QCoreApplication>
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

} // namespace

void registerToolWindows() {
    runStartCommand();
    FormRegistry::addWindow<frmDecode>(QStringLiteral("frmDecode"), FormRegistry::Placement::Child);
    FormRegistry::addWindow<frmNormalize>(QStringLiteral("frmNormalize"),
                                          FormRegistry::Placement::Child);
}
