#include "CompilationWindow.h"

namespace {
CompilationWindow *s_current = nullptr;
}

CompilationWindow::CompilationWindow() {
    s_current = this;
}

CompilationWindow::~CompilationWindow() {
    if (s_current == this)
        s_current = nullptr;
}

CompilationWindow *CompilationWindow::current() {
    return s_current;
}
