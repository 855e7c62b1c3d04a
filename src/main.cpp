#include "app/TessalyApplication.h"
#include "compilation/CompilationWindows.h"
#include "copying/CopyingWindows.h"
#include "dialogs/DialogWindows.h"
#include "disctools/DiscInfoWindows.h"
#include "disctools/DiscToolWindows.h"
#include "printing/PrintingWindows.h"
#include "ripping/RippingWindows.h"
#include "ripping/ToolWindows.h"
#include "writing/WritingWindows.h"

int main(int argc, char **argv) {
    TessalyApplication app(argc, argv);
    registerCompilationWindows();
    registerWritingWindows();
    registerRippingWindows();
    registerToolWindows();
    registerCopyingWindows();
    registerDiscToolWindows();
    registerDialogWindows();
    registerPrintingWindows();
    registerDiscInfoWindows();
    return app.run();
}
