#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

class QProcess;
class QWidget;

// Runs the lame program once for the MP3 tool, waiting for it with the event loop running so
// that the window stays alive. UI thread.
class clsMP3 {
public:
    // Results of MP3Encode; the last two tell what lame did, which the tool shows the user.
    enum Result : qint32 {
        ResultDone = 0,
        ResultNoSource = 2,
        ResultNoDestination = 3,
        ResultNotStarted = 4,
        ResultFailed = 5,
    };

    clsMP3();
    ~clsMP3();
    clsMP3(const clsMP3 &) = delete;
    clsMP3 &operator=(const clsMP3 &) = delete;

    QString SrcFilename() const { return strSrcFileName; }
    void setSrcFilename(const QString &value) { strSrcFileName = value; }
    QString DestFilename() const { return strDestFileName; }
    void setDestFilename(const QString &value) { strDestFileName = value; }
    qint32 EncodeDecode() const { return lngEncodeSwitch; }
    void setEncodeDecode(qint32 value) { lngEncodeSwitch = value; }
    QString MP3Switches() const { return strMP3Switches; }
    // Keeps one blank at the end, so that the source name can follow.
    void setMP3Switches(const QString &value);

    void MP3Encode(QWidget *frm, qint32 &result);
    // Starts lame with the text that follows its name on the command line, split at blanks.
    void StartApp(const QString &command, qint32 &result);
    void WaitForAppToEnd();
    void EndApp();
    void KeepFormOnTop(QWidget *frm, bool blnOnTop);

    // The program that runs: "lame" in the application folder when it is there, else the one on
    // the PATH; empty when there is none.
    static QString lameProgram();
    // Where lame's own output goes: "Dat/MP3Tool.log" in the application folder.
    static QString logFile();
    // The words lame receives for the current properties.
    QStringList arguments() const;
    bool running() const;
    // Why the last run did not make its file, for the user.
    QString failure() const { return m_failure; }

private:
    void log(const QByteArray &text) const;
    void removePartialOutput() const;

    QString strSrcFileName;
    QString strDestFileName;
    QString strMP3Switches;
    qint32 lngEncodeSwitch = 1;
    std::unique_ptr<QProcess> m_process;
    QString m_failure;
    bool m_destExisted = false;
    QDateTime m_destModified;
};
