#include "app/TessalyApplication.h"
#include "writing/WritingWindows.h"

int main(int argc, char **argv) {
    TessalyApplication app(argc, argv);
    registerWritingWindows();
    return app.run();
}
