#include "DiscToolWindows.h"
#include "IsoFileCommands.h"
#include "SessionImport.h"
#include "app/FormRegistry.h"
#include "frmBurnIso.h"
#include "frmSessionCheck.h"

void registerDiscToolWindows() {
    FormRegistry::addWindow<frmSessionCheck>(QStringLiteral("frmSessionCheck"),
                                             FormRegistry::Placement::Dialog);
    // Found by the write dialog, which unloads it when an ISO file write is over.
    FormRegistry::addWindow<frmBurnIso>(QStringLiteral("frmBurnIso"),
                                        FormRegistry::Placement::Dialog);
    FormRegistry::add(QStringLiteral("ToolMenuImportPrevious"),
                      &SessionImport::ToolMenuImportPrevious);
    FormRegistry::add(QStringLiteral("ToolMenuSaveAsIso"), &IsoFileCommands::ToolMenuSaveAsIso);
    FormRegistry::add(QStringLiteral("ToolMenuWriteIso"), &IsoFileCommands::ToolMenuWriteIso);
}
