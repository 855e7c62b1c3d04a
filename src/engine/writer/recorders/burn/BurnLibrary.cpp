#include "BurnLibrary.h"
#include "base/FaultSignals.h"

#include <QMutex>

#include <csignal>

#include <cstdlib>
#include <mutex>
#include <optional>

namespace {
QMutex guardMutex;
int activeGuards = 0;
struct sigaction savedActions[NSIG];
// The program's fault handlers stay on top of libburn's and hand it what no trap takes.
std::optional<FaultSignals::ForeignHandlers> faultChain;
} // namespace

bool BurnLibrary::ensureStarted() {
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] {
        started = burn::burn_initialize() != 0;
        if (!started)
            return;
        // Everything worth knowing goes to the job's log through the queue; nothing to stderr.
        burn::burn_msgs_set_severities(const_cast<char *>("NOTE"), const_cast<char *>("NEVER"),
                                       const_cast<char *>("tessaly : "));
        std::atexit([] { burn::burn_finish(); });
    });
    return started;
}

QStringList BurnLibrary::takeMessages() {
    QStringList out;
    if (!ensureStarted())
        return out;
    char text[BURN_MSGS_MESSAGE_LEN];
    char severity[80];
    int code = 0, osErrno = 0;
    while (burn::burn_msgs_obtain(const_cast<char *>("NOTE"), &code, text, &osErrno, severity) >
           0) {
        QString line = QStringLiteral("%1: %2").arg(QString::fromLatin1(severity),
                                                    QString::fromLocal8Bit(text).trimmed());
        if (osErrno != 0)
            line += QStringLiteral(" (%1)").arg(QString::fromLocal8Bit(strerror(osErrno)));
        out << line;
    }
    return out;
}

BurnLibrary::AbortGuard::AbortGuard() {
    QMutexLocker lock(&guardMutex);
    if (!ensureStarted())
        return;
    m_active = true;
    // Jobs of several drives share one installation: the first installs, the last restores.
    if (activeGuards++ > 0)
        return;
    for (int sig = 1; sig < NSIG; ++sig)
        sigaction(sig, nullptr, &savedActions[sig]);
    // Action 1: the handler cancels the drives' work, waits for them to become idle and exits.
    burn::burn_set_signal_handling(const_cast<char *>("tessaly : "), nullptr, 0x10);
    faultChain.emplace();
}

BurnLibrary::AbortGuard::~AbortGuard() {
    if (!m_active)
        return;
    QMutexLocker lock(&guardMutex);
    if (--activeGuards > 0)
        return;
    faultChain.reset();
    for (int sig = 1; sig < NSIG; ++sig) {
        if (sig != SIGKILL && sig != SIGSTOP)
            sigaction(sig, &savedActions[sig], nullptr);
    }
}
