#include "PrintingWindows.h"
#include "PrinterDialogService.h"
#include "app/FormRegistry.h"
#include "frmPreView.h"
#include "widgets/DefaultInstance.h"

#include <QCoreApplication>
#include <cstdio>

namespace {

// The open preview, or one made and composed out of sight for a print without it.
frmPreView *loadedPreview(const WindowContext &context) {
    if (frmPreView *open = DefaultInstance<frmPreView>::peek())
        return open;
    frmPreView *made = DefaultInstance<frmPreView>::get(context);
    made->Form_Load();
    return made;
}

void printerBox(const WindowContext &context, PrinterDialogService::Kind kind) {
    PrinterDialogService::PrinterDialog(kind,
                                        context.frame ? context.frame->frameWidget() : nullptr);
    // An open preview shows the pages on the paper just chosen.
    if (frmPreView *open = DefaultInstance<frmPreView>::peek())
        open->DoDocument();
}

} // namespace

void registerPrintingWindows() {
    // Nobody at the screen: the printer and page boxes are cancelled, as the file boxes are.
    if (QCoreApplication::arguments().contains(QStringLiteral("--unattended"), Qt::CaseInsensitive))
        PrinterDialogService::setAnswerer([](PrinterDialogService::Kind kind, QPrinter &) {
            std::fprintf(stderr, "PrinterDialog %d cancelled\n", int(kind));
            return false;
        });
    FormRegistry::addWindow<frmPreView>(QStringLiteral("frmPreView"),
                                        FormRegistry::Placement::Dialog);
    FormRegistry::add(QStringLiteral("ToolMenuPrint"), [](const WindowContext &context) {
        loadedPreview(context)->PrintDocument();
    });
    FormRegistry::add(QStringLiteral("ToolMenuPrinterSettings"), [](const WindowContext &context) {
        printerBox(context, PrinterDialogService::PrinterBox);
    });
    FormRegistry::add(QStringLiteral("ToolMenuPageSettings"), [](const WindowContext &context) {
        printerBox(context, PrinterDialogService::PageBox);
    });
}
