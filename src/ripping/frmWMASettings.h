#pragma once

#include "EncoderOptionsDialog.h"

#include <QPointer>

#include <memory>

class WMAEncoderX;
class QCheckBox;
class QComboBox;
class QRadioButton;

// The Windows Media encoder's bit rate, sample rate and channels, offering only what the encoder
// accepts, kept on demand in "Dat/OptWMA.dat". Modal over the ripper window. UI thread.
class frmWMASettings : public EncoderOptionsDialog {
    Q_OBJECT
public:
    explicit frmWMASettings(QWidget *parent = nullptr);
    ~frmWMASettings() override;

    static void ShowForm(std::shared_ptr<WMAEncoderX> objWMA, QWidget *owner);
    static frmWMASettings *instance();
    static QString SettingsFile();
    static QString GetSampleEnumerationName(qint32 intIndex);
    static void LoadBitRates(QComboBox *cboList);

    QComboBox *cboBitRate = nullptr, *cboSampleRates = nullptr;
    QRadioButton *optStereo = nullptr, *optMono = nullptr;
    QCheckBox *chkEnableDRM = nullptr;

    void GetSelectedBitRate(qint32 &result);
    void cboBitRate_Click();
    void SetOptions(qint32 rate);
    void LoadSampleRates(qint32 rate);
    void optStereo_Click();
    void optMono_Click();
    void cmdApply_Click();

protected:
    QByteArray record() const override;
    void restore(const QByteArray &bytes) override;
    void dropEncoder() override;

private:
    std::shared_ptr<WMAEncoderX> m_wma;
};
