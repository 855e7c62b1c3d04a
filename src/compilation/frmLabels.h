#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

// The nine volume labels of the next write, edited together and stored only by OK. Shown
// modally while a data window is open. On the UI thread.
class frmLabels : public QDialog {
    Q_OBJECT
public:
    explicit frmLabels(QWidget *parent = nullptr);

    // Shows the dialog modally over the frame and unloads it when it closes.
    static void showModal(QWidget *owner);

    QLineEdit *txtVolumeLabel = nullptr;
    QLineEdit *txtVolumeApplication = nullptr;
    QLineEdit *txtVolumePublisher = nullptr;
    QLineEdit *txtSystemVolumeIdentifier = nullptr;
    QLineEdit *txtVolumeSet = nullptr;
    QLineEdit *txtDataPreparer = nullptr;
    QLineEdit *txtCopyrightFile = nullptr;
    QLineEdit *txtAbstractFile = nullptr;
    QLineEdit *txtBibliographicFile = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;

    void Form_Load();
    void cmdOK_Click();
    void cmdCancel_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QList<QLineEdit *> boxes() const;
};
