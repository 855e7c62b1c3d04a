#include "frmVorbisSettings.h"

#include "EncoderSettingsFiles.h"
#include "modEncoderLists.h"

#include "base/App.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/encoders/VorbisEncoderX.h"
#include "widgets/MessageBoxService.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSaveFile>

using namespace modEncoderLists;

namespace {
QPointer<frmVorbisSettings> &openDialog() {
    static QPointer<frmVorbisSettings> dialog;
    return dialog;
}

void inform(const QString &text) {
    MsgBox(text, vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}
} // namespace

frmVorbisSettings::frmVorbisSettings(QWidget *parent)
    : QDialog(parent) {
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
    auto *buttons = new QHBoxLayout;
    cmdSave = new QPushButton(QStringLiteral("&Save Settings"), this);
    cmdLoad = new QPushButton(QStringLiteral("&Load Settings"), this);
    cmdApply = new QPushButton(QStringLiteral("&Apply Settings"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    for (QPushButton *b : {cmdSave, cmdLoad, cmdApply, cmdCancel}) {
        b->setAutoDefault(false);
        buttons->addWidget(b);
    }
    form->addRow(buttons);
    TRAPPED_CONNECT(chkUseAdvanced, &QCheckBox::toggled, frmVorbisSettings, chkUseAdvanced_Click);
    TRAPPED_CONNECT(cmdApply, &QPushButton::clicked, frmVorbisSettings, cmdApply_Click);
    TRAPPED_CONNECT(cmdSave, &QPushButton::clicked, frmVorbisSettings, cmdSave_Click);
    TRAPPED_CONNECT(cmdLoad, &QPushButton::clicked, frmVorbisSettings, cmdLoad_Click);
    TRAPPED_CONNECT(cmdCancel, &QPushButton::clicked, frmVorbisSettings, cmdCancel_Click);
    // Form_Load.
    m_file = SettingsFile();
    cmdLoad->setEnabled(QFile::exists(m_file));
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
    for (QComboBox *c : {dialog.cboNominalBitRate, dialog.cboMinBitRate, dialog.cboMaxBitRate})
        LoadBitRatesVorbis(c);
    dialog.cboNominalBitRate->setCurrentIndex(9);
    dialog.cboMinBitRate->setCurrentIndex(0);
    dialog.cboMaxBitRate->setCurrentIndex(0);
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
        return inform(QStringLiteral("Nominal Bit Rate must be lower than the Maximum Bit Rate"));
    if (minimum != 0 && nominal < minimum)
        return inform(QStringLiteral("Nominal Bit Rate must be higher than the Minimum Bit Rate"));
    if (minimum != 0 && maximum != 0 && minimum > maximum)
        return inform(
            QStringLiteral("The Minimum Bit Rate must be lower than the Maximum Bit Rate"));
    if (!m_vorbis)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    m_vorbis->setNominalBitrate(nominal);
    m_vorbis->setMaxBitrate(maximum);
    m_vorbis->setMinBitrate(minimum);
    // What libvorbisenc itself refuses is said now rather than at the first file.
    if (QString why; !m_vorbis->settingsAccepted(&why))
        inform(why);
    close();
}

void frmVorbisSettings::SaveSettings() {
    const VorbisRecord record{
        qint16(cboNominalBitRate->currentIndex()), qint16(chkUseAdvanced->isChecked() ? 1 : 0),
        qint16(cboMinBitRate->currentIndex()), qint16(cboMaxBitRate->currentIndex())};
    const QByteArray line = EncoderSettingsFiles::vorbisLine(record);
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly) || file.write(line) != line.size() || !file.commit())
        throw RuntimeError(RuntimeError::PathNotFound, QStringLiteral("Path not found"));
    inform(QStringLiteral("Options saved successfully in file: ") + m_file);
}

void frmVorbisSettings::LoadSettings() {
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(RuntimeError::FileNotFound, QStringLiteral("File not found"));
    const VorbisRecord r = EncoderSettingsFiles::readVorbis(file.readAll());
    SetListIndex(cboNominalBitRate, r.nominal);
    chkUseAdvanced->setChecked(r.advanced != 0);
    chkUseAdvanced_Click();
    SetListIndex(cboMinBitRate, r.minimum);
    SetListIndex(cboMaxBitRate, r.maximum);
    inform(QStringLiteral("Options loaded successfully from file: ") + m_file);
}

void frmVorbisSettings::cmdSave_Click() {
    SaveSettings();
    cmdLoad->setEnabled(true);
}

void frmVorbisSettings::cmdLoad_Click() {
    LoadSettings();
}

void frmVorbisSettings::cmdCancel_Click() {
    close();
}

void frmVorbisSettings::closeEvent(QCloseEvent *event) {
    // Form_Unload: the question comes however the dialog closes, once.
    if (!m_asked) {
        m_asked = true;
        m_vorbis.reset();
        const int answer =
            MsgBox(QStringLiteral("Do you want to Save WMA Options?"), vbQuestion | vbYesNo,
                   App::ProductName() + QStringLiteral(" - Save Options?"));
        if (answer == vbYes)
            ErrorTrap::run("SaveSettings", "frmVorbisSettings", [this] { SaveSettings(); });
    }
    event->accept();
    done(QDialog::Rejected);
}

void frmVorbisSettings::reject() {
    close();
}
