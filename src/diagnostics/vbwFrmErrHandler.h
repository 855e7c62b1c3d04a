#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QPlainTextEdit;
class QPushButton;

// The trap's dialog: the error text and the buttons "&Abort", "&Retry", "&Ignore", with the
// offer of a report until one was made this run. Stands above every other window. UI thread.
class vbwFrmErrHandler : public QDialog {
    Q_OBJECT
public:
    explicit vbwFrmErrHandler(const QString &message, QWidget *parent = nullptr);

    // Shows the dialog modally (or asks the answerer) and returns the code of the button.
    static int ask(const QString &message);
    using Answerer = std::function<int(const QString &message)>;
    static void setAnswerer(Answerer answerer);

    QLabel *lblErrorString = nullptr;
    QLabel *lblReport = nullptr;
    QPlainTextEdit *txtDescribe = nullptr;
    QPushButton *cmdAction[6] = {};
    QPushButton *cmdSendMail = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void cmdAction_Click(int index);
    void cmdSendMail_Click();
    int m_code = 0;
};
