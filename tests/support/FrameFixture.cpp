#include "FrameFixture.h"
#include "WidgetSnapshot.h"
#include "app/mdiMain.h"
#include "widgets/DefaultInstance.h"

#include <QtWidgets>

namespace FrameFixture {

mdiMain *frame() {
    return DefaultInstance<mdiMain>::peek();
}

QList<QMdiSubWindow *> childWindows() {
    return frame()->mdiArea()->subWindowList(QMdiArea::CreationOrder);
}

QStringList captions() {
    QStringList list;
    for (QMdiSubWindow *w : childWindows())
        list.append(w->windowTitle());
    return list;
}

int browserNumber(const QString &caption) {
    static const QRegularExpression number(QStringLiteral(R"(^File Browser \[(\d+)\])"));
    const auto m = number.match(caption);
    return m.hasMatch() ? m.captured(1).toInt() : 0;
}

QString differences(const QString &name, const QString &folder) {
    return WidgetSnapshot::differences(
        frame(), name,
        {{QRegularExpression(QRegularExpression::escape(folder)), QStringLiteral("DIR")}});
}

void useScreen1024x768() {
    const QString config = QDir::temp().filePath(QStringLiteral("tessaly-screen-1024x768.json"));
    QFile f(config);
    if (f.open(QIODevice::WriteOnly))
        f.write(R"({"screens": [{"name": "Screen", "x": 0, "y": 0, "width": 1024,
                    "height": 768, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    f.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.toLocal8Bit());
}

} // namespace FrameFixture
