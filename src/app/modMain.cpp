#include "modMain.h"
#include "base/App.h"
#include "frmSplash.h"
#include "modDeclarations.h"
#include "widgets/DefaultInstance.h"
#include "widgets/MessageBoxService.h"

#include <QLockFile>
#include <memory>

namespace {

bool s_started = false;
QString s_helpFile;

// One instance per application folder: a lock file there. A lock left by a crashed run names
// a process that no longer exists, and QLockFile takes such a lock over.
std::unique_ptr<QLockFile> &instanceLock() {
    static std::unique_ptr<QLockFile> lock;
    return lock;
}

bool AnotherInstanceRunning() {
    auto lock = std::make_unique<QLockFile>(App::pathOf(QStringLiteral("/tessaly.lock")));
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        // A folder we can't write to can't hold a lock either; only a held lock refuses.
        if (lock->error() == QLockFile::LockFailedError)
            return true;
        return false;
    }
    instanceLock() = std::move(lock);
    return false;
}

} // namespace

namespace modMain {

void Main() {
    s_started = false;
    if (AnotherInstanceRunning()) {
        MsgBox(QStringLiteral("Tessaly is already running"), vbExclamation,
               App::ProductName() + QStringLiteral(" - Warning"));
        return;
    }
    s_started = true;
    DefaultInstance<frmSplash>::get()->show();
    s_helpFile = App::pathOf(QStringLiteral("/tessaly.hlp")) + QStringLiteral(">hWindow");
    InitCommonControlsVB();
    gblnCloseWindows = false;
    gblnDisctypeIsData = 99;
    gblnIsTestWrite = false;
    gstrINIFile = App::pathOf(QStringLiteral("/Dat/tessaly.ini"));
    for (int i = 1; i <= 100; ++i)
        gblnFormExist(i - 1) = true;
    RegisterDeclarationsDump();
}

bool Started() {
    return s_started;
}

bool InitCommonControlsVB() {
    return true;
}

QString HelpFile() {
    return s_helpFile;
}

void ReleaseInstance() {
    instanceLock().reset();
}

} // namespace modMain
