#include "vbwExceptions.h"
#include "base/App.h"
#include "base/FaultSignals.h"
#include "vbwErrHandler.h"
#include "vbwErrorReport.h"

#include <cstdio>

QString vbwExceptionText(std::uint32_t code) {
    static const struct {
        std::uint32_t code;
        const char *text;
    } texts[] = {
        {0x80000001, "Exception: Guard Page"},
        {0x80000002, "Exception: Datatype Misalignment"},
        {0x80000003, "Exception: Breakpoint"},
        {0x80000004, "Exception: Single Step"},
        {0xC0000005, "Exception: Access Violation"},
        {0xC0000006, "Exception: In Page Error"},
        {0xC0000008, "Exception: Invalid Handle"},
        {0xC000001D, "Exception: Illegal Instruction"},
        {0xC0000025, "Exception: Non Continuable Exception"},
        {0xC0000026, "Exception: Invalid Disposition"},
        {0xC000008C, "Exception: Array Bounds Exceeded"},
        {0xC000008D, "Exception: Float Denormal Operand"},
        {0xC000008E, "Exception: Float Divide By Zero"},
        {0xC000008F, "Exception: Float Inexact Result"},
        {0xC0000090, "Exception: Float Invalid Operation"},
        {0xC0000091, "Exception: Float Overflow"},
        {0xC0000092, "Exception: Float Stack Check"},
        {0xC0000093, "Exception: Float Underflow"},
        {0xC0000094, "Exception: Integer Divide By Zero"},
        {0xC0000095, "Exception: Integer Overflow"},
        {0xC0000096, "Exception: Priv Instruction"},
        {0xC00000FD, "Exception: Stack Overflow"},
        {0xC000013A, "Exception: Control C Exit"},
    };
    for (const auto &t : texts) {
        if (t.code == code)
            return QString::fromLatin1(t.text);
    }
    return QStringLiteral("Unknown Exception");
}

namespace {
void onFatalFault(std::uint32_t code) {
    // The program is lost: write what can be written, say where, and let it end.
    const QString text = vbwExceptionText(code);
    vbwState().vbwMessageString = vbwBuildMessage(
        65535, text, 0, QStringLiteral("(a worker thread)"), QString(), App::ProductName());
    vbwState().vbwCircumstancesString = QStringLiteral("The program ended on this error.");
    const QString zip = vbwErrorReport::writeUnattended();
    std::fprintf(stderr,
                 "%s: %s on a thread outside the windows; the program ends.\n"
                 "The error report is in %s\n",
                 qPrintable(App::ProductName()), qPrintable(text),
                 qPrintable(zip.isEmpty() ? vbwErrorReport::folder() : zip));
    std::fflush(stderr);
}
} // namespace

void vbwHandleException() {
    FaultSignals::install();
    FaultSignals::setFatalHook(onFatalFault);
}

void vbwUnHandleException() {
    FaultSignals::setFatalHook(nullptr);
}
