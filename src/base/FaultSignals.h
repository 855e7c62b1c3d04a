#pragma once

#include <csetjmp>
#include <csignal>
#include <cstdint>

// Processor faults (SIGFPE, SIGSEGV, SIGILL, SIGBUS) as the exception codes the error trap
// knows. A fault on a thread that stands inside a Landing jumps back to the innermost one with
// the code; any other fault goes to the fatal hook and then to the handler that was there
// before ours. The handlers run on an alternate stack, so a stack overflow is caught too.
namespace FaultSignals {

enum Code : std::uint32_t {
    GuardPage = 0x80000001,
    DatatypeMisalignment = 0x80000002,
    Breakpoint = 0x80000003,
    SingleStep = 0x80000004,
    AccessViolation = 0xC0000005,
    InPageError = 0xC0000006,
    IllegalInstruction = 0xC000001D,
    FloatDenormalOperand = 0xC000008D,
    FloatDivideByZero = 0xC000008E,
    FloatInexactResult = 0xC000008F,
    FloatInvalidOperation = 0xC0000090,
    FloatOverflow = 0xC0000091,
    FloatStackCheck = 0xC0000092,
    FloatUnderflow = 0xC0000093,
    IntegerDivideByZero = 0xC0000094,
    IntegerOverflow = 0xC0000095,
    PrivInstruction = 0xC0000096,
    StackOverflow = 0xC00000FD,
};

// A point to come back to on this thread. Must live in the frame that called sigsetjmp on
// `buffer`; after the jump, call reenter() before anything else. Frames skipped by the jump do
// not run their destructors: what they held leaks, which is the price of going on at all.
struct Landing {
    Landing();
    ~Landing();
    Landing(const Landing &) = delete;
    Landing &operator=(const Landing &) = delete;
    void reenter();

    sigjmp_buf buffer;
    volatile std::uint32_t code = 0;
    Landing *outer = nullptr;
};

// Installs the handlers and gives the calling thread an alternate stack; call on the UI thread.
// Idempotent.
void install();
bool installed();

// Called on the faulting thread for a fault outside every Landing, before the program ends.
using FatalHook = void (*)(std::uint32_t code);
void setFatalHook(FatalHook hook);

// The code of a fault as the kernel describes it; `address` tells a stack overflow from an
// access violation on the thread that installed the handlers.
std::uint32_t codeOf(int signal, int siCode, const void *address);

// While it lives, handlers that another library put over ours (libburn's abort handler during
// a write) become the ones we chain to, and ours are put back on top of them.
class ForeignHandlers {
public:
    ForeignHandlers();
    ~ForeignHandlers();
    ForeignHandlers(const ForeignHandlers &) = delete;
    ForeignHandlers &operator=(const ForeignHandlers &) = delete;

private:
    struct sigaction m_saved[4];
    bool m_adopted[4] = {};
};

} // namespace FaultSignals
