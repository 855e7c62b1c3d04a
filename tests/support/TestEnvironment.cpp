#include "TestEnvironment.h"
#include "Fixtures.h"
#include "ScriptedAnswers.h"
#include "app/frmSplash.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "app/modMain.h"
#include "base/App.h"
#include "compilation/CompilationWindows.h"
#include "copying/CopyingWindows.h"
#include "disctools/DiscToolWindows.h"
#include "printing/PrintingWindows.h"
#include "ripping/ToolWindows.h"
#include "widgets/DefaultInstance.h"
#include "writing/WritingWindows.h"

#include <QtWidgets>

TestEnvironment::TestEnvironment() {
    ScriptedAnswers::installFallback();
    App::setPath(m_dir.path());
    QDir().mkpath(m_dir.path() + QStringLiteral("/Dat"));
    // Not a first start: tests choose for themselves whether a disc lies in the tray.
    QDir().mkpath(m_dir.path() + QStringLiteral("/Image Recorder"));
    ResetDeclarations();
    gstrINIFile = iniFile();
}

TestEnvironment::~TestEnvironment() {
    stopProgram();
}

void TestEnvironment::writeFile(const QString &relativeName, const QByteArray &bytes) const {
    Fixtures::writeFile(m_dir.path() + u'/' + relativeName, bytes);
}

bool TestEnvironment::startProgram() {
    registerCompilationWindows();
    registerWritingWindows();
    registerToolWindows();
    registerCopyingWindows();
    registerDiscToolWindows();
    registerPrintingWindows();
    modMain::Main();
    if (!modMain::Started())
        return false;
    frmSplash *splash = DefaultInstance<frmSplash>::peek();
    for (int i = 0; splash && i < 50 && DefaultInstance<frmSplash>::exists(); ++i)
        splash->tmrWait_Timer();
    QCoreApplication::processEvents();
    return DefaultInstance<mdiMain>::exists();
}

void TestEnvironment::stopProgram() {
    const bool closeWindows = gblnCloseWindows;
    gblnCloseWindows = true;
    DefaultInstance<mdiMain>::unload();
    DefaultInstance<frmSplash>::unload();
    gblnCloseWindows = closeWindows;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    modMain::ReleaseInstance();
}

QString TestEnvironment::programPath() {
    return qEnvironmentVariable("TESSALY_BINARY", QCoreApplication::applicationDirPath() +
                                                      QStringLiteral("/tessaly"));
}
