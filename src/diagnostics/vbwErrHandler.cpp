#include "vbwErrHandler.h"
#include "base/App.h"
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

int vbwHandleError(int lngErrNumber, const QString &strDescription, int lngLine,
                   const QString &strProcedure, const QString &strModule,
                   const QString &strProject) {
    vbwErrorState &s = vbwState();
    s.vbwRetCode = 0;
    QApplication::restoreOverrideCursor();
    s.lastNumber = lngErrNumber;
    s.lastDescription = strDescription;
    s.lastProcedure = strProcedure;
    s.lastModule = strModule;

    const QList<QPointer<QTimer>> timers = stopTimers();
    QCoreApplication::processEvents();

    s.vbwMessageString =
        vbwBuildMessage(lngErrNumber, strDescription, lngLine, strProcedure, strModule, strProject);
    s.vbwRetCode = vbwFrmErrHandler::ask(s.vbwMessageString);
    if (s.vbwRetCode == vbwRetry || s.vbwRetCode == vbwIgnore)
        restartTimers(timers);
    return s.vbwRetCode;
}
