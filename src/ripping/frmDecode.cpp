#include "frmDecode.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "clsMP3.h"
#include "diagnostics/ErrorTrap.h"
#include "modMP3Support.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"
#include "widgets/NamedWidget.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSlider>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace modMP3Support;

namespace {

constexpr const char *Module = "frmDecode";
constexpr qint32 Encode = 1;
constexpr qint32 Decode = 2;

// What the bit rate label shows for each slider position, from 1.
constexpr int PositionRates[] = {8,  16,  24,  32,  40,  48,  56,  64,  80,
                                 96, 112, 128, 144, 160, 192, 224, 256, 320};

QString rateLabel(int position) {
    const int rate = position >= 1 && position <= 18 ? PositionRates[position - 1] : 0;
    return QStringLiteral("Current Bitrate: %1 kbits").arg(rate);
}

qint32 checkValue(const QCheckBox *box) {
    return box->isChecked() ? 1 : 0;
}

// An edit field's number: trimmed, 0 when it is no number.
double fieldValue(const QLineEdit *edit) {
    const QString text = edit->text().trimmed();
    return IsNumeric(text) ? CDbl(text) : 0.0;
}

QString plain(double value) {
    return QString::number(value, 'g', 15);
}

// Two arrow buttons that step a number in an edit field between limits.
QWidget *upDown(QWidget *parent, const char *name, QLineEdit *buddy, int low, int high) {
    auto *box = new QWidget(parent);
    box->setObjectName(QLatin1String(name));
    auto *column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (const int step : {1, -1}) {
        auto *button = new QToolButton(box);
        button->setArrowType(step > 0 ? Qt::UpArrow : Qt::DownArrow);
        button->setFixedSize(18, 11);
        button->setAutoRepeat(true);
        column->addWidget(button);
        QObject::connect(button, &QToolButton::clicked, buddy, [=] {
            ErrorTrap::run(name, Module, [&] {
                const int value = int(RoundHalfEven(fieldValue(buddy))) + step;
                buddy->setText(QString::number(std::clamp(value, low, high)));
            });
        });
    }
    return box;
}

} // namespace

void frmDecode::trapped(QObject *sender, const char *procedure, void (frmDecode::*handler)()) {
    auto call = [this, procedure, handler] {
        if (!m_loading)
            ErrorTrap::run(procedure, Module, [&] { (this->*handler)(); });
    };
    if (auto *box = qobject_cast<QCheckBox *>(sender))
        connect(box, &QCheckBox::toggled, this, call);
    else if (auto *combo = qobject_cast<QComboBox *>(sender))
        connect(combo, &QComboBox::currentIndexChanged, this, call);
    else if (auto *edit = qobject_cast<QLineEdit *>(sender))
        connect(edit, &QLineEdit::textChanged, this, call);
    else if (auto *button = qobject_cast<QPushButton *>(sender))
        connect(button, &QPushButton::clicked, this, call);
}

frmDecode::frmDecode(const WindowContext &context) {
    Q_UNUSED(context);
    setObjectName(QStringLiteral("frmDecode"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("MP3 Encoder/Decoder"));
    auto *column = new QVBoxLayout(this);
    tbsDecoder = named(new QTabBar(this), "tbsDecoder");
    for (const char *caption : {"&General", "&VBR / ABR", "&Filters"})
        tbsDecoder->addTab(QString::fromLatin1(caption));
    m_pages = new QStackedWidget(this);
    for (size_t i = 0; i < fraOptions.size(); ++i) {
        fraOptions[i] = new QWidget(m_pages);
        fraOptions[i]->setObjectName(QStringLiteral("fraOptions%1").arg(i));
        m_pages->addWidget(fraOptions[i]);
    }
    buildGeneral();
    buildVbr();
    buildFilters();
    column->addWidget(tbsDecoder);
    column->addWidget(m_pages);

    lblStatus = named(new QLabel(this), "lblStatus");
    lblStatus->setFrameShape(QFrame::Panel);
    lblStatus->setFrameShadow(QFrame::Sunken);
    lblStatus->setWordWrap(true);
    lblStatus->setMinimumHeight(40);
    lblStatus->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(lblStatus);

    auto *buttons = new QHBoxLayout;
    cmdEncode = named(new QPushButton(QStringLiteral("&Encode WAV"), this), "cmdEncode");
    cmdDecode = named(new QPushButton(QStringLiteral("&Decode MP3"), this), "cmdDecode");
    cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), "cmdClose");
    buttons->addWidget(cmdEncode);
    buttons->addWidget(cmdDecode);
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    column->addLayout(buttons);
    trapped(cmdEncode, "cmdEncode_Click", &frmDecode::cmdEncode_Click);
    trapped(cmdDecode, "cmdDecode_Click", &frmDecode::cmdDecode_Click);
    trapped(cmdClose, "cmdClose_Click", &frmDecode::cmdClose_Click);

    connect(tbsDecoder, &QTabBar::currentChanged, this,
            [this] { ErrorTrap::run("tbsDecoder_Click", Module, [this] { tbsDecoder_Click(); }); });
    auto *nextTab = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this);
    nextTab->setContext(Qt::WidgetWithChildrenShortcut);
    connect(nextTab, &QShortcut::activated, this,
            [this] { ErrorTrap::run("Form_KeyDown", Module, [this] { Form_KeyDown(9, 2); }); });
    tbsDecoder_Click();
}

frmDecode::~frmDecode() {
    DefaultInstance<frmDecode>::release(this);
    // A lame still running when the window goes is stopped; the run's own copy of the
    // object sees it end.
    if (m_mp3)
        m_mp3->EndApp();
}

void frmDecode::buildGeneral() {
    QWidget *page = fraOptions[0];
    auto *grid = new QVBoxLayout(page);
    auto *rate = new QGroupBox(QStringLiteral("Bitrate"), page);
    auto *rateColumn = new QVBoxLayout(rate);
    sldBitrate[0] = named(new QSlider(Qt::Horizontal, rate), "sldBitrate0");
    lblBitrate = named(new QLabel(rate), "lblBitrate");
    rateColumn->addWidget(sldBitrate[0]);
    rateColumn->addWidget(lblBitrate);
    grid->addWidget(rate);

    auto *form = new QFormLayout;
    auto combo = [&](QComboBox *&box, const char *name, const char *caption,
                     std::initializer_list<const char *> items) {
        box = named(new QComboBox(page), name);
        for (const char *item : items)
            box->addItem(QString::fromLatin1(item));
        form->addRow(QString::fromLatin1(caption), box);
        trapped(box, name, &frmDecode::control_Change);
    };
    combo(cboMode, "cboMode",
          "&Mode:", {"Stereo", "Joint Stereo", "Forced Joint Stereo", "Mono", "Default"});
    combo(cboOptimize, "cboOptimize", "&Optimization:", {"None", "Speed", "Quality"});
    combo(cboOutputFreq, "cboOutputFreq", "Output &Frequency:",
          {"Default", "16 kHz", "22.05 kHz", "24 kHz", "32 kHz", "44.1 kHz", "48 kHz"});
    grid->addLayout(form);

    auto *checks = new QGridLayout;
    auto check = [&](QCheckBox *&box, const char *name, const char *caption, int row, int col) {
        box = named(new QCheckBox(QString::fromLatin1(caption), page), name);
        checks->addWidget(box, row, col);
        trapped(box, name, &frmDecode::control_Change);
    };
    check(chkCRC, "chkCRC", "Include C&RC", 0, 0);
    check(chkCopy, "chkCopy", "Mark as Co&py", 0, 1);
    check(chkCopyright, "chkCopyright", "Mark as Copy&righted", 1, 0);
    // The setting travels with the options; the tool itself never deletes a source file.
    check(chkDelSource, "chkDelSource", "Delete Source (&stored only)", 1, 1);
    chkDelSource->setToolTip(
        QStringLiteral("Kept with the options for other tools; this tool deletes nothing."));
    grid->addLayout(checks);
    grid->addStretch();
}

void frmDecode::buildVbr() {
    QWidget *page = fraOptions[1];
    auto *column = new QVBoxLayout(page);
    chkEnableVBR = named(new QCheckBox(QStringLiteral("Enable &VBR"), page), "chkEnableVBR");
    column->addWidget(chkEnableVBR);
    trapped(chkEnableVBR, "chkEnableVBR_Click", &frmDecode::chkEnableVBR_Click);

    Frame11 = named(new QGroupBox(QStringLiteral("Maximum VBR Bitrate"), page), "Frame11");
    auto *rate = new QVBoxLayout(Frame11);
    Label3 =
        named(new QLabel(QStringLiteral("The highest rate a frame may take:"), Frame11), "Label3");
    sldBitrate[1] = named(new QSlider(Qt::Horizontal, Frame11), "sldBitrate1");
    Label4 = named(new QLabel(Frame11), "Label4");
    rate->addWidget(Label3);
    rate->addWidget(sldBitrate[1]);
    rate->addWidget(Label4);
    column->addWidget(Frame11);

    Frame12 =
        named(new QGroupBox(QStringLiteral("VBR Quality (0 best, 9 smallest)"), page), "Frame12");
    auto *quality = new QGridLayout(Frame12);
    txtQuality = named(new QLineEdit(Frame12), "txtQuality");
    txtQuality->setMaximumWidth(60);
    UpDown1 = upDown(Frame12, "UpDown1", txtQuality, 0, 9);
    chkUseABR = named(new QCheckBox(QStringLiteral("Use &ABR"), Frame12), "chkUseABR");
    Label5 = named(new QLabel(QStringLiteral("ABR Bitrate (kbits):"), Frame12), "Label5");
    txtABRBitrate = named(new QLineEdit(Frame12), "txtABRBitrate");
    txtABRBitrate->setMaximumWidth(60);
    UpDown2 = upDown(Frame12, "UpDown2", txtABRBitrate, 4, 310);
    quality->addWidget(new QLabel(QStringLiteral("Quality:"), Frame12), 0, 0);
    quality->addWidget(txtQuality, 0, 1);
    quality->addWidget(UpDown1, 0, 2);
    quality->addWidget(chkUseABR, 1, 0);
    quality->addWidget(Label5, 2, 0);
    quality->addWidget(txtABRBitrate, 2, 1);
    quality->addWidget(UpDown2, 2, 2);
    quality->setColumnStretch(3, 1);
    column->addWidget(Frame12);
    trapped(txtQuality, "txtQuality_Change", &frmDecode::control_Change);
    trapped(txtABRBitrate, "txtABRBitrate_Change", &frmDecode::control_Change);
    trapped(chkUseABR, "chkUseABR_Click", &frmDecode::chkUseABR_Click);

    chkDisableVBRTag =
        named(new QCheckBox(QStringLiteral("Disable VBR &Tag"), page), "chkDisableVBRTag");
    chkEnforceMinBitrate = named(new QCheckBox(QStringLiteral("Enforce &Minimum Bitrate"), page),
                                 "chkEnforceMinBitrate");
    column->addWidget(chkDisableVBRTag);
    column->addWidget(chkEnforceMinBitrate);
    column->addStretch();
    trapped(chkDisableVBRTag, "chkDisableVBRTag_Click", &frmDecode::control_Change);
    trapped(chkEnforceMinBitrate, "chkEnforceMinBitrate_Click", &frmDecode::control_Change);

    for (int i = 0; i < 2; ++i) {
        QSlider *slider = sldBitrate[size_t(i)];
        slider->setRange(1, 18);
        slider->setPageStep(1);
        slider->setTickPosition(QSlider::TicksBelow);
        slider->setTickInterval(1);
        connect(slider, &QSlider::valueChanged, this, [this, i] {
            if (!m_loading)
                ErrorTrap::run("sldBitrate_Click", Module, [&] { sldBitrate_Click(i); });
        });
    }
}

void frmDecode::buildFilters() {
    QWidget *page = fraOptions[2];
    auto *grid = new QGridLayout(page);
    auto pair = [&](QCheckBox *&box, const char *boxName, const char *caption, QLineEdit *&edit,
                    const char *editName, int row) {
        box = named(new QCheckBox(QString::fromLatin1(caption), page), boxName);
        edit = named(new QLineEdit(page), editName);
        edit->setMaximumWidth(80);
        grid->addWidget(box, row, 0);
        grid->addWidget(edit, row, 1);
        trapped(edit, editName, &frmDecode::control_Change);
    };
    pair(chkHighPassFreq, "chkHighPassFreq", "&High Pass Frequency (kHz):", txtHighPassFreq,
         "txtHighPassFreq", 0);
    pair(chkHighPassWidth, "chkHighPassWidth", "High Pass &Width (kHz):", txtHighPassWidth,
         "txtHighPassWidth", 1);
    pair(chkLowPassFreq, "chkLowPassFreq", "&Low Pass Frequency (kHz):", txtLowPassFreq,
         "txtLowPassFreq", 2);
    pair(chkLowPassWidth, "chkLowPassWidth", "Low Pass W&idth (kHz):", txtLowPassWidth,
         "txtLowPassWidth", 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(4, 1);
    trapped(chkHighPassFreq, "chkHighPassFreq_Click", &frmDecode::chkHighPassFreq_Click);
    trapped(chkHighPassWidth, "chkHighPassWidth_Click", &frmDecode::chkHighPassFreq_Click);
    trapped(chkLowPassFreq, "chkLowPassFreq_Click", &frmDecode::chkLowPassFreq_Click);
    trapped(chkLowPassWidth, "chkLowPassWidth_Click", &frmDecode::chkLowPassFreq_Click);
}

void frmDecode::Form_Load() {
    blnRetLoad = LoadOptions();
    if (!blnRetLoad)
        MsgBox(QStringLiteral("Error Loading Program Options!."), vbCritical);
    InitializeOptions();
}

void frmDecode::InitializeOptions() {
    const MP3Options &o = udtOptions;
    m_loading = true;
    sldBitrate[0]->setValue(BitrateToTicks(o.Bitrate));
    cboMode->setCurrentIndex(o.Mode);
    cboOptimize->setCurrentIndex(o.Optimization);
    chkCRC->setChecked(o.IncludeCRC == 1);
    chkCopy->setChecked(o.Copy == 1);
    chkCopyright->setChecked(o.Copyright == 1);
    chkDelSource->setChecked(o.Filing == 1);
    chkEnableVBR->setChecked(o.EnableVBR == 1);
    sldBitrate[1]->setValue(BitrateToTicks(o.VBRBitrate));
    txtQuality->setText(QString::number(o.Quality));
    chkDisableVBRTag->setChecked(o.DisableVBRTag == 1);
    chkEnforceMinBitrate->setChecked(o.EnforceBitrate == 1);
    chkUseABR->setChecked(o.UseABR == 1);
    txtABRBitrate->setText(QString::number(o.ABRBitrate));
    cboOutputFreq->setCurrentIndex(int(o.OutputFrequency));
    chkHighPassFreq->setChecked(o.UseHighPassFilter == 1);
    chkHighPassWidth->setChecked(o.UseHighPassWidth == 1);
    txtHighPassFreq->setText(plain(o.HighPassFreq));
    txtHighPassWidth->setText(plain(o.HighPassWidth));
    chkLowPassFreq->setChecked(o.UseLowPassFilter == 1);
    chkLowPassWidth->setChecked(o.UseLowPassWidth == 1);
    txtLowPassFreq->setText(plain(o.LowPassFreq));
    txtLowPassWidth->setText(plain(o.LowPassWidth));
    m_loading = false;
    applyEnabling();
    sldBitrate_Click(0);
    sldBitrate_Click(1);
}

void frmDecode::applyEnabling() {
    const bool vbr = chkEnableVBR->isChecked();
    const bool abr = chkUseABR->isChecked();
    for (QWidget *w :
         std::initializer_list<QWidget *>{Frame11, Label3, sldBitrate[1], Label4, Frame12,
                                          chkDisableVBRTag, chkEnforceMinBitrate, chkUseABR})
        w->setEnabled(vbr);
    txtQuality->setEnabled(vbr && !abr);
    UpDown1->setEnabled(vbr && !abr);
    Label5->setEnabled(vbr && abr);
    txtABRBitrate->setEnabled(vbr && abr);
    UpDown2->setEnabled(vbr && abr);
    const bool high = chkHighPassFreq->isChecked();
    txtHighPassFreq->setEnabled(high);
    chkHighPassWidth->setEnabled(high);
    txtHighPassWidth->setEnabled(high && chkHighPassWidth->isChecked());
    const bool low = chkLowPassFreq->isChecked();
    txtLowPassFreq->setEnabled(low);
    chkLowPassWidth->setEnabled(low);
    txtLowPassWidth->setEnabled(low && chkLowPassWidth->isChecked());
}

void frmDecode::DisplaySwitches() {
    BuildMP3String();
    lblStatus->setText(u' ' + strCommands);
}

void frmDecode::sldBitrate_Click(int Index) {
    const int position = sldBitrate[size_t(Index)]->value();
    const qint32 rate = TicksToBitrate(position);
    if (Index == 0) {
        udtOptions.Bitrate = rate;
        lblBitrate->setText(rateLabel(position));
    } else {
        udtOptions.VBRBitrate = rate;
        Label4->setText(rateLabel(position));
    }
    DisplaySwitches();
}

void frmDecode::control_Change() {
    MP3Options &o = udtOptions;
    o.Mode = cboMode->currentIndex();
    o.Optimization = cboOptimize->currentIndex();
    o.OutputFrequency = cboOutputFreq->currentIndex();
    o.IncludeCRC = checkValue(chkCRC);
    o.Copy = checkValue(chkCopy);
    o.Copyright = checkValue(chkCopyright);
    o.Filing = checkValue(chkDelSource);
    o.DisableVBRTag = checkValue(chkDisableVBRTag);
    o.EnforceBitrate = checkValue(chkEnforceMinBitrate);
    o.Quality = CLng(fieldValue(txtQuality));
    o.ABRBitrate = CLng(fieldValue(txtABRBitrate));
    o.HighPassFreq = fieldValue(txtHighPassFreq);
    o.HighPassWidth = fieldValue(txtHighPassWidth);
    o.LowPassFreq = fieldValue(txtLowPassFreq);
    o.LowPassWidth = fieldValue(txtLowPassWidth);
    o.EnableVBR = checkValue(chkEnableVBR);
    o.UseABR = checkValue(chkUseABR);
    o.UseHighPassFilter = checkValue(chkHighPassFreq);
    o.UseHighPassWidth = checkValue(chkHighPassWidth);
    o.UseLowPassFilter = checkValue(chkLowPassFreq);
    o.UseLowPassWidth = checkValue(chkLowPassWidth);
    applyEnabling();
    DisplaySwitches();
}

void frmDecode::chkEnableVBR_Click() {
    control_Change();
}

void frmDecode::chkUseABR_Click() {
    control_Change();
}

void frmDecode::chkHighPassFreq_Click() {
    control_Change();
}

void frmDecode::chkLowPassFreq_Click() {
    control_Change();
}

void frmDecode::tbsDecoder_Click() {
    const int selected = tbsDecoder->currentIndex();
    m_pages->setCurrentIndex(selected);
    for (int i = 0; i < int(fraOptions.size()); ++i)
        fraOptions[size_t(i)]->setEnabled(i == selected);
}

void frmDecode::Form_KeyDown(int KeyCode, int Shift) {
    if (Shift == 2 && KeyCode == 9)
        tbsDecoder->setCurrentIndex((tbsDecoder->currentIndex() + 1) % tbsDecoder->count());
}

void frmDecode::GetFileNames() {
    const bool encoding = m_mp3->EncodeDecode() == Encode;
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Open;
    request.title =
        encoding ? QStringLiteral("Open a WAV File") : QStringLiteral("Open a MP3 File");
    request.filter = encoding ? QStringLiteral("WAV Files(*.wav)|*.wav")
                              : QStringLiteral("MP3 Files(*.mp3)|*.mp3");
    request.initialDirectory = App::pathOf(QStringLiteral("/Audio"));
    // A cancel is the user's choice, not a failure: it sets the flag and nothing more.
    const std::optional<QString> chosen = FileBoxService::ask(request);
    if (!chosen || chosen->isEmpty()) {
        blnCancelFlag = true;
        return;
    }
    m_mp3->setSrcFilename(*chosen);
    m_mp3->setDestFilename(chosen->left(chosen->size() - 3) +
                           (encoding ? QStringLiteral("mp3") : QStringLiteral("wav")));
    strDelSrcFile = *chosen;
}

void frmDecode::cmdEncode_Click() {
    run(Encode);
}

void frmDecode::cmdDecode_Click() {
    run(Decode);
}

void frmDecode::run(qint32 direction) {
    if (!m_mp3)
        m_mp3 = std::make_shared<clsMP3>();
    // The run keeps its own reference: the window may be closed while lame works.
    const std::shared_ptr<clsMP3> mp3 = m_mp3;
    if (mp3->running())
        return;
    mp3->setEncodeDecode(direction);
    BuildMP3String();
    mp3->setMP3Switches(
        (direction == Encode ? QStringLiteral("-S ") : QStringLiteral("--decode -S ")) +
        strCommands);
    blnCancelFlag = false;
    GetFileNames();
    if (blnCancelFlag) {
        MsgBox(QStringLiteral("User Canceled File Selection!"), vbInformation);
        return;
    }
    lblStatus->setText(direction == Encode
                           ? QStringLiteral(" Please Wait Encoding WAV File To MP3...")
                           : QStringLiteral(" Please Wait Decoding MP3 File To WAV..."));
    // One lame at a time: a second click would start a run inside this one.
    cmdEncode->setEnabled(false);
    cmdDecode->setEnabled(false);
    const QPointer<frmDecode> self(this);
    qint32 result = 0;
    mp3->MP3Encode(this, result);
    if (!self)
        return;
    cmdEncode->setEnabled(true);
    cmdDecode->setEnabled(true);
    if (result == clsMP3::ResultDone) {
        if (direction == Encode)
            MsgBox(QStringLiteral("Finished Encoding File!"), vbInformation,
                   QStringLiteral("Done Encoding File."));
        else
            MsgBox(QStringLiteral("Finished Decoding File!"), vbInformation,
                   QStringLiteral("Done Decoding File."));
    } else {
        MsgBox(QStringLiteral("The file %1 was not made. %2\nlame's messages are in %3.")
                   .arg(mp3->DestFilename(), mp3->failure(), clsMP3::logFile()),
               vbCritical);
    }
    DisplaySwitches();
}

void frmDecode::cmdClose_Click() {
    close();
}

void frmDecode::closeEvent(QCloseEvent *event) {
    if (m_mp3 && m_mp3->running()) {
        // The run in progress owns the wait; the window stays until lame has finished.
        MsgBox(QStringLiteral("Please wait: lame is still working on the file."), vbInformation);
        event->ignore();
        return;
    }
    ErrorTrap::run("Form_QueryUnload", Module, [this] {
        if (MsgBox(QStringLiteral("Do you want to Save Program Options?"), vbYesNo + vbQuestion,
                   QStringLiteral("Save Program Options")) == vbYes) {
            blnRetSave = SaveOptions();
            if (!blnRetSave)
                MsgBox(QStringLiteral("The options could not be saved to ") + OptionsFile(),
                       vbCritical);
        }
    });
    m_mp3.reset();
    DefaultInstance<frmDecode>::release(this);
    QWidget::closeEvent(event);
}
