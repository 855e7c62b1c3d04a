#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

class VorbisEncoderX;
class QCheckBox;
class QComboBox;
class QPushButton;

// The Vorbis encoder's bit rates, kept on demand in "Dat/OptVorbis.dat". Modal over the ripper
// window. UI thread.
class frmVorbisSettings : public QDialog {
    Q_OBJECT
public:
    explicit frmVorbisSettings(QWidget *parent = nullptr);
    ~frmVorbisSettings() override;

    static void ShowForm(std::shared_ptr<VorbisEncoderX> objVorbis, QWidget *owner);
    static frmVorbisSettings *instance();
    static QString SettingsFile();

    QComboBox *cboNominalBitRate = nullptr, *cboMinBitRate = nullptr, *cboMaxBitRate = nullptr;
    QCheckBox *chkUseAdvanced = nullptr;
    QPushButton *cmdSave = nullptr, *cmdLoad = nullptr, *cmdApply = nullptr, *cmdCancel = nullptr;

    void chkUseAdvanced_Click();
    void cmdApply_Click();
    void cmdSave_Click();
    void cmdLoad_Click();
    void cmdCancel_Click();
    void LoadSettings();
    void SaveSettings();

protected:
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

private:
    std::shared_ptr<VorbisEncoderX> m_vorbis;
    QString m_file;
    bool m_asked = false;
};
