#include "frmNormalize.h"
#include "base/Conversions.h"
#include "base/RuntimeError.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/normalizer/DGPNorm.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"
#include "widgets/NamedWidget.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLCDNumber>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace {

constexpr const char *Module = "frmNormalize";
const QString WaveFilter = QStringLiteral("Wave Audio File|*.wav");
constexpr int FileMustExist = 4096;
constexpr int OverwritePrompt = 2;
// Path/File access error: the number a failed file operation carries to the trap.
constexpr int FileAccessError = 75;

} // namespace

frmNormalize::frmNormalize(const WindowContext &context) {
    Q_UNUSED(context);
    setObjectName(QStringLiteral("frmNormalize"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Normalize Wave File"));
    auto *column = new QVBoxLayout(this);

    auto filePicker = [&](QGroupBox *&frame, const char *caption, QLineEdit *&edit,
                          const char *editName, QPushButton *&button, const char *buttonName) {
        frame = new QGroupBox(QString::fromLatin1(caption), this);
        auto *row = new QHBoxLayout(frame);
        edit = named(new QLineEdit(frame), editName);
        edit->setReadOnly(true);
        button = named(new QPushButton(QStringLiteral("..."), frame), buttonName);
        button->setFixedWidth(32);
        row->addWidget(edit);
        row->addWidget(button);
        column->addWidget(frame);
    };
    filePicker(fraOpen, "&Open File:", txtOpen, "txtOpen", cmdOpen, "cmdOpen");
    filePicker(fraSave, "S&ave File As:", txtSave, "txtSave", cmdSave, "cmdSave");

    auto *level = new QGridLayout;
    Slider1 = named(new QSlider(Qt::Horizontal, this), "Slider1");
    Slider1->setRange(0, 100);
    Slider1->setTickPosition(QSlider::TicksBelow);
    Slider1->setTickInterval(25);
    Slider1->setPageStep(5);
    level->addWidget(Slider1, 0, 0, 1, 5);
    // Equal stretches between the marks keep each one under its tick of the slider.
    auto *marks = new QHBoxLayout;
    for (int i = 0; i <= 4; ++i) {
        if (i > 0)
            marks->addStretch();
        marks->addWidget(new QLabel(QString::number(i * 25), this));
    }
    level->addLayout(marks, 1, 0, 1, 5);
    auto *caption = new QLabel(QStringLiteral("% Normalization"), this);
    caption->setAlignment(Qt::AlignHCenter);
    level->addWidget(caption, 2, 0, 1, 5);
    DigitalDisplay1 = named(new QLCDNumber(3, this), "DigitalDisplay1");
    DigitalDisplay1->setSegmentStyle(QLCDNumber::Flat);
    DigitalDisplay1->setMinimumSize(72, 40);
    txtNorm = named(new QLineEdit(QStringLiteral("95"), this), "txtNorm");
    txtNorm->setMaximumWidth(72);
    txtNorm->setAlignment(Qt::AlignRight);
    level->addWidget(DigitalDisplay1, 0, 5, 2, 1);
    level->addWidget(txtNorm, 2, 5);
    level->setColumnMinimumWidth(5, 80);
    column->addLayout(level);

    prbProgress = named(new QProgressBar(this), "prbProgress");
    prbProgress->setRange(0, 100);
    prbProgress->setValue(0);
    prbProgress->setTextVisible(false);
    column->addWidget(prbProgress);

    auto *buttons = new QHBoxLayout;
    cmdStart = named(new QPushButton(QStringLiteral("&Start"), this), "cmdStart");
    cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), "cmdClose");
    buttons->addStretch();
    buttons->addWidget(cmdStart);
    buttons->addWidget(cmdClose);
    column->addLayout(buttons);
    column->addStretch();

    norm = new DGPNorm(this);
    TRAPPED_CONNECT(norm, &DGPNorm::PercentDone, frmNormalize, norm_PercentDone);
    TRAPPED_CONNECT(norm, &DGPNorm::NormalizeFailed, frmNormalize, norm_NormalizeFailed);
    TRAPPED_CONNECT(Slider1, &QSlider::valueChanged, frmNormalize, Slider1_Change);
    TRAPPED_CONNECT(cmdOpen, &QPushButton::clicked, frmNormalize, cmdOpen_Click);
    TRAPPED_CONNECT(cmdSave, &QPushButton::clicked, frmNormalize, cmdSave_Click);
    TRAPPED_CONNECT(cmdStart, &QPushButton::clicked, frmNormalize, cmdStart_Click);
    TRAPPED_CONNECT(cmdClose, &QPushButton::clicked, frmNormalize, cmdClose_Click);

    Slider1->setValue(95);
    cmdSave->setEnabled(false);
    txtSave->setEnabled(false);
    cmdStart->setEnabled(false);
    setMinimumWidth(420);
}

frmNormalize::~frmNormalize() {
    DefaultInstance<frmNormalize>::release(this);
}

void frmNormalize::closeEvent(QCloseEvent *event) {
    // Closed means not open any more, even before the deletion comes round.
    DefaultInstance<frmNormalize>::release(this);
    QWidget::closeEvent(event);
}

void frmNormalize::Slider1_Change() {
    txtNorm->setText(QString::number(Slider1->value()));
    DigitalDisplay1->display(Slider1->value());
}

void frmNormalize::cmdOpen_Click() {
    txtSave->clear();
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Open;
    request.title = QStringLiteral("Open WAV File");
    request.filter = WaveFilter;
    request.flags = FileMustExist;
    // A cancel leaves the name empty, which is handled below like any empty choice.
    const QString name = FileBoxService::ask(request).value_or(QString());
    if (name.isEmpty()) {
        cmdSave->setEnabled(false);
        txtSave->setEnabled(false);
        return;
    }
    cmdSave->setEnabled(true);
    txtSave->setEnabled(true);
    txtOpen->setText(name);
}

void frmNormalize::cmdSave_Click() {
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Save;
    request.title = QStringLiteral("Save Normalized WAV");
    request.fileName = txtOpen->text().left(txtOpen->text().size() - 4) + QStringLiteral("nrm.wav");
    request.filter = WaveFilter;
    request.flags = OverwritePrompt;
    const QString name = FileBoxService::ask(request).value_or(QString());
    if (name.isEmpty()) {
        cmdStart->setEnabled(false);
        return;
    }
    txtSave->setText(name);
    cmdStart->setEnabled(true);
}

void frmNormalize::cmdStart_Click() {
    const qint16 percent = CInt(txtNorm->text());
    if (!norm->Normalize(txtOpen->text(), txtSave->text(), percent))
        MsgBox(QStringLiteral("A wave file is still being normalized. Start the next one when it "
                              "is finished."),
               vbInformation);
}

void frmNormalize::cmdClose_Click() {
    close();
}

void frmNormalize::norm_PercentDone(double nPercent) {
    prbProgress->setValue(int(nPercent));
    if (nPercent != 100.0)
        return;
    prbProgress->setValue(100);
    QString text = QStringLiteral("Finished Normalizing The Wave Audio File");
    if (norm->lastWasSilent())
        text += QStringLiteral("\n\nThe file is silent, so it was copied unchanged.");
    MsgBox(text, vbInformation, QStringLiteral("Finished"));
    prbProgress->setValue(0);
    cmdSave->setEnabled(false);
    cmdStart->setEnabled(false);
    txtSave->setEnabled(false);
}

void frmNormalize::norm_NormalizeFailed(const QString &description) {
    prbProgress->setValue(0);
    throw RuntimeError(FileAccessError, description);
}
