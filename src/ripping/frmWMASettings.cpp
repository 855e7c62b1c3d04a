#include "frmWMASettings.h"

#include "EncoderSettingsFiles.h"
#include "modEncoderLists.h"

#include "base/App.h"
#include "base/RuntimeError.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/encoders/WMAEncoderX.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>

namespace {
QPointer<frmWMASettings> &openDialog() {
    static QPointer<frmWMASettings> dialog;
    return dialog;
}

} // namespace

frmWMASettings::frmWMASettings(QWidget *parent)
    : EncoderOptionsDialog(SettingsFile(), parent) {
    setObjectName(QStringLiteral("frmWMASettings"));
    setWindowTitle(QStringLiteral("WMA EncoderSettings"));
    auto *form = new QFormLayout(this);
    cboBitRate = new QComboBox(this);
    form->addRow(QStringLiteral("Bit Rate:"), cboBitRate);
    auto *channels = new QHBoxLayout;
    optStereo = new QRadioButton(QStringLiteral("Stereo"), this);
    optMono = new QRadioButton(QStringLiteral("Mono"), this);
    optStereo->setChecked(true);
    channels->addWidget(optStereo);
    channels->addWidget(optMono);
    form->addRow(QStringLiteral("Channels:"), channels);
    cboSampleRates = new QComboBox(this);
    form->addRow(QStringLiteral("Sample Rate:"), cboSampleRates);
    chkEnableDRM = new QCheckBox(QStringLiteral("Enable &DRM"), this);
    chkEnableDRM->setToolTip(
        QStringLiteral("Kept with the settings only: the Windows Media encoder of this program "
                       "has no rights management, and the files are the same either way."));
    chkEnableDRM->setWhatsThis(chkEnableDRM->toolTip());
    form->addRow(chkEnableDRM);
    form->addRow(buttons);
    TRAPPED_CONNECT(cboBitRate, &QComboBox::currentIndexChanged, frmWMASettings, cboBitRate_Click);
    TRAPPED_CONNECT(optStereo, &QRadioButton::clicked, frmWMASettings, optStereo_Click);
    TRAPPED_CONNECT(optMono, &QRadioButton::clicked, frmWMASettings, optMono_Click);
    TRAPPED_CONNECT(cmdApply, &QPushButton::clicked, frmWMASettings, cmdApply_Click);
}

frmWMASettings::~frmWMASettings() = default;

QString frmWMASettings::SettingsFile() {
    return App::Path() + QStringLiteral("/Dat/OptWMA.dat");
}

frmWMASettings *frmWMASettings::instance() {
    return openDialog();
}

QString frmWMASettings::GetSampleEnumerationName(qint32 intIndex) {
    const qint32 hz = WMAEncoderX::sampleRateHz(intIndex);
    return hz ? QStringLiteral("%1Hz").arg(hz) : QStringLiteral("N/A");
}

void frmWMASettings::LoadBitRates(QComboBox *cboList) {
    for (qint32 rate : {5, 6, 8, 10, 12, 16, 20, 22, 32, 40, 48, 64, 80, 96, 128, 160})
        cboList->addItem(QStringLiteral("%1kb/s").arg(rate), rate);
}

void frmWMASettings::ShowForm(std::shared_ptr<WMAEncoderX> objWMA, QWidget *owner) {
    frmWMASettings dialog(owner);
    openDialog() = &dialog;
    dialog.m_wma = std::move(objWMA);
    LoadBitRates(dialog.cboBitRate);
    dialog.cboBitRate->setCurrentIndex(14);
    dialog.exec();
}

void frmWMASettings::GetSelectedBitRate(qint32 &result) {
    result = cboBitRate->currentData().toInt();
}

void frmWMASettings::cboBitRate_Click() {
    qint32 rate = 0;
    GetSelectedBitRate(rate);
    SetOptions(rate);
    LoadSampleRates(rate);
}

void frmWMASettings::SetOptions(qint32 rate) {
    const bool stereo = WMAEncoderX::StereoSupported(rate);
    const bool mono = WMAEncoderX::MonoSupported(rate);
    if (!stereo && !mono)
        return;
    optStereo->setEnabled(stereo);
    optMono->setEnabled(mono);
    if (!stereo)
        optMono->setChecked(true);
    else if (!mono)
        optStereo->setChecked(true);
}

void frmWMASettings::LoadSampleRates(qint32 rate) {
    const bool stereo = optStereo->isChecked();
    cboSampleRates->clear();
    for (qint32 i = 0; i < WMAEncoderX::SampleRateCount; ++i) {
        if (WMAEncoderX::SampleRateSupported(i, rate, stereo))
            cboSampleRates->addItem(GetSampleEnumerationName(i), i);
    }
    cboSampleRates->setCurrentIndex(cboSampleRates->count() ? 0 : -1);
}

void frmWMASettings::optStereo_Click() {
    qint32 rate = 0;
    GetSelectedBitRate(rate);
    LoadSampleRates(rate);
}

void frmWMASettings::optMono_Click() {
    optStereo_Click();
}

void frmWMASettings::cmdApply_Click() {
    if (!m_wma)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    m_wma->setBitrate(cboBitRate->currentData().toInt());
    // An empty list has no index to take.
    if (cboSampleRates->currentIndex() < 0)
        throw RuntimeError(381, QStringLiteral("Invalid property array index"));
    m_wma->setSampleRate(cboSampleRates->currentData().toInt());
    m_wma->setStereo(optStereo->isChecked());
    m_wma->setEnableDRM(chkEnableDRM->isChecked());
    close();
}

QByteArray frmWMASettings::record() const {
    return EncoderSettingsFiles::wmaLine(
        {qint16(cboBitRate->currentIndex()), qint16(chkEnableDRM->isChecked() ? 1 : 0),
         optStereo->isChecked(), optMono->isChecked(), qint16(cboSampleRates->currentIndex())});
}

void frmWMASettings::restore(const QByteArray &bytes) {
    const WMARecord r = EncoderSettingsFiles::readWMA(bytes);
    // The bit rate first: it rebuilds the channel choice and the sample rate list that the
    // stored sample rate index refers to.
    modEncoderLists::SetListIndex(cboBitRate, r.bitRate);
    if (r.stereo)
        optStereo->setChecked(true);
    if (r.mono)
        optMono->setChecked(true);
    optStereo_Click();
    chkEnableDRM->setChecked(r.drm != 0);
    modEncoderLists::SetListIndex(cboSampleRates, r.sampleRate);
}

void frmWMASettings::dropEncoder() {
    m_wma.reset();
}
