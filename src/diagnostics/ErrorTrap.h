#pragma once

#include <QList>
#include <functional>

struct vbwParameter;

// The wrapper every entry point from the event loop runs in (a handler, a slot, a timer): an
// exception never crosses the event loop but reaches the trap's dialog with the procedure's
// and the module's names. Retry runs the handler again, Ignore returns from it, Abort ends the
// program at once. A processor
// fault in the body reaches it too, as error 65535 with the exception's text.
class ErrorTrap {
public:
    static void run(const char *procedure, const char *module, const std::function<void()> &body);
    // With the handler's arguments, for the trace line and the report's local variables.
    using Parameters = std::function<QList<vbwParameter>()>;
    static void run(const char *procedure, const char *module, const std::function<void()> &body,
                    const Parameters &parameters);
    // The same, kept out of the procedure trace: the layer around every event, whose handlers
    // trace themselves.
    static void runUntraced(const char *procedure, const char *module,
                            const std::function<void()> &body);

    // The same for a handler with a result; `fallback` is returned when the error is ignored.
    template<typename R, typename F>
    static R call(const char *procedure, const char *module, R fallback, F &&body) {
        R result = fallback;
        run(procedure, module, [&] { result = body(); });
        return result;
    }

    // How Abort ends the program; tests replace it so that they survive to check it.
    static void setAbortAction(std::function<void()> action);
};
