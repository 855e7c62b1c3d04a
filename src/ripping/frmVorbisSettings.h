#pragma once

#include "EncoderOptionsDialog.h"

#include <QPointer>

#include <memory>

class VorbisEncoderX;
class QCheckBox;
class QComboBox;

// The Vorbis encoder's bit rates, kept on demand in "Dat/OptVorbis.dat". Modal over the ripper
// window. UI thread.
class frmVorbisSettings : public EncoderOptionsDialog {
    Q_OBJECT
public:
    explicit frmVorbisSettings(QWidget *parent = nullptr);
    ~frmVorbisSettings() override;

    static void ShowForm(std::shared_ptr<VorbisEncoderX> objVorbis, QWidget *owner);
    static frmVorbisSettings *instance();
    static QString SettingsFile();

    QComboBox *cboNominalBitRate = nullptr, *cboMinBitRate = nullptr, *cboMaxBitRate = nullptr;
    QCheckBox *chkUseAdvanced = nullptr;

    void chkUseAdvanced_Click();
    void cmdApply_Click();

protected:
    QByteArray record() const override;
    void restore(const QByteArray &bytes) override;
    void dropEncoder() override;

private:
    std::shared_ptr<VorbisEncoderX> m_vorbis;
};
