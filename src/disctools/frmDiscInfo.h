#pragma once

#include "app/FrameServices.h"

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QString>

class CDWriterPro;
class QChart;
class QGroupBox;
class QLabel;
class QLineEdit;
class QChartView;
class QPieSeries;
class QPushButton;
class QTabWidget;

// Shows the medium in the chosen recorder on two tabs (its kind and state, its size) with the
// buttons for what the disc still allows: closing, erasing, ejecting. Not modal, over the frame;
// one instance at a time. UI thread.
class frmDiscInfo : public QDialog {
    Q_OBJECT
public:
    explicit frmDiscInfo(const WindowContext &context);
    ~frmDiscInfo() override;

    // Opens for the engine's medium, or only says that there is none.
    void ShowDiscInfo(CDWriterPro *objCDR, QWidget *frmParent);
    void SetStatus();

    QTabWidget *tbsDiscInfo = nullptr;
    QList<QGroupBox *> fraOptions;
    QLineEdit *txtMedia = nullptr;
    QLabel *imgLogo = nullptr;
    QLabel *lblValueMediaType = nullptr;
    QLabel *lblValueSessions = nullptr;
    QLabel *lblValueLastSessionStatus = nullptr;
    QLabel *lblValueDiscType = nullptr;
    QLabel *lblValueDiscStatus = nullptr;
    QLabel *lblValueFileSystem = nullptr;
    QLabel *lblValueVolumeSerial = nullptr;
    QLabel *lblUsedColor = nullptr;
    QLabel *lblFreeColor = nullptr;
    QLabel *lblValueUsedSpaceBytes = nullptr;
    QLabel *lblValueUsedSpaceMB = nullptr;
    QLabel *lblValueFreeSpaceBytes = nullptr;
    QLabel *lblValueFreeSpaceMB = nullptr;
    QLabel *lblValueFreeSpaceBlocks = nullptr;
    QPushButton *cmdCloseSession = nullptr;
    QPushButton *cmdCloseDisc = nullptr;
    QPushButton *cmdErase = nullptr;
    QPushButton *cmdEjectDisk = nullptr;
    QPushButton *cmdClose = nullptr;
    // The pie of used and free space.
    QChart *MSChart1 = nullptr;

    bool mblnClosing = false;

    void cmdCloseSession_Click();
    void cmdCloseDisc_Click();
    void cmdErase_Click();
    void cmdEjectDisk_Click();
    void cmdClose_Click();
    void tbsDiscInfo_Click();
    void mobjCDR_ClosingSession();
    void mobjCDR_WritingComplete();
    void mobjCDR_WriteError(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                            const QString &sSenseInfo);

protected:
    void closeEvent(QCloseEvent *event) override;
    void reject() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildControls();
    QWidget *buildInfoTab();
    QWidget *buildSizeTab();
    void setLogo(const QString &key);
    void finishDisc(bool closeDisc);
    void setCloseButtons(bool enabled);

    WindowContext m_context;
    QPointer<CDWriterPro> mobjCDR;
    QPieSeries *m_series = nullptr;
    QChartView *m_chartView = nullptr;
};
