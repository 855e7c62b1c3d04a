#include "vbwFrmErrHandler.h"
#include "base/App.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
vbwFrmErrHandler::Answerer &answererSlot() {
    static vbwFrmErrHandler::Answerer answerer;
    return answerer;
}
} // namespace

vbwFrmErrHandler::vbwFrmErrHandler(const QString &message, QWidget *parent)
    : QDialog(parent) {
    setWindowTitle(App::Title());
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setModal(true);

    auto *layout = new QVBoxLayout(this);
    lblErrorString = new QLabel(message, this);
    lblErrorString->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(lblErrorString);

    // The report comes with its own part of the diagnostics; until then the user only chooses
    // how to go on.
    lblReport = new QLabel(QStringLiteral("Please select a continuation below..."), this);
    layout->addWidget(lblReport);
    txtDescribe = new QPlainTextEdit(
        QStringLiteral(
            "< Please describe here what you were doing exactly when this error occured >"),
        this);
    txtDescribe->setVisible(false);
    layout->addWidget(txtDescribe);

    auto *buttons = new QHBoxLayout;
    const struct {
        int index;
        const char *caption;
    } actions[] = {{3, "&Abort"}, {4, "&Retry"}, {5, "&Ignore"}};
    for (const auto &a : actions) {
        cmdAction[a.index] = new QPushButton(QString::fromLatin1(a.caption), this);
        connect(cmdAction[a.index], &QPushButton::clicked, this,
                [this, index = a.index] { cmdAction_Click(index); });
        buttons->addWidget(cmdAction[a.index]);
    }
    cmdSendMail = new QPushButton(QStringLiteral("Report &Error"), this);
    cmdSendMail->setVisible(false);
    buttons->addWidget(cmdSendMail);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void vbwFrmErrHandler::cmdAction_Click(int index) {
    m_code = index;
    accept();
}

int vbwFrmErrHandler::ask(const QString &message) {
    if (answererSlot())
        return answererSlot()(message);
    QApplication::beep();
    vbwFrmErrHandler dialog(message);
    dialog.exec();
    // Closing the dialog from the title bar goes on with the next statement.
    return dialog.m_code == 0 ? 5 : dialog.m_code;
}

void vbwFrmErrHandler::setAnswerer(Answerer answerer) {
    answererSlot() = std::move(answerer);
}
