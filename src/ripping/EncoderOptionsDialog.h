#pragma once

#include <QDialog>

class QHBoxLayout;
class QPushButton;

// What the Vorbis and Windows Media dialogs share: their four buttons, the one-line file they
// keep their choices in, the reports of Save and Load, and the save question however they
// close. UI thread.
class EncoderOptionsDialog : public QDialog {
    Q_OBJECT
public:
    QPushButton *cmdSave = nullptr, *cmdLoad = nullptr, *cmdApply = nullptr, *cmdCancel = nullptr;

    void cmdSave_Click();
    void cmdLoad_Click();
    void cmdCancel_Click();
    // Writes the record the dialog shows, or reads the file into the dialog; each reports it.
    void SaveSettings();
    void LoadSettings();

protected:
    // `file` is the record's path; `buttons` is the row of the four buttons, for the layout.
    EncoderOptionsDialog(const QString &file, QWidget *parent);
    virtual QByteArray record() const = 0;
    virtual void restore(const QByteArray &bytes) = 0;
    // Unload: the dialog lets go of its encoder before the question.
    virtual void dropEncoder() = 0;
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

    QHBoxLayout *buttons = nullptr;
    QString m_file;

private:
    bool m_asked = false;
};
