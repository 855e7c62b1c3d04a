#include "RippingWindows.h"

#include "SoundDeviceOutput.h"
#include "frmRipper.h"

#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "engine/ripper/CDRipperX.h"
#include "widgets/DefaultInstance.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>

namespace {
// The frame's ripper engine, TessalyRipper: made on first use, it lives as long as the frame.
CDRipperX *ripperOf(QWidget *frame) {
    static QPointer<CDRipperX> ripper;
    if (!ripper) {
        ripper = new CDRipperX(frame);
        ripper->SetAudioOutput(std::make_shared<SoundDeviceOutput>());
    }
    return ripper;
}

void openRipper(QWidget *owner) {
    auto *main = qobject_cast<mdiMain *>(owner);
    if (!main)
        main = DefaultInstance<mdiMain>::peek();
    if (!main)
        return;
    static QPointer<frmRipper> open;
    if (!open) {
        open = new frmRipper(ripperOf(main));
        QMdiSubWindow *window = main->mdiArea()->addSubWindow(open);
        window->setAttribute(Qt::WA_DeleteOnClose);
        QObject::connect(open, &QObject::destroyed, window, &QObject::deleteLater);
        open->Form_Load();
    }
    open->show();
    if (auto *window = qobject_cast<QMdiSubWindow *>(open->parentWidget())) {
        window->show();
        main->mdiArea()->setActiveSubWindow(window);
    }
}
} // namespace

void registerRippingWindows() {
    FormRegistry::add(QStringLiteral("frmRipper"), openRipper);
}
