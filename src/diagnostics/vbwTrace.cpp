#include "vbwTrace.h"

vbwOptions &vbwCurrentOptions() {
    static vbwOptions options;
    return options;
}

void vbwSetOptions(const QStringList &arguments) {
    vbwOptions &o = vbwCurrentOptions();
    o = vbwOptions();
    const bool trace = arguments.join(u' ').contains(QLatin1String("/trace"), Qt::CaseInsensitive);
    o.vbwTraceProc = trace;
    o.vbwLog = trace;
}
