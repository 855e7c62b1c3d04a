#include "CompilationWindows.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "frmData.h"
#include "frmLabels.h"
#include "widgets/DefaultInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>

namespace {

mdiMain *frameOf(QWidget *owner) {
    if (auto *main = qobject_cast<mdiMain *>(owner))
        return main;
    return DefaultInstance<mdiMain>::peek();
}

void openData(QWidget *owner) {
    mdiMain *main = frameOf(owner);
    if (!main)
        return;
    const bool fresh = !DefaultInstance<frmData>::exists();
    frmData *data = DefaultInstance<frmData>::get();
    if (fresh) {
        QMdiSubWindow *window = main->mdiArea()->addSubWindow(data);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setWindowIcon(data->windowIcon());
        // Unloading the window alone takes its frame in the area with it.
        QObject::connect(data, &QObject::destroyed, window, &QObject::deleteLater);
        data->Form_Load();
    }
    data->show();
    if (auto *window = qobject_cast<QMdiSubWindow *>(data->parentWidget())) {
        window->show();
        main->mdiArea()->setActiveSubWindow(window);
    }
}

// "--data-compilation DIR" opens a data compilation with DIR dropped into it once the frame
// stands: a compilation to look at without a mouse (screenshots, demonstrations).
void openDemoCompilation() {
    // Read before the program has taken its arguments in.
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype at = arguments.indexOf(QStringLiteral("--data-compilation"));
    if (at < 0 || at + 1 >= arguments.size())
        return;
    const QString folder = arguments.at(at + 1);
    auto *poll = new QTimer;
    poll->setInterval(100);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, folder] {
        mdiMain *main = DefaultInstance<mdiMain>::peek();
        if (!main || !main->isVisible())
            return;
        poll->deleteLater();
        FormRegistry::open(QStringLiteral("frmData"), main);
        FormRegistry::open(QStringLiteral("ResetImage"), main);
        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile(folder)});
        frmData *data = DefaultInstance<frmData>::peek();
        if (!data)
            return;
        data->OLEDragDrop(&dropped);
        // Opened at the dropped folder, as a user clicking into it sees it.
        const QString name = frmData::GetLastPathItem(QDir::cleanPath(folder));
        if (QTreeWidgetItem *node = data->node(QStringLiteral("\\") + name)) {
            data->tvwDirectories->setCurrentItem(node);
            data->UpdateImage();
        }
    });
    poll->start();
}

} // namespace

void registerCompilationWindows() {
    openDemoCompilation();
    FormRegistry::add(QStringLiteral("frmData"), openData);
    FormRegistry::add(QStringLiteral("ResetImage"), [](QWidget *owner) {
        if (mdiMain *main = frameOf(owner))
            main->ResetImage();
    });
    FormRegistry::add(QStringLiteral("frmLabels"),
                      [](QWidget *owner) { frmLabels::showModal(frameOf(owner)); });
}
