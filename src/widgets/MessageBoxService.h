#pragma once

#include <QList>
#include <QString>
#include <functional>

// Button, icon and default flags of a message box, and the button that answered it.
enum MsgBoxStyle : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbAbortRetryIgnore = 2,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbRetryCancel = 5,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    vbDefaultButton1 = 0,
    vbDefaultButton2 = 256,
    vbDefaultButton3 = 512,
    vbApplicationModal = 0,
    vbSystemModal = 4096,
};

enum MsgBoxResult : int {
    vbOK = 1,
    vbCancel = 2,
    vbAbort = 3,
    vbRetry = 4,
    vbIgnore = 5,
    vbYes = 6,
    vbNo = 7,
};

// Every message box of the program goes through here. Tests and unattended runs replace the
// answerer: it is told what was asked and answers as a user would, so nothing ever blocks on
// a real modal box. Lives on the UI thread.
class MessageBoxService {
public:
    struct Request {
        QString prompt;
        int buttons = vbOKOnly;
        QString title;
    };
    using Answerer = std::function<int(const Request &)>;

    static int show(const QString &prompt, int buttons, const QString &title);

    // An empty answerer restores the real box.
    static void setAnswerer(Answerer answerer);
    static bool hasAnswerer();

    // The buttons a set of flags shows, in order, and the one that is the default.
    static QList<int> buttonsOf(int flags);
    static int defaultButton(int flags);

private:
    static int showReal(const Request &request);
};

// The program's one message box: the prompt, the button/icon/default flags and the title
// (the product name when empty). Returns the button chosen.
int MsgBox(const QString &prompt, int buttons = vbOKOnly, const QString &title = QString());
