#include "CompilationWindows.h"
#include "app/FormRegistry.h"
#include "frmData.h"
#include "frmLabels.h"

void registerCompilationWindows() {
    FormRegistry::addWindow<frmData>(QStringLiteral("frmData"), FormRegistry::Placement::Child);
    FormRegistry::add(QStringLiteral("frmLabels"),
                      [](QWidget *owner) { frmLabels::showModal(owner); });
}
