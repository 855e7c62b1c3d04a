#pragma once

#include <QString>
#include <QStringList>

// The options of the diagnostics, set once at start from the command line. The trace of
// procedure entries and exits is switched on by "/trace" anywhere on it.
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
