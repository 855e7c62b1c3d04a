#pragma once

#include "ScriptedAnswers.h"
#include "TestEnvironment.h"

#include <QtCore>

class frmBurn;
class mdiMain;

// A started program on the Image Recorder with a blank disc in the tray, that records what a
// write shows: the status panel and the dialog's action line after each engine event has been
// handled, and every box with the status panel at the moment it was asked.
class WriteRig {
public:
    struct Box {
        QString prompt;
        QString title;
        int buttons = 0;
        QString dataPanel;
    };

    enum class Tray { Blank, Empty, ClosedDisc, AppendableDisc, NoRecorder };

    // `settings` are keys of the Image Recorder ("FailAtBlock=20"); `kind` is the open job.
    explicit WriteRig(const QStringList &settings = {}, int kind = 0,
                      const QString &medium = QStringLiteral("CD-R 80"), Tray tray = Tray::Blank);
    ~WriteRig();
    mdiMain *frame() const { return m_frame; }
    bool started() const { return m_frame != nullptr; }
    QString appFolder() const { return env.appFolder(); }
    frmBurn *openDialog();
    // False when the write button is off or no ending came in time.
    bool writeAndWait(frmBurn *burn, int timeoutMs = 120000);
    QString ending;
    // Consecutive repeats shown once, the numbers of progress texts replaced by "#".
    QStringList panelTexts;
    QStringList actionTexts;
    QList<int> cancelEnabledAt; // track percentages at which the cancel button was enabled
    QList<Box> boxes;
    QStringList trayDiscs() const;
    QStringList ejectedDiscs() const;
    QString ejectedImage() const;
    bool cancelWhenOffered = false;
    TestEnvironment env;
    ScriptedAnswers answers;

private:
    void record();
    // Connected after the frame's and the dialog's handlers, so each sees what they left.
    void connectRecorder();
    QList<QMetaObject::Connection> m_recorder;
    mdiMain *m_frame = nullptr;
    bool m_cancelOffered = false;
};
