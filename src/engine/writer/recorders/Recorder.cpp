#include "Recorder.h"

JobOutcome Recorder::erase(bool, JobMonitor &) {
    return JobOutcome::driveFailure(1020, QStringLiteral("The recorder cannot erase this medium"),
                                    QStringLiteral("5/20/00 Invalid command operation code"));
}

JobOutcome Recorder::finish(bool, JobMonitor &) {
    return JobOutcome::driveFailure(1020, QStringLiteral("The recorder cannot close this medium"),
                                    QStringLiteral("5/20/00 Invalid command operation code"));
}
