#include "MessageBoxService.h"
#include "base/App.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {
MessageBoxService::Answerer &answererSlot() {
    static MessageBoxService::Answerer answerer;
    return answerer;
}
} // namespace

int MessageBoxService::show(const QString &prompt, int buttons, const QString &title) {
    const Request request{prompt, buttons, title.isEmpty() ? App::Title() : title};
    if (answererSlot())
        return answererSlot()(request);
    return showReal(request);
}

void MessageBoxService::setAnswerer(Answerer answerer) {
    answererSlot() = std::move(answerer);
}

bool MessageBoxService::hasAnswerer() {
    return bool(answererSlot());
}

QList<int> MessageBoxService::buttonsOf(int flags) {
    switch (flags & 7) {
    case vbOKCancel:
        return {vbOK, vbCancel};
    case vbAbortRetryIgnore:
        return {vbAbort, vbRetry, vbIgnore};
    case vbYesNoCancel:
        return {vbYes, vbNo, vbCancel};
    case vbYesNo:
        return {vbYes, vbNo};
    case vbRetryCancel:
        return {vbRetry, vbCancel};
    default:
        return {vbOK};
    }
}

int MessageBoxService::defaultButton(int flags) {
    const QList<int> buttons = buttonsOf(flags);
    const int index = (flags & vbDefaultButton3) ? 2 : (flags & vbDefaultButton2) ? 1 : 0;
    return buttons.value(index, buttons.first());
}

int MessageBoxService::showReal(const Request &request) {
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(request.title);
    box.setText(request.prompt);
    switch (request.buttons & 0x70) {
    case vbCritical:
        box.setIcon(QMessageBox::Critical);
        break;
    case vbQuestion:
        box.setIcon(QMessageBox::Question);
        break;
    case vbExclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case vbInformation:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        box.setIcon(QMessageBox::NoIcon);
        break;
    }
    if (request.buttons & vbSystemModal)
        box.setWindowFlag(Qt::WindowStaysOnTopHint);

    struct Entry {
        int code;
        QMessageBox::StandardButton standard;
    };
    const Entry table[] = {
        {vbOK, QMessageBox::Ok},         {vbCancel, QMessageBox::Cancel},
        {vbAbort, QMessageBox::Abort},   {vbRetry, QMessageBox::Retry},
        {vbIgnore, QMessageBox::Ignore}, {vbYes, QMessageBox::Yes},
        {vbNo, QMessageBox::No},
    };
    auto standardOf = [&](int code) {
        for (const Entry &e : table) {
            if (e.code == code)
                return e.standard;
        }
        return QMessageBox::Ok;
    };
    QMessageBox::StandardButtons standardButtons;
    for (int code : buttonsOf(request.buttons))
        standardButtons |= standardOf(code);
    box.setStandardButtons(standardButtons);
    box.setDefaultButton(standardOf(defaultButton(request.buttons)));
    const auto chosen = QMessageBox::StandardButton(box.exec());
    for (const Entry &e : table) {
        if (e.standard == chosen)
            return e.code;
    }
    // Closed from the title bar: Cancel where there is one, else the only button.
    const QList<int> buttons = buttonsOf(request.buttons);
    return buttons.contains(vbCancel) ? vbCancel : buttons.last();
}

int MsgBox(const QString &prompt, int buttons, const QString &title) {
    return MessageBoxService::show(prompt, buttons, title);
}
