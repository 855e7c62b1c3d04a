#pragma once

#include "base/Checked.h"

#include <QDialog>
#include <QList>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabBar;

// The options box behind PREFERENCES: edits the options file and previews window transparency
// on itself. Modal, one default instance, read afresh at every opening. On the UI thread.
class frmOptions : public QDialog {
    Q_OBJECT
public:
    frmOptions();

    // Opens the default instance modal over the owner and returns when it is closed.
    static void showModal(QWidget *owner);

    void SaveSettings();

    void tbsOptions_Click();
    // KeyCode and Shift as the keyboard reports them: 9 is Tab, Shift 2 is Ctrl.
    void Form_KeyDown(int KeyCode, int Shift);
    void chkUseTransp_Click();
    void sldTransparency_Scroll();
    void chkLastUsedDir_Click();
    void cmdFilename_Click();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

    QTabBar *tbsOptions = nullptr;
    QList<QGroupBox *> fraOptions;
    QCheckBox *chkLastUsedDir = nullptr;
    QWidget *picFrame2 = nullptr;
    QLabel *lblFileBrowserDir = nullptr;
    QLineEdit *txtStartFolder = nullptr;
    QPushButton *cmdFilename = nullptr;
    QCheckBox *chkUseTransp = nullptr;
    QSlider *sldTransparency = nullptr;
    QLabel *lblTransparency = nullptr;
    QWidget *picFrame3 = nullptr;
    QLabel *lblStartWin = nullptr;
    QRadioButton *optMaximized = nullptr;
    QRadioButton *optManual = nullptr;
    QWidget *picFrame1 = nullptr;
    QLabel *lblRightLeft = nullptr;
    QRadioButton *optRightHand = nullptr;
    QRadioButton *optLeftHand = nullptr;
    QPushButton *cmdApply = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdOK = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildControls();
    void connectHandlers();
    void Form_Load();
    // Steps shared by Apply and OK: the raised fields, then every key.
    void applyChoices();
    void enableApply();
    // The transparency extender: the window's opacity as a percentage.
    void setOpacityPercent(float percent);
    bool handleKey(QKeyEvent *event);

    QString mstrINIFile;
    Integer mintFBLeft = 0;
    Integer mintDILeft = 0;
    Integer mintAILeft = 0;
    Integer mintStartUp = 0;
};
