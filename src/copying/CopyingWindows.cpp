#include "CopyingWindows.h"

#include "app/FormRegistry.h"
#include "frmBurnBin.h"
#include "frmCD2CD.h"
#include "frmIsoripper.h"

void registerCopyingWindows() {
    FormRegistry::addWindow<frmCD2CD>(QStringLiteral("frmCD2CD"), FormRegistry::Placement::Child);
    FormRegistry::addWindow<frmBurnBin>(QStringLiteral("frmBurnBin"),
                                        FormRegistry::Placement::Child);
    FormRegistry::addWindow<frmIsoripper>(QStringLiteral("frmIsoripper"),
                                          FormRegistry::Placement::Child);
}
