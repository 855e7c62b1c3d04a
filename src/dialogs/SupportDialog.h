#pragma once

#include "app/FrameServices.h"

#include <QDialog>

class QPushButton;

// What the credits, the links window and the licence box share: a window over the frame that
// deletes itself when closed, a body and an OK button that closes it. UI thread.
class SupportDialog : public QDialog {
    Q_OBJECT
public:
    // `name` is the window's name, also the module the trap reports for the OK button.
    SupportDialog(const WindowContext &context, const char *name, const QString &title);

    QPushButton *cmdOK = nullptr;

protected:
    // Puts the body above the button row, at this size in pixels.
    void setBody(QWidget *body, int width, int height);
};
