#include "vbwErrHandler.h"
#include "base/App.h"
#include "vbwDump.h"
#include "vbwErrorReport.h"
#include "vbwFrmErrHandler.h"

#include <QApplication>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QWidget>

vbwErrorState &vbwState() {
    static vbwErrorState state;
    return state;
}

QString vbwBuildMessage(int number, const QString &description, int line, const QString &procedure,
                        const QString &module, const QString &project) {
    const QString crlf = QStringLiteral("\r\n");
    return QStringLiteral("An unexpected error has occured in this application: ") + crlf + crlf +
           QStringLiteral("Error ") + QString::number(number) + crlf +
           QStringLiteral("Description: ") + description + crlf + QStringLiteral("Project: ") +
           project + crlf + QStringLiteral("Module: ") + module + crlf +
           QStringLiteral("Procedure: ") + procedure + crlf + QStringLiteral("Line: ") +
           QString::number(line) + crlf + QStringLiteral("Version: ") + App::versionText() + crlf;
}

namespace {

// Stops every running timer of every window, so that none fires behind the dialog.
QList<QPointer<QTimer>> stopTimers() {
    QList<QPointer<QTimer>> stopped;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        for (QTimer *t : w->findChildren<QTimer *>()) {
            if (t->isActive()) {
                t->stop();
                stopped.append(t);
            }
        }
    }
    return stopped;
}

void restartTimers(const QList<QPointer<QTimer>> &timers) {
    for (const QPointer<QTimer> &t : timers) {
        if (t)
            t->start();
    }
}

} // namespace

namespace {
// The second call, after the dump: the report's files, the zip and the mail, then the dialog
// again in its second state.
int secondCall(const QList<QPointer<QTimer>> &timers) {
    vbwErrorState &s = vbwState();
    const QString zip = vbwErrorReport::writeFiles();
    vbwErrorReport::mail(zip);
    QApplication::restoreOverrideCursor();
    QCoreApplication::processEvents();
    s.vbwfHasReported = true;
    s.vbwRetCode = vbwFrmErrHandler::ask(s.vbwMessageString);
    if (s.vbwRetCode == vbwRetry || s.vbwRetCode == vbwIgnore)
        restartTimers(timers);
    return s.vbwRetCode;
}
} // namespace

int vbwHandleError(int lngErrNumber, const QString &strDescription, int lngLine,
                   const QString &strProcedure, const QString &strModule,
                   const QString &strProject) {
    vbwErrorState &s = vbwState();
    // The timers a first call stopped wait for the second call to start them again.
    static QList<QPointer<QTimer>> timers;
    if (lngErrNumber == -1)
        return secondCall(timers);
    s.vbwRetCode = 0;
    QApplication::restoreOverrideCursor();
    s.lastNumber = lngErrNumber;
    s.lastDescription = strDescription;
    s.lastProcedure = strProcedure;
    s.lastModule = strModule;

    timers = stopTimers();
    QCoreApplication::processEvents();

    s.vbwMessageString =
        vbwBuildMessage(lngErrNumber, strDescription, lngLine, strProcedure, strModule, strProject);
    s.vbwRetCode = vbwFrmErrHandler::ask(s.vbwMessageString);
    if (s.vbwRetCode == vbwReport) {
        if (s.vbwfHasReported) {
            s.vbwRetCode = vbwIgnore; // one report a run: the dialog no longer offers it
        } else {
            s.vbwErrorPath = vbwErrorReport::folder();
            vbwErrorReport::prepareFolder();
            vbwSetDumpFile(s.vbwErrorPath + QStringLiteral("Variables.txt"));
            return vbwReport;
        }
    }
    if (s.vbwRetCode == vbwRetry || s.vbwRetCode == vbwIgnore)
        restartTimers(timers);
    return s.vbwRetCode;
}
