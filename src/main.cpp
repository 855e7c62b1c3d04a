#include "app/TessalyApplication.h"
#include "compilation/CompilationWindows.h"

int main(int argc, char **argv) {
    TessalyApplication app(argc, argv);
    registerCompilationWindows();
    return app.run();
}
