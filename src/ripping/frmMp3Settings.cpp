#include "frmMp3Settings.h"

#include "EncoderSettingsFiles.h"
#include "modEncoderLists.h"

#include "base/App.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/encoders/MP3EncoderX.h"
#include "engine/encoders/VorbisEncoderX.h"
#include "widgets/MessageBoxService.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSaveFile>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace modEncoderLists;

namespace {
QPointer<frmMp3Settings> &openDialog() {
    static QPointer<frmMp3Settings> dialog;
    return dialog;
}

QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The Vorbis tab's limits, in the order they are tested; empty when they pass.
QString vorbisRefusal(qint32 nominal, qint32 minimum, qint32 maximum) {
    if (maximum != 0 && nominal > maximum)
        return QStringLiteral("Nominal Bit Rate must be lower than the Maximum Bit Rate");
    if (minimum != 0 && nominal < minimum)
        return QStringLiteral("Nominal Bit Rate must be higher than the Minimum Bit Rate");
    if (minimum != 0 && maximum != 0 && minimum > maximum)
        return QStringLiteral("The Minimum Bit Rate must be lower than the Maximum Bit Rate");
    return {};
}
} // namespace

frmMp3Settings::frmMp3Settings(QWidget *parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("frmMp3Settings"));
    setWindowTitle(QStringLiteral("Encoder Settings"));
    buildControls();
    // Form_Load.
    m_file = SettingsFile();
    cmdApply->setEnabled(false);
}

frmMp3Settings::~frmMp3Settings() = default;

QString frmMp3Settings::SettingsFile() {
    return App::Path() + QStringLiteral("/Dat/encoder.ini");
}

frmMp3Settings *frmMp3Settings::instance() {
    return openDialog();
}

void frmMp3Settings::buildControls() {
    auto *layout = new QVBoxLayout(this);
    tbsEncoder = new QTabWidget(this);
    layout->addWidget(tbsEncoder);

    fraOptions[0] = new QGroupBox(this);
    auto *mp3 = new QVBoxLayout(fraOptions[0]);
    auto *rateBox = new QGroupBox(QStringLiteral("Bit Rate"), fraOptions[0]);
    auto *rates = new QFormLayout(rateBox);
    optCBR = new QRadioButton(QStringLiteral("Constant Bit Rate"), rateBox);
    cboCBRRate = new QComboBox(rateBox);
    rates->addRow(optCBR, cboCBRRate);
    optVBR = new QRadioButton(QStringLiteral("Variable Bit Rate"), rateBox);
    rates->addRow(optVBR);
    cboVBRMin = new QComboBox(rateBox);
    cboVBRMax = new QComboBox(rateBox);
    rates->addRow(QStringLiteral("Minimum:"), cboVBRMin);
    rates->addRow(QStringLiteral("Maximum:"), cboVBRMax);
    sldVBRLevel = new QSlider(Qt::Horizontal, rateBox);
    sldVBRLevel->setRange(0, 9);
    sldVBRLevel->setTickPosition(QSlider::TicksBelow);
    // 0 is lame's best quality (-V 0): the slow, high quality end stands on the left.
    sldVBRLevel->setToolTip(QStringLiteral("0 is the best quality and the largest file, 9 the "
                                           "smallest file"));
    auto *ends = new QHBoxLayout;
    ends->addWidget(new QLabel(QStringLiteral("Slow / High Quaility"), rateBox));
    ends->addStretch();
    ends->addWidget(new QLabel(QStringLiteral("Fast / Low Quality"), rateBox));
    rates->addRow(QStringLiteral("VBR Quality:"), sldVBRLevel);
    rates->addRow(QString(), ends);
    mp3->addWidget(rateBox);
    auto *qualityBox = new QGroupBox(QStringLiteral("Quality"), fraOptions[0]);
    auto *quality = new QHBoxLayout(qualityBox);
    optNormal = new QRadioButton(QStringLiteral("Normal"), qualityBox);
    optStudio = new QRadioButton(QStringLiteral("Studio"), qualityBox);
    quality->addWidget(optNormal);
    quality->addWidget(optStudio);
    mp3->addWidget(qualityBox);
    auto *channels = new QFormLayout;
    cboChannelMode = new QComboBox(fraOptions[0]);
    channels->addRow(QStringLiteral("Channel Mode:"), cboChannelMode);
    mp3->addLayout(channels);
    tbsEncoder->addTab(fraOptions[0], QStringLiteral("MP3 Encoder Settings"));

    fraOptions[1] = new QGroupBox(this);
    auto *vorbis = new QFormLayout(fraOptions[1]);
    cboNominalBitRate = new QComboBox(fraOptions[1]);
    vorbis->addRow(QStringLiteral("Nominal Bit Rate:"), cboNominalBitRate);
    chkUseAdvanced =
        new QCheckBox(QStringLiteral("&Use Advanced Bit Rate Settings"), fraOptions[1]);
    vorbis->addRow(chkUseAdvanced);
    cboMinBitRate = new QComboBox(fraOptions[1]);
    cboMaxBitRate = new QComboBox(fraOptions[1]);
    vorbis->addRow(QStringLiteral("Minimum Bit Rate:"), cboMinBitRate);
    vorbis->addRow(QStringLiteral("Maximum Bit Rate:"), cboMaxBitRate);
    tbsEncoder->addTab(fraOptions[1], QStringLiteral("Vorbis Encoder Settings"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdApply = new QPushButton(QStringLiteral("&Apply"), this);
    for (QPushButton *b : {cmdOK, cmdCancel, cmdApply}) {
        b->setAutoDefault(false);
        buttons->addWidget(b);
    }
    layout->addLayout(buttons);

    for (QComboBox *c : {cboCBRRate, cboChannelMode, cboVBRMax, cboVBRMin})
        TRAPPED_CONNECT(c, &QComboBox::currentIndexChanged, frmMp3Settings, EnableApply);
    TRAPPED_CONNECT(sldVBRLevel, &QSlider::valueChanged, frmMp3Settings, EnableApply);
    TRAPPED_CONNECT(optNormal, &QRadioButton::toggled, frmMp3Settings, EnableApply);
    TRAPPED_CONNECT(optStudio, &QRadioButton::toggled, frmMp3Settings, EnableApply);
    TRAPPED_CONNECT(optCBR, &QRadioButton::toggled, frmMp3Settings, optCBR_Click);
    TRAPPED_CONNECT(optVBR, &QRadioButton::toggled, frmMp3Settings, optVBR_Click);
    TRAPPED_CONNECT(chkUseAdvanced, &QCheckBox::toggled, frmMp3Settings, chkUseAdvanced_Click);
    TRAPPED_CONNECT(cmdApply, &QPushButton::clicked, frmMp3Settings, cmdApply_Click);
    TRAPPED_CONNECT(cmdOK, &QPushButton::clicked, frmMp3Settings, cmdOK_Click);
    TRAPPED_CONNECT(cmdCancel, &QPushButton::clicked, frmMp3Settings, cmdCancel_Click);
    TRAPPED_CONNECT(tbsEncoder, &QTabWidget::currentChanged, frmMp3Settings, tbsEncoder_Click);
}

void frmMp3Settings::ShowForm(std::shared_ptr<MP3EncoderX> objmp3,
                              std::shared_ptr<VorbisEncoderX> objVorbis, QWidget *owner) {
    frmMp3Settings dialog(owner);
    openDialog() = &dialog;
    dialog.m_mp3 = std::move(objmp3);
    dialog.m_vorbis = std::move(objVorbis);
    LoadBitRatesMP3(dialog.cboCBRRate);
    dialog.cboCBRRate->setCurrentIndex(8);
    LoadBitRatesMP3(dialog.cboVBRMin);
    dialog.cboVBRMin->setCurrentIndex(0);
    LoadBitRatesMP3(dialog.cboVBRMax);
    dialog.cboVBRMax->setCurrentIndex(dialog.cboVBRMax->count() - 1);
    LoadChannels(dialog.cboChannelMode);
    dialog.cboChannelMode->setCurrentIndex(0);
    dialog.optCBR->setChecked(true);
    dialog.optNormal->setChecked(true);
    dialog.optCBR_Click();
    LoadVorbisRates(dialog.cboNominalBitRate, dialog.cboMinBitRate, dialog.cboMaxBitRate);
    dialog.chkUseAdvanced->setChecked(false);
    dialog.chkUseAdvanced_Click();
    dialog.tbsEncoder_Click();
    // A file that can't be read reaches the trap; past it, the dialog opens with what was read.
    ErrorTrap::run("LoadSettings", "frmMp3Settings", [&dialog] { dialog.LoadSettings(); });
    dialog.cmdApply->setEnabled(false);
    dialog.exec();
}

void frmMp3Settings::LoadSettings() {
    const EncoderIniSettings s = EncoderSettingsFiles::readEncoderIni(fileBytes(m_file));
    if (s.cbr)
        optCBR->setChecked(true);
    SetListIndex(cboCBRRate, s.cbrRate);
    if (s.vbr)
        optVBR->setChecked(true);
    SetListIndex(cboVBRMin, s.vbrMin);
    SetListIndex(cboVBRMax, s.vbrMax);
    if (s.vbrQuality < sldVBRLevel->minimum() || s.vbrQuality > sldVBRLevel->maximum())
        throw RuntimeError(380, QStringLiteral("Invalid property value"));
    sldVBRLevel->setValue(s.vbrQuality);
    if (s.studio)
        optStudio->setChecked(true);
    if (s.normal)
        optNormal->setChecked(true);
    SetListIndex(cboChannelMode, s.channelMode);
    SetListIndex(cboNominalBitRate, s.vorbisNominal);
    chkUseAdvanced->setChecked(s.vorbisAdvanced != 0);
    chkUseAdvanced_Click();
    SetListIndex(cboMinBitRate, s.vorbisMin);
    SetListIndex(cboMaxBitRate, s.vorbisMax);
}

EncoderIniSettings frmMp3Settings::shown() const {
    EncoderIniSettings s;
    s.cbr = optCBR->isChecked();
    s.cbrRate = qint16(cboCBRRate->currentIndex());
    s.vbr = optVBR->isChecked();
    s.vbrMin = qint16(cboVBRMin->currentIndex());
    s.vbrMax = qint16(cboVBRMax->currentIndex());
    s.vbrQuality = qint16(sldVBRLevel->value());
    s.studio = optStudio->isChecked();
    s.normal = optNormal->isChecked();
    s.channelMode = qint16(cboChannelMode->currentIndex());
    s.vorbisNominal = qint16(cboNominalBitRate->currentIndex());
    s.vorbisAdvanced = chkUseAdvanced->isChecked() ? 1 : 0;
    s.vorbisMin = qint16(cboMinBitRate->currentIndex());
    s.vorbisMax = qint16(cboMaxBitRate->currentIndex());
    return s;
}

void frmMp3Settings::SaveSettings() {
    QSaveFile file(m_file);
    const QByteArray text = EncoderSettingsFiles::writeEncoderIni(fileBytes(m_file), shown());
    // A failed write is silent, as every options write is.
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size())
        file.commit();
}

void frmMp3Settings::ApplySavedSettings(MP3EncoderX &mp3, VorbisEncoderX &vorbis) {
    try {
        const EncoderIniSettings s =
            EncoderSettingsFiles::readEncoderIni(fileBytes(SettingsFile()));
        const QList<qint32> &rates = Mp3BitRates();
        auto rate = [&rates](qint16 index) { return index >= 0 && index < rates.size(); };
        if (!rate(s.cbrRate) || !rate(s.vbrMin) || !rate(s.vbrMax) || s.channelMode < 0 ||
            s.channelMode > 3 || s.vbrQuality < 0 || s.vbrQuality > 9)
            return;
        const qint32 nominal = VorbisRateAt(s.vorbisNominal), minimum = VorbisRateAt(s.vorbisMin),
                     maximum = VorbisRateAt(s.vorbisMax);
        if (nominal < 0 || minimum < 0 || maximum < 0)
            return;
        mp3.setQualityMode(s.normal ? 1 : 0);
        mp3.setBitrate(rates[s.cbrRate]);
        mp3.setVBRQuality(s.vbrQuality);
        mp3.setVBRMinBitrate(rates[s.vbrMin]);
        mp3.setVBRMaxBitrate(rates[s.vbrMax]);
        mp3.setChannelMode(s.channelMode);
        mp3.setVBRMode(s.cbr ? 0 : 1);
        if (vorbisRefusal(nominal, minimum, maximum).isEmpty()) {
            vorbis.setNominalBitrate(nominal);
            vorbis.setMinBitrate(minimum);
            vorbis.setMaxBitrate(maximum);
        }
    } catch (const RuntimeError &) {
        // An unreadable file is the dialog's to report when it opens.
    }
}

void frmMp3Settings::EnableOptions() {
    const bool cbr = optCBR->isChecked();
    cboCBRRate->setEnabled(cbr);
    for (QWidget *w : {static_cast<QWidget *>(cboVBRMin), static_cast<QWidget *>(cboVBRMax),
                       static_cast<QWidget *>(sldVBRLevel)})
        w->setEnabled(!cbr);
}

void frmMp3Settings::optCBR_Click() {
    EnableOptions();
    EnableApply();
}

void frmMp3Settings::optVBR_Click() {
    EnableOptions();
    EnableApply();
}

void frmMp3Settings::EnableApply() {
    cmdApply->setEnabled(true);
}

void frmMp3Settings::chkUseAdvanced_Click() {
    const bool advanced = chkUseAdvanced->isChecked();
    cboMaxBitRate->setEnabled(advanced);
    cboMinBitRate->setEnabled(advanced);
}

void frmMp3Settings::cmdApply_Click() {
    if (!m_mp3 || !m_vorbis)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    MP3EncoderX &mp3 = *m_mp3;
    if (optNormal->isChecked())
        mp3.setQualityMode(1);
    else if (optStudio->isChecked())
        mp3.setQualityMode(0);
    const qint32 channelMode = cboChannelMode->currentData().toInt();
    if (optCBR->isChecked()) {
        mp3.setBitrate(cboCBRRate->currentData().toInt());
        mp3.setChannelMode(channelMode);
        mp3.setVBRMode(0);
    } else {
        mp3.setVBRQuality(sldVBRLevel->value());
        mp3.setVBRMaxBitrate(cboVBRMax->currentData().toInt());
        mp3.setVBRMinBitrate(cboVBRMin->currentData().toInt());
        mp3.setChannelMode(channelMode);
        mp3.setVBRMode(1);
        if (mp3.VBRMaxBitrate() <= mp3.VBRMinBitrate()) {
            Inform(QStringLiteral("Minimum Bit Rate must be less than the Maximum Bit Rate."));
            return;
        }
    }
    const qint32 nominal = cboNominalBitRate->currentData().toInt();
    const qint32 minimum = cboMinBitRate->currentData().toInt();
    const qint32 maximum = cboMaxBitRate->currentData().toInt();
    if (const QString refusal = vorbisRefusal(nominal, minimum, maximum); !refusal.isEmpty()) {
        Inform(refusal);
        return;
    }
    m_vorbis->setNominalBitrate(nominal);
    m_vorbis->setMaxBitrate(maximum);
    m_vorbis->setMinBitrate(minimum);
    cmdApply->setEnabled(false);
    // What the libraries themselves refuse is said now rather than at the first file.
    QString why;
    if (!mp3.settingsAccepted(&why) || !m_vorbis->settingsAccepted(&why))
        Inform(why);
}

void frmMp3Settings::cmdOK_Click() {
    cmdApply_Click();
    SaveSettings();
    close();
}

void frmMp3Settings::cmdCancel_Click() {
    close();
}

void frmMp3Settings::tbsEncoder_Click() {
    // Only the chosen tab's frame takes input.
    for (int i = 0; i < 2; ++i)
        fraOptions[i]->setEnabled(tbsEncoder->currentIndex() == i);
}

void frmMp3Settings::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::ControlModifier) {
        ErrorTrap::run("Form_KeyDown", "frmMp3Settings", [this] {
            tbsEncoder->setCurrentIndex((tbsEncoder->currentIndex() + 1) % tbsEncoder->count());
        });
        return;
    }
    QDialog::keyPressEvent(event);
}
