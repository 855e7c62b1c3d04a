#include "RippingWindows.h"

#include "SoundDeviceOutput.h"
#include "frmRipper.h"

#include "app/FormRegistry.h"
#include "engine/ripper/CDRipperX.h"

#include <QPointer>

CDRipperX *TessalyRipper(const WindowContext &context) {
    // Made on first use; it lives as long as the frame it belongs to.
    static QPointer<CDRipperX> ripper;
    if (!ripper) {
        ripper = new CDRipperX(context.frame ? context.frame->frameWidget() : nullptr);
        ripper->SetAudioOutput(std::make_shared<SoundDeviceOutput>());
    }
    return ripper;
}

void registerRippingWindows() {
    FormRegistry::addWindow<frmRipper>(QStringLiteral("frmRipper"), FormRegistry::Placement::Child);
}
