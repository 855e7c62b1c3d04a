#include "vbwFrmErrHandler.h"
#include "base/App.h"
#include "vbwErrHandler.h"
#include "widgets/MessageBoxService.h"

#include <QApplication>
#include <QEvent>
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

    const bool reported = vbwState().vbwfHasReported;
    lblReport = new QLabel(this);
    lblReport->setWordWrap(true);
    lblReport->setText(
        reported ? QStringLiteral("Thanks for having reported this error !\r\nPlease select a "
                                  "continuation below...")
                 : QStringLiteral(
                       "We are very sorry for this inconvenience and we would like to provide a "
                       "fix for this error. You may help us a great deal by reporting this error "
                       "via email. If you allow this, please fill the text box below and press "
                       "the Report Error button. Thanks for your time."));
    layout->addWidget(lblReport);
    txtDescribe = new QPlainTextEdit(
        QStringLiteral(
            "< Please describe here what you were doing exactly when this error occured >"),
        this);
    txtDescribe->setVisible(!reported);
    txtDescribe->setFixedHeight(txtDescribe->fontMetrics().lineSpacing() * 4);
    txtDescribe->installEventFilter(this);
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
    // Enter goes on with the program rather than ending it.
    cmdAction[5]->setDefault(true);
    if (reported)
        cmdAction[5]->setFocus();
    cmdSendMail = new QPushButton(QStringLiteral("Report &Error"), this);
    cmdSendMail->setVisible(!reported);
    connect(cmdSendMail, &QPushButton::clicked, this, &vbwFrmErrHandler::cmdSendMail_Click);
    buttons->addWidget(cmdSendMail);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

bool vbwFrmErrHandler::eventFilter(QObject *watched, QEvent *event) {
    // While the user describes the circumstances, Enter means Report Error.
    if (watched == txtDescribe && event->type() == QEvent::FocusIn) {
        txtDescribe->selectAll();
        cmdSendMail->setDefault(true);
    } else if (watched == txtDescribe && event->type() == QEvent::FocusOut) {
        cmdSendMail->setDefault(false);
        cmdAction[5]->setDefault(true);
    }
    return QDialog::eventFilter(watched, event);
}

void vbwFrmErrHandler::cmdSendMail_Click() {
    // The mail program's window must be able to cover this one.
    setWindowFlag(Qt::WindowStaysOnTopHint, false);
    show();
    m_code = vbwReport;
    vbwState().vbwCircumstancesString = txtDescribe->toPlainText();
    MsgBox(QStringLiteral("This application will now retrieve some data needed to fix this "
                          "error, open your email messenger and prepare a message to send. Then "
                          "please press the \"Send Message\" button.\r\nThis may take from a "
                          "few seconds up to a few minutes depending on the amount of data to "
                          "retrieve.\r\nDuring this time, you should normally notice hard drive "
                          "and floppy drive activity."),
           vbOKOnly | vbInformation, App::Title());
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QCoreApplication::processEvents();
    accept();
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
