#include "app/TessalyApplication.h"

int main(int argc, char **argv) {
    TessalyApplication app(argc, argv);
    return app.run();
}
