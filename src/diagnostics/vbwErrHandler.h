#pragma once

#include <QString>

// The unexpected-error trap: the dialog offers to abort, retry or ignore, and the failing
// handler acts on the answer. All on the UI thread.

enum vbwReturnCode : int {
    vbwAbort = 3,
    vbwRetry = 4,
    vbwIgnore = 5,
    vbwReport = 8,
};

struct vbwErrorState {
    int vbwRetCode = 0;
    QString vbwMessageString;
    QString vbwCircumstancesString;
    QString vbwErrorPath;
    bool vbwfHasReported = false;
    // The error as it was saved for the dump and the tests.
    int lastNumber = 0;
    QString lastDescription;
    QString lastProcedure;
    QString lastModule;
};

vbwErrorState &vbwState();

// Shows the trap's dialog for an error and returns the user's choice (3, 4 or 5). Timers of
// every window stop while the dialog stands and start again on Retry and Ignore.
int vbwHandleError(int lngErrNumber, const QString &strDescription, int lngLine,
                   const QString &strProcedure, const QString &strModule,
                   const QString &strProject);

// The text the dialog shows, as step 4 of the first call builds it.
QString vbwBuildMessage(int number, const QString &description, int line, const QString &procedure,
                        const QString &module, const QString &project);
