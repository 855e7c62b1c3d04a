#include "frmVorbisSettings.h"

#include "EncoderSettingsFiles.h"
#include "modEncoderLists.h"

#include "base/App.h"
#include "base/RuntimeError.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/encoders/VorbisEncoderX.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>

using namespace modEncoderLists;

namespace {
QPointer<frmVorbisSettings> &openDialog() {
    static QPointer<frmVorbisSettings> dialog;
    return dialog;
}

} // namespace

frmVorbisSettings::frmVorbisSettings(QWidget *parent)
    : EncoderOptionsDialog(SettingsFile(), parent) {
    setObjectName(QStringLiteral("frmVorbisSettings"));
    setWindowTitle(QStringLiteral("Ogg Vorbis Encoder Settings"));
    auto *form = new QFormLayout(this);
    cboNominalBitRate = new QComboBox(this);
    form->addRow(QStringLiteral("Nominal Bit Rate:"), cboNominalBitRate);
    chkUseAdvanced = new QCheckBox(QStringLiteral("&Use Advanced Bit Rate Settings"), this);
    form->addRow(chkUseAdvanced);
    cboMinBitRate = new QComboBox(this);
    cboMaxBitRate = new QComboBox(this);
    form->addRow(QStringLiteral("Minimum Bit Rate:"), cboMinBitRate);
    form->addRow(QStringLiteral("Maximum Bit Rate:"), cboMaxBitRate);
    form->addRow(buttons);
    TRAPPED_CONNECT(chkUseAdvanced, &QCheckBox::toggled, frmVorbisSettings, chkUseAdvanced_Click);
    TRAPPED_CONNECT(cmdApply, &QPushButton::clicked, frmVorbisSettings, cmdApply_Click);
}

frmVorbisSettings::~frmVorbisSettings() = default;

QString frmVorbisSettings::SettingsFile() {
    return App::Path() + QStringLiteral("/Dat/OptVorbis.dat");
}

frmVorbisSettings *frmVorbisSettings::instance() {
    return openDialog();
}

void frmVorbisSettings::ShowForm(std::shared_ptr<VorbisEncoderX> objVorbis, QWidget *owner) {
    frmVorbisSettings dialog(owner);
    openDialog() = &dialog;
    dialog.m_vorbis = std::move(objVorbis);
    LoadVorbisRates(dialog.cboNominalBitRate, dialog.cboMinBitRate, dialog.cboMaxBitRate);
    dialog.chkUseAdvanced->setChecked(false);
    dialog.chkUseAdvanced_Click();
    dialog.exec();
}

void frmVorbisSettings::chkUseAdvanced_Click() {
    const bool advanced = chkUseAdvanced->isChecked();
    cboMaxBitRate->setEnabled(advanced);
    cboMinBitRate->setEnabled(advanced);
}

void frmVorbisSettings::cmdApply_Click() {
    // The limits count even while their boxes are disabled.
    const qint32 nominal = cboNominalBitRate->currentData().toInt();
    const qint32 minimum = cboMinBitRate->currentData().toInt();
    const qint32 maximum = cboMaxBitRate->currentData().toInt();
    if (maximum != 0 && nominal > maximum)
        return Inform(QStringLiteral("Nominal Bit Rate must be lower than the Maximum Bit Rate"));
    if (minimum != 0 && nominal < minimum)
        return Inform(QStringLiteral("Nominal Bit Rate must be higher than the Minimum Bit Rate"));
    if (minimum != 0 && maximum != 0 && minimum > maximum)
        return Inform(
            QStringLiteral("The Minimum Bit Rate must be lower than the Maximum Bit Rate"));
    if (!m_vorbis)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    m_vorbis->setNominalBitrate(nominal);
    m_vorbis->setMaxBitrate(maximum);
    m_vorbis->setMinBitrate(minimum);
    // What libvorbisenc itself refuses is said now rather than at the first file.
    if (QString why; !m_vorbis->settingsAccepted(&why))
        Inform(why);
    close();
}

QByteArray frmVorbisSettings::record() const {
    return EncoderSettingsFiles::vorbisLine(
        {qint16(cboNominalBitRate->currentIndex()), qint16(chkUseAdvanced->isChecked() ? 1 : 0),
         qint16(cboMinBitRate->currentIndex()), qint16(cboMaxBitRate->currentIndex())});
}

void frmVorbisSettings::restore(const QByteArray &bytes) {
    const VorbisRecord r = EncoderSettingsFiles::readVorbis(bytes);
    SetListIndex(cboNominalBitRate, r.nominal);
    chkUseAdvanced->setChecked(r.advanced != 0);
    chkUseAdvanced_Click();
    SetListIndex(cboMinBitRate, r.minimum);
    SetListIndex(cboMaxBitRate, r.maximum);
}

void frmVorbisSettings::dropEncoder() {
    m_vorbis.reset();
}
