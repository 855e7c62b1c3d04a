#pragma once

#include <QString>
#include <QStringList>

// The options of the diagnostics, set once at start from the command line, and the procedure
// trace: the stack of live calls and the log file. The trace of procedure entries and exits is
// switched on by "/trace" anywhere on the command line. UI thread only.
struct vbwOptions {
    bool vbwException = true;
    bool vbwTraceProc = false;
    bool vbwTraceParameters = true;
    bool vbwTraceLine = false;
    bool vbwDebugger = false;
    bool vbwLog = false;
    bool vbwDebugPrint = false;
    bool vbwInstanceCount = false;
    int vbwDumpStringMaxLength = 128;
    QString vbwEmailRecipientName = QStringLiteral("Tessaly developers");
    QString vbwEmailRecipientAdress = QStringLiteral("tessaly-bugs@localhost");
};

vbwOptions &vbwCurrentOptions();
void vbwSetOptions(const QStringList &arguments);

// The flag every traced entry tests first; a copy of vbwTraceProc, kept plain for speed.
extern bool vbwTraceProcOn;

// Options, the file paths and the fault handlers, once.
void vbwInitialize(const QStringList &arguments);

// "vbwtessaly.log" and "vbwtessaly.dmp" in the application folder.
QString vbwLogFile();
QString vbwDefaultDumpFile();

// One entry a live call; returns the depth before the entry, for vbwTraceTruncate.
int vbwTraceIn(const QString &strProc, const QString &strParameters);
void vbwTraceOut(const QString &strProc);
// Forgets the calls above `depth` that a fault jumped over.
void vbwTraceTruncate(int depth);
// An entry a line, innermost last, "{Unavailable}" for an empty stack.
QString vbwGetStack();
int vbwStackDepth();

void vbwSendLog(const QString &text);
// Closes the log (a report copies it); returns its path, empty when none was open.
QString vbwCloseLog();
