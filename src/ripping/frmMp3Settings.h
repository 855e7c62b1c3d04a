#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

class MP3EncoderX;
class VorbisEncoderX;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabWidget;
struct EncoderIniSettings;

// The MP3 and Vorbis settings of the ripper's encoders, on two tabs, kept in "Dat/encoder.ini".
// Modal over the frame. UI thread.
class frmMp3Settings : public QDialog {
    Q_OBJECT
public:
    explicit frmMp3Settings(QWidget *parent = nullptr);
    ~frmMp3Settings() override;

    // Shows the dialog modally for the two encoders; returns when it is closed.
    static void ShowForm(std::shared_ptr<MP3EncoderX> objmp3,
                         std::shared_ptr<VorbisEncoderX> objVorbis, QWidget *owner);
    // The open dialog, or null.
    static frmMp3Settings *instance();
    // Gives the encoders what the file keeps, as OK last did, when a ripper window opens; a
    // file that can't be read leaves the encoders as they are.
    static void ApplySavedSettings(MP3EncoderX &mp3, VorbisEncoderX &vorbis);
    static QString SettingsFile();

    QTabWidget *tbsEncoder = nullptr;
    QGroupBox *fraOptions[2] = {};
    QRadioButton *optCBR = nullptr, *optVBR = nullptr, *optStudio = nullptr, *optNormal = nullptr;
    QComboBox *cboCBRRate = nullptr, *cboVBRMin = nullptr, *cboVBRMax = nullptr;
    QComboBox *cboChannelMode = nullptr;
    QSlider *sldVBRLevel = nullptr;
    QComboBox *cboNominalBitRate = nullptr, *cboMinBitRate = nullptr, *cboMaxBitRate = nullptr;
    QCheckBox *chkUseAdvanced = nullptr;
    QPushButton *cmdApply = nullptr, *cmdOK = nullptr, *cmdCancel = nullptr;

    void EnableOptions();
    void LoadSettings();
    void SaveSettings();
    void optCBR_Click();
    void optVBR_Click();
    void chkUseAdvanced_Click();
    void EnableApply();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void tbsEncoder_Click();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildControls();
    EncoderIniSettings shown() const;

    std::shared_ptr<MP3EncoderX> m_mp3;
    std::shared_ptr<VorbisEncoderX> m_vorbis;
    QString m_file;
};
