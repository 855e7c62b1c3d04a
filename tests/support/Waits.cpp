#include "Waits.h"

#include <QtTest>

namespace Waits {

bool until(const std::function<bool()> &done, int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    while (!done() && !deadline.hasExpired())
        QTest::qWait(5);
    QTest::qWait(20);
    return done();
}

void settle() {
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace Waits
