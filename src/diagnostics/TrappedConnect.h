#pragma once

#include "ErrorTrap.h"
#include "vbwParameter.h"

#include <QMetaMethod>
#include <QObject>

// Connects a signal to a member handler that runs inside the trap, so that a window wires an
// engine event in one line and an exception in the handler reaches the trap's dialog with the
// handler's and the window's names:
//   trappedConnect(engine, &CDWriterPro::WriteComplete, this, &frmBurn::Tessaly_WriteComplete,
//                  "Tessaly_WriteComplete", "frmBurn");
// The handler may take fewer arguments than the signal carries, as with any Qt connection.
template<typename Sender, typename Signal, typename Receiver, typename... Args>
QMetaObject::Connection trappedConnect(const Sender *sender, Signal signal, Receiver *receiver,
                                       void (Receiver::*handler)(Args...), const char *procedure,
                                       const char *module) {
    return QObject::connect(
        sender, signal, receiver, [receiver, handler, procedure, module, signal](Args... args) {
            // The arguments are named and turned to text only for the trace or a report.
            ErrorTrap::run(
                procedure, module, [&] { (receiver->*handler)(args...); },
                [&] {
                    return vbwParametersOf(QMetaMethod::fromSignal(signal).parameterNames(),
                                           args...);
                });
        });
}

// The same, naming the handler after itself: TRAPPED_CONNECT(engine, &CDWriterPro::WriteComplete,
// frmBurn, Tessaly_WriteComplete).
#define TRAPPED_CONNECT(sender, signal, Receiver, handler)                                         \
    trappedConnect(sender, signal, this, &Receiver::handler, #handler, #Receiver)
