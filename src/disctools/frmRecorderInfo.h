#pragma once

#include "app/FrameServices.h"

#include <QDialog>
#include <QHash>
#include <QList>

class QGroupBox;
class QLabel;
class QPushButton;
class QTabWidget;

// What the current recorder is and can do, on three tabs: the drive, what it writes, what it
// reads. Not modal, over the frame; one instance at a time. UI thread.
class frmRecorderInfo : public QDialog {
    Q_OBJECT
public:
    explicit frmRecorderInfo(const WindowContext &context);
    ~frmRecorderInfo() override;

    void Form_Load();
    // The drive's firmware revision: the one place that asks for it.
    QString QueryRevision() const;

    QTabWidget *tbsRecorderInfo = nullptr;
    QList<QGroupBox *> fraOptions;
    QLabel *lblDrive = nullptr;
    QLabel *lblValueDriveVendor = nullptr;
    QLabel *lblValueDriveModel = nullptr;
    QLabel *lblValueFirmware = nullptr;
    QLabel *lblValueMaxSpeed = nullptr;
    // The capability labels by name ("lblValueCDRW").
    QHash<QString, QLabel *> capabilityLabels;
    QPushButton *cmdClose = nullptr;

    void tbsRecorderInfo_Click();
    void cmdClose_Click();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    WindowContext m_context;
};
