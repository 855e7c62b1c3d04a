#include "WritingWindows.h"
#include "app/FormRegistry.h"
#include "frmBurn.h"

void registerWritingWindows() {
    FormRegistry::add(QStringLiteral("frmBurn"), [](QWidget *owner) { frmBurn::showOver(owner); });
}
