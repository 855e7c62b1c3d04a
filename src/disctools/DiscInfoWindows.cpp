#include "DiscInfoWindows.h"
#include "app/FormRegistry.h"
#include "frmDiscInfo.h"
#include "frmErase.h"
#include "frmRecorderInfo.h"
#include "frmSupDrives.h"
#include "widgets/DefaultInstance.h"

void registerDiscInfoWindows() {
    // The supported drives text lives in this static library's resources.
    Q_INIT_RESOURCE(disctools);
    // These two check the disc before they stay open, so they are shown by their own call.
    FormRegistry::add(QStringLiteral("frmDiscInfo"), [](const WindowContext &context) {
        if (frmDiscInfo *open = DefaultInstance<frmDiscInfo>::peek()) {
            FormRegistry::bringToFront(open);
            return;
        }
        DefaultInstance<frmDiscInfo>::get(context)->ShowDiscInfo(
            context.engine, context.frame ? context.frame->frameWidget() : nullptr);
    });
    FormRegistry::add(QStringLiteral("frmErase"), [](const WindowContext &context) {
        if (frmErase *open = DefaultInstance<frmErase>::peek()) {
            FormRegistry::bringToFront(open);
            return;
        }
        DefaultInstance<frmErase>::get(context)->ShowErase(context.engine);
    });
    FormRegistry::addWindow<frmRecorderInfo>(QStringLiteral("frmRecorderInfo"),
                                             FormRegistry::Placement::Dialog);
    FormRegistry::addWindow<frmSupDrives>(QStringLiteral("frmSupDrives"),
                                          FormRegistry::Placement::Dialog);
}
