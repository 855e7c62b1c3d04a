#include "WritingWindows.h"
#include "app/FormRegistry.h"
#include "frmBurn.h"

void registerWritingWindows() {
    FormRegistry::addWindow<frmBurn>(QStringLiteral("frmBurn"), FormRegistry::Placement::Dialog);
}
