#include "vbwTrace.h"
#include "base/App.h"
#include "vbwExceptions.h"

#include <QDateTime>
#include <QFile>
#include <QList>
#include <memory>

bool vbwTraceProcOn = false;

namespace {
QList<QString> vbwStackCalls;
int nTraceCalls = 0;
std::unique_ptr<QFile> logFile;
bool vbwIsInitialized = false;
} // namespace

vbwOptions &vbwCurrentOptions() {
    static vbwOptions options;
    return options;
}

void vbwSetOptions(const QStringList &arguments) {
    vbwOptions &o = vbwCurrentOptions();
    o = vbwOptions();
    const bool trace = arguments.join(u' ').contains(QLatin1String("/trace"), Qt::CaseInsensitive);
    o.vbwTraceProc = trace;
    o.vbwLog = trace;
    vbwTraceProcOn = trace;
}

void vbwInitialize(const QStringList &arguments) {
    if (vbwIsInitialized)
        return;
    vbwSetOptions(arguments);
    if (vbwCurrentOptions().vbwException)
        vbwHandleException();
    vbwIsInitialized = true;
}

QString vbwLogFile() {
    return App::pathOf(QStringLiteral("/vbwtessaly.log"));
}

QString vbwDefaultDumpFile() {
    return App::pathOf(QStringLiteral("/vbwtessaly.dmp"));
}

int vbwTraceIn(const QString &strProc, const QString &strParameters) {
    const int depth = int(vbwStackCalls.size());
    ++nTraceCalls;
    vbwStackCalls.append(strProc + strParameters);
    if (vbwCurrentOptions().vbwLog)
        vbwSendLog(QString(nTraceCalls - 1, u'\t') + strProc + strParameters);
    return depth;
}

void vbwTraceOut(const QString &) {
    if (nTraceCalls > 0)
        --nTraceCalls;
    if (!vbwStackCalls.isEmpty())
        vbwStackCalls.removeLast();
}

void vbwTraceTruncate(int depth) {
    if (depth < vbwStackCalls.size())
        vbwStackCalls.resize(depth);
    nTraceCalls = qMin(nTraceCalls, depth);
}

int vbwStackDepth() {
    return int(vbwStackCalls.size());
}

QString vbwGetStack() {
    if (vbwStackCalls.isEmpty())
        return QStringLiteral("{Unavailable}");
    QString text = QStringLiteral("\r\n");
    for (int i = 0; i < vbwStackCalls.size(); ++i) {
        const QString &entry = vbwStackCalls.at(i);
        text += QString(i, u' ') + (entry.isEmpty() ? QStringLiteral("{Empty}") : entry) +
                QStringLiteral("\r\n");
    }
    return text;
}

void vbwSendLog(const QString &text) {
    if (!logFile) {
        logFile = std::make_unique<QFile>(vbwLogFile());
        if (!logFile->open(QIODevice::Append | QIODevice::Text))
            return;
        logFile->write(QStringLiteral("Tracing %1\nSession started %2\n\n")
                           .arg(App::Title(), QDateTime::currentDateTime().toString(
                                                  QStringLiteral("yyyy-MM-dd hh:mm:ss")))
                           .toUtf8());
    }
    if (!logFile->isOpen())
        return;
    logFile->write(text.toUtf8() + '\n');
    logFile->flush();
}

QString vbwCloseLog() {
    if (!logFile || !logFile->isOpen())
        return QString();
    const QString path = logFile->fileName();
    logFile.reset();
    return path;
}
