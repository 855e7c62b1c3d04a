#pragma once

#include <QDateTime>
#include <QDialog>
#include <QPointer>

class CDRipperX;
class KeyedStatusBar;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

// The extraction dialog: names one file per checked track, queues them on the ripper, starts
// the job and logs its events until it ends. Modal over the ripper window. UI thread.
class frmExtract : public QDialog {
    Q_OBJECT
public:
    explicit frmExtract(QWidget *parent = nullptr);
    ~frmExtract() override;

    // Shows the dialog modally for the ripper's tracks; `checked` tells, row by row, which
    // tracks the user ticked. Returns when the dialog is closed.
    static void ShowExtract(CDRipperX *objRipper, int EncType, const QList<bool> &checked,
                            QWidget *owner);
    // The open dialog, or null.
    static frmExtract *instance();

    QLineEdit *txtFileName = nullptr;
    QPushButton *cmdFilename = nullptr;
    QProgressBar *prgTotal = nullptr;
    QProgressBar *prgTrack = nullptr;
    QListWidget *lstStatus = nullptr;
    QPushButton *cmdGo = nullptr;
    QPushButton *cmdCancel = nullptr;
    KeyedStatusBar *smartStatusBarExtract = nullptr;

    QPointer<CDRipperX> m_objRipper;
    QString m_strExtension;
    QString mstrPath;
    qint16 m_nTrack = 0;
    QString m_strCurrentFileName;
    qint32 m_lCurrentStartTrackFrame = 0;
    qint32 m_lCurrentEndTrackFrame = 0;
    QDateTime m_dteStartTime;
    bool m_bRipping = false;
    qint16 mintCounter = 0;
    QList<bool> m_checked;

    void cmdFilename_Click();
    void cmdGo_Click();
    void cmdCancel_Click();
    void m_objRipper_ExtractionStart();
    void m_objRipper_ExtractingFileStart(const QString &FileName, qint32 StartFrame,
                                         qint32 EndFrame, qint16 QueueID);
    void m_objRipper_ExtractionStatus(qint32 Status, qint32 CurrentFrame);
    void m_objRipper_ExtractingFileEnd();
    void m_objRipper_ExtractionEnd();
    void m_objRipper_EncoderFailed(const QString &Description);

protected:
    // Closing mid-job cancels the job first and waits for its end.
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

private:
    void connectRipper();
    bool jobRunning() const;
    void showTrackProgress(qint32 CurrentFrame);
    void log(const QString &line); // adds a line and keeps the newest in view
};
