#include "FaultSignals.h"

#include <atomic>
#include <cstdlib>
#include <pthread.h>
#include <unistd.h>

namespace FaultSignals {
namespace {

constexpr int faultSignals[4] = {SIGFPE, SIGSEGV, SIGILL, SIGBUS};
struct sigaction previous[4];
std::atomic<bool> isInstalled{false};
std::atomic<FatalHook> fatalHook{nullptr};
std::atomic<bool> fatalSeen{false};
thread_local Landing *innermost = nullptr;

// The lowest address of the installing thread's stack: a fault just below it is an overflow.
std::uintptr_t stackLow = 0;
pthread_t stackOwner;

int slotOf(int signal) {
    for (int i = 0; i < 4; ++i) {
        if (faultSignals[i] == signal)
            return i;
    }
    return -1;
}

void onFault(int signal, siginfo_t *info, void *) {
    const bool byProcessor = info->si_code > 0;
    const std::uint32_t code = codeOf(signal, info->si_code, info->si_addr);
    if (Landing *landing = innermost; landing && byProcessor) {
        landing->code = code;
        // The jump leaves the handler without returning, so the signal must be let in again.
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, signal);
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
        siglongjmp(landing->buffer, 1);
    }
    if (FatalHook hook = fatalHook.load(); hook && !fatalSeen.exchange(true))
        hook(code);
    // Hand the fault on: the faulting instruction runs again into the earlier handler, and a
    // signal sent by someone is sent again once this handler returns.
    const int slot = slotOf(signal);
    struct sigaction next = previous[slot];
    if (next.sa_handler == SIG_IGN)
        next.sa_handler = SIG_DFL;
    sigaction(signal, &next, nullptr);
    if (!byProcessor)
        raise(signal);
}

bool isOurs(const struct sigaction &action) {
    return (action.sa_flags & SA_SIGINFO) && action.sa_sigaction == onFault;
}

struct sigaction ourAction() {
    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    return action;
}

} // namespace

Landing::Landing()
    : outer(innermost) {
    innermost = this;
}

Landing::~Landing() {
    innermost = outer;
}

void Landing::reenter() {
    innermost = this;
}

void install() {
    if (isInstalled.exchange(true))
        return;
    // Large enough for the report a fault outside every landing writes from here.
    constexpr size_t altSize = 256 * 1024;
    stack_t alt = {};
    alt.ss_sp = std::malloc(altSize);
    alt.ss_size = altSize;
    if (alt.ss_sp)
        sigaltstack(&alt, nullptr);

    pthread_attr_t attr;
    if (pthread_getattr_np(pthread_self(), &attr) == 0) {
        void *low = nullptr;
        size_t size = 0;
        if (pthread_attr_getstack(&attr, &low, &size) == 0) {
            stackLow = reinterpret_cast<std::uintptr_t>(low);
            stackOwner = pthread_self();
        }
        pthread_attr_destroy(&attr);
    }

    const struct sigaction action = ourAction();
    for (int i = 0; i < 4; ++i)
        sigaction(faultSignals[i], &action, &previous[i]);
}

bool installed() {
    return isInstalled.load();
}

void setFatalHook(FatalHook hook) {
    fatalHook = hook;
}

std::uint32_t codeOf(int signal, int siCode, const void *address) {
    switch (signal) {
    case SIGFPE:
        switch (siCode) {
        case FPE_INTOVF:
            return IntegerOverflow;
        case FPE_FLTDIV:
            return FloatDivideByZero;
        case FPE_FLTOVF:
            return FloatOverflow;
        case FPE_FLTUND:
            return FloatUnderflow;
        case FPE_FLTRES:
            return FloatInexactResult;
        case FPE_FLTINV:
            return FloatInvalidOperation;
        case FPE_FLTSUB:
            return FloatStackCheck;
        default:
            return IntegerDivideByZero;
        }
    case SIGSEGV: {
        // The guard below the stack: within a page or two of its lowest address.
        const auto at = reinterpret_cast<std::uintptr_t>(address);
        const bool ownStack = stackLow != 0 && pthread_equal(pthread_self(), stackOwner);
        if (ownStack && at + 1024 * 1024 >= stackLow && at < stackLow + 64 * 1024)
            return StackOverflow;
        return AccessViolation;
    }
    case SIGILL:
        return (siCode == ILL_PRVOPC || siCode == ILL_PRVREG) ? PrivInstruction
                                                              : IllegalInstruction;
    case SIGBUS:
        return siCode == BUS_ADRALN ? DatatypeMisalignment : InPageError;
    default:
        return 0;
    }
}

ForeignHandlers::ForeignHandlers() {
    if (!installed())
        return;
    const struct sigaction ours = ourAction();
    for (int i = 0; i < 4; ++i) {
        struct sigaction current;
        if (sigaction(faultSignals[i], nullptr, &current) != 0 || isOurs(current))
            continue;
        m_saved[i] = previous[i];
        previous[i] = current;
        m_adopted[i] = true;
        sigaction(faultSignals[i], &ours, nullptr);
    }
}

ForeignHandlers::~ForeignHandlers() {
    for (int i = 0; i < 4; ++i) {
        if (m_adopted[i])
            previous[i] = m_saved[i];
    }
}

} // namespace FaultSignals
