#include "WriteDialog.h"

namespace {
WriteDialog *s_open = nullptr;
}

WriteDialog::~WriteDialog() {
    if (s_open == this)
        s_open = nullptr;
}

WriteDialog *WriteDialog::open() {
    return s_open;
}

void WriteDialog::setOpen(WriteDialog *dialog) {
    s_open = dialog;
}
