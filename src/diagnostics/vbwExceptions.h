#pragma once

#include <QString>
#include <cstdint>

// Processor faults as run-time errors: the text of an exception code, and the handlers that
// bring a fault on the UI thread to the innermost trap.
QString vbwExceptionText(std::uint32_t code);

// Installs the fault handlers; a fault outside every trap (a worker thread) writes the report
// and ends the program with a message on the error output.
void vbwHandleException();
// Stops writing reports for faults outside the traps; the handlers themselves stay, as other
// libraries may have chained to them.
void vbwUnHandleException();
