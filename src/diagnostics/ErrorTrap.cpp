#include "ErrorTrap.h"
#include "base/App.h"
#include "base/FaultSignals.h"
#include "base/RuntimeError.h"
#include "vbwDump.h"
#include "vbwErrHandler.h"
#include "vbwExceptions.h"
#include "vbwParameter.h"
#include "vbwTrace.h"

#include <QString>
#include <cstdlib>
#include <new>

namespace {
std::function<void()> &abortSlot() {
    static std::function<void()> action;
    return action;
}

void trapped(const char *procedure, const char *module, const std::function<void()> &body,
             bool traced, const ErrorTrap::Parameters &parameters);

QString traceText(const ErrorTrap::Parameters &parameters) {
    if (!vbwCurrentOptions().vbwTraceParameters)
        return QString();
    return vbwTraceParameters(parameters ? parameters() : QList<vbwParameter>());
}

// One run of the body; 0 when it ended normally, else the user's choice for its error.
int runOnce(const QString &proc, const QString &mod, const std::function<void()> &body) {
    try {
        body();
        return 0;
    } catch (const RuntimeError &e) {
        return vbwHandleError(e.number(), e.description(), 0, proc, mod, App::ProductName());
    } catch (const std::bad_alloc &) {
        return vbwHandleError(RuntimeError::OutOfMemory,
                              RuntimeError::standardDescription(RuntimeError::OutOfMemory), 0, proc,
                              mod, App::ProductName());
    } catch (const std::exception &e) {
        return vbwHandleError(RuntimeError::SystemException, QString::fromLocal8Bit(e.what()), 0,
                              proc, mod, App::ProductName());
    } catch (...) {
        return vbwHandleError(RuntimeError::SystemException, QStringLiteral("Unknown Exception"), 0,
                              proc, mod, App::ProductName());
    }
}

// The report between the handler's two calls: the dump of what is in reach, then the files,
// the zip and the mail; returns the choice made in the dialog that comes back.
int vbwReportError(const QString &proc, const QString &mod,
                   const ErrorTrap::Parameters &parameters) {
    vbwOpenDumpFile();
    vbwReportToFile(QStringLiteral("\r\n**************************\r\n* LOCAL LEVEL VARIABLES  "
                                   "*\r\n**************************\r\n"));
    if (parameters)
        vbwReportLocals(parameters());
    vbwDumpModule(mod);
    vbwDumpGlobals();
    vbwCloseDumpFile();
    return vbwHandleError(-1, QString(), 0, proc, mod, App::ProductName());
}
} // namespace

void ErrorTrap::setAbortAction(std::function<void()> action) {
    abortSlot() = std::move(action);
}

void ErrorTrap::run(const char *procedure, const char *module, const std::function<void()> &body) {
    trapped(procedure, module, body, true, {});
}

void ErrorTrap::run(const char *procedure, const char *module, const std::function<void()> &body,
                    const Parameters &parameters) {
    trapped(procedure, module, body, true, parameters);
}

namespace {
void trapped(const char *procedure, const char *module, const std::function<void()> &body,
             bool traced, const ErrorTrap::Parameters &parameters) {
    const QString proc = QString::fromLatin1(procedure);
    const QString mod = QString::fromLatin1(module);
    // Tracing off costs this one test of a flag.
    const int depth =
        traced && vbwTraceProcOn ? vbwTraceIn(mod + u'.' + proc, traceText(parameters)) : -1;
    FaultSignals::Landing landing;
    for (;;) {
        int code = vbwIgnore;
        if (sigsetjmp(landing.buffer, 0) != 0) {
            // A processor fault in the body came back here from the signal handler.
            landing.reenter();
            if (depth >= 0)
                vbwTraceTruncate(depth);
            code = vbwHandleError(RuntimeError::SystemException, vbwExceptionText(landing.code), 0,
                                  proc, mod, App::ProductName());
        } else {
            code = runOnce(proc, mod, body);
            if (code == 0)
                break;
        }
        if (code == vbwReport)
            code = vbwReportError(proc, mod, parameters);
        if (code == vbwRetry)
            continue;
        if (code == vbwAbort) {
            if (abortSlot()) {
                abortSlot()();
                break;
            }
            // No clean-up of the program's own, but the engine's quick-exit hooks release
            // the drives.
            std::quick_exit(EXIT_FAILURE);
        }
        break;
    }
    if (depth >= 0)
        vbwTraceOut(mod + u'.' + proc);
}
} // namespace

void ErrorTrap::runUntraced(const char *procedure, const char *module,
                            const std::function<void()> &body) {
    trapped(procedure, module, body, false, {});
}
