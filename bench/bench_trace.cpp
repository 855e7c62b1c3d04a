// The cost of the procedure trace on the busiest handler of a window: the per-row handler of
// a listing, which adds a row of three columns to a list view, run once per item through the
// error trap as the frame runs it. Three runs on the same items: the bare handler, the
// trapped handler with the trace off, and with "/trace" (a log line per call). Prints the
// best times of three rounds and the ratios against the bare handler.
//
//   bench_trace [--rows N]   (default 200,000)
#include "base/App.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwTrace.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <algorithm>
#include <cstdio>

namespace {
void addRow(QTreeWidget &list, int i) {
    auto *row = new QTreeWidgetItem(&list);
    row->setText(0, QStringLiteral("f%1.txt").arg(i));
    row->setText(1, QString::number(i * 17));
    row->setText(2, QStringLiteral("2026-11-24 06:00"));
}

double run(int rows, int mode) {
    QTreeWidget list;
    list.setColumnCount(3);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < rows; ++i) {
        if (mode == 0)
            addRow(list, i);
        else
            ErrorTrap::run("Tessaly_EnumISOItems", "mdiMain", [&] { addRow(list, i); });
    }
    return timer.nsecsElapsed() / 1e6;
}
} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const int at = int(args.indexOf(QStringLiteral("--rows")));
    const int rows = at > 0 ? args.value(at + 1).toInt() : 200000;
    QTemporaryDir folder;
    App::setPath(folder.path());

    // The best of three interleaved rounds, so that warming up favours none of them.
    double bare = 1e300, off = 1e300, on = 1e300;
    for (int round = 0; round < 3; ++round) {
        vbwSetOptions({});
        bare = std::min(bare, run(rows, 0));
        off = std::min(off, run(rows, 1));
        vbwSetOptions({QStringLiteral("/trace")});
        on = std::min(on, run(rows, 1));
        vbwCloseLog();
    }
    vbwSetOptions({});
    std::printf("rows %d: bare %.1f ms, trapped, trace off %.1f ms (ratio %.3f), "
                "trace on %.1f ms (ratio %.3f)\n",
                rows, bare, off, off / bare, on, on / bare);
    return 0;
}
