#include "ErrorTrap.h"
#include "base/App.h"
#include "base/RuntimeError.h"
#include "vbwErrHandler.h"

#include <QString>
#include <cstdlib>
#include <new>

namespace {
std::function<void()> &abortSlot() {
    static std::function<void()> action;
    return action;
}
} // namespace

void ErrorTrap::setAbortAction(std::function<void()> action) {
    abortSlot() = std::move(action);
}

void ErrorTrap::run(const char *procedure, const char *module, const std::function<void()> &body) {
    const QString proc = QString::fromLatin1(procedure);
    const QString mod = QString::fromLatin1(module);
    for (;;) {
        int code = vbwIgnore;
        try {
            body();
            return;
        } catch (const RuntimeError &e) {
            code = vbwHandleError(e.number(), e.description(), 0, proc, mod, App::ProductName());
        } catch (const std::bad_alloc &) {
            code = vbwHandleError(RuntimeError::OutOfMemory,
                                  RuntimeError::standardDescription(RuntimeError::OutOfMemory), 0,
                                  proc, mod, App::ProductName());
        } catch (const std::exception &e) {
            code = vbwHandleError(RuntimeError::SystemException, QString::fromLocal8Bit(e.what()),
                                  0, proc, mod, App::ProductName());
        } catch (...) {
            code =
                vbwHandleError(RuntimeError::SystemException, QStringLiteral("Unknown Exception"),
                               0, proc, mod, App::ProductName());
        }
        switch (code) {
        case vbwRetry:
            continue;
        case vbwAbort:
            if (abortSlot()) {
                abortSlot()();
                return;
            }
            // No clean-up of the program's own, but the engine's quick-exit hooks release
            // the drives.
            std::quick_exit(EXIT_FAILURE);
        default:
            return;
        }
    }
}
