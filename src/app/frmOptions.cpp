#include "frmOptions.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "frmChooseDir.h"
#include "modIniFunc.h"
#include "widgets/DefaultInstance.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QTabBar>

namespace {

constexpr int FrameLeft = 165;
constexpr int FrameAway = -20000;
constexpr int HandedLeft = 7650;

// Geometry in twips, converted at the widget's edge.
void place(QWidget *w, int left, int top, int width, int height) {
    w->setGeometry(Twips::toPixels(left), Twips::toPixels(top), Twips::toPixels(width),
                   Twips::toPixels(height));
}

} // namespace

frmOptions::frmOptions() {
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    setWindowTitle(QStringLiteral("Options"));
    buildControls();
    connectHandlers();
    ErrorTrap::run("Form_Load", "frmOptions", [this] { Form_Load(); });
}

void frmOptions::showModal(QWidget *owner) {
    frmOptions *box = DefaultInstance<frmOptions>::get();
    if (owner && box->parentWidget() != owner)
        box->setParent(owner, box->windowFlags());
    box->exec();
}

void frmOptions::buildControls() {
    setFixedSize(Twips::toPixels(6690), Twips::toPixels(4890));

    tbsOptions = new QTabBar(this);
    tbsOptions->addTab(QStringLiteral("&Directories"));
    tbsOptions->addTab(QStringLiteral("&Windows"));
    tbsOptions->addTab(QStringLiteral("&File Browser"));
    tbsOptions->setExpanding(false);
    place(tbsOptions, 120, 120, 6450, 375);

    for (int i = 0; i < tbsOptions->count(); ++i) {
        auto *frame = new QGroupBox(QStringLiteral("Options:"), this);
        place(frame, i == 0 ? FrameLeft : FrameAway, 570, 6360, 3510);
        frame->setEnabled(i == 0);
        fraOptions.append(frame);
    }

    // Directories.
    chkLastUsedDir = new QCheckBox(QStringLiteral("La&st Used Directory"), fraOptions[0]);
    place(chkLastUsedDir, 240, 360, 4500, 300);
    picFrame2 = new QWidget(fraOptions[0]);
    place(picFrame2, 240, 840, 5880, 1260);
    lblFileBrowserDir =
        new QLabel(QStringLiteral("Set the File Browser startup directory"), picFrame2);
    place(lblFileBrowserDir, 0, 0, 5880, 300);
    txtStartFolder = new QLineEdit(QStringLiteral("C:\\"), picFrame2);
    place(txtStartFolder, 0, 420, 5100, 330);
    cmdFilename = new QPushButton(QStringLiteral("..."), picFrame2);
    place(cmdFilename, 5220, 420, 600, 330);

    // Windows: transparency and the frame's start-up position.
    chkUseTransp = new QCheckBox(QStringLiteral("&Use Transparency"), fraOptions[1]);
    place(chkUseTransp, 240, 360, 4500, 300);
    lblTransparency = new QLabel(
        QStringLiteral("Set the transparency for windows (0 = transparent, 100 = opaque)"),
        fraOptions[1]);
    lblTransparency->setWordWrap(true);
    place(lblTransparency, 240, 720, 5880, 480);
    sldTransparency = new QSlider(Qt::Horizontal, fraOptions[1]);
    sldTransparency->setRange(0, 100);
    sldTransparency->setTickInterval(10);
    sldTransparency->setPageStep(10);
    sldTransparency->setTickPosition(QSlider::TicksBelow);
    place(sldTransparency, 240, 1260, 5880, 450);
    picFrame3 = new QWidget(fraOptions[1]);
    place(picFrame3, 240, 1920, 5880, 1320);
    lblStartWin = new QLabel(QStringLiteral("Set application startup position"), picFrame3);
    place(lblStartWin, 0, 0, 5880, 300);
    optMaximized = new QRadioButton(QStringLiteral("&Maximized"), picFrame3);
    place(optMaximized, 120, 420, 3000, 300);
    optManual = new QRadioButton(QStringLiteral("Ma&nual"), picFrame3);
    place(optManual, 120, 810, 3000, 300);

    // File browser side.
    picFrame1 = new QWidget(fraOptions[2]);
    place(picFrame1, 240, 360, 5880, 1320);
    lblRightLeft =
        new QLabel(QStringLiteral("Set left or right handed File Browser Window"), picFrame1);
    place(lblRightLeft, 0, 0, 5880, 300);
    optRightHand = new QRadioButton(QStringLiteral("&Right Handed"), picFrame1);
    place(optRightHand, 120, 420, 3000, 300);
    optLeftHand = new QRadioButton(QStringLiteral("&Left Handed"), picFrame1);
    place(optLeftHand, 120, 810, 3000, 300);

    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    place(cmdOK, 2490, 4260, 1275, 420);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    place(cmdCancel, 3885, 4260, 1275, 420);
    cmdApply = new QPushButton(QStringLiteral("&Apply"), this);
    place(cmdApply, 5280, 4260, 1275, 420);
    cmdOK->setDefault(true);
    cmdApply->setEnabled(false);

    // Every key passes the box first, whatever control has the focus.
    for (QWidget *child : findChildren<QWidget *>())
        child->installEventFilter(this);
}

void frmOptions::connectHandlers() {
    const auto trapped = [this](const char *name, void (frmOptions::*handler)()) {
        return [this, name, handler] {
            ErrorTrap::run(name, "frmOptions", [=, this] { (this->*handler)(); });
        };
    };
    connect(tbsOptions, &QTabBar::currentChanged, this,
            trapped("tbsOptions_Click", &frmOptions::tbsOptions_Click));
    connect(chkUseTransp, &QCheckBox::clicked, this,
            trapped("chkUseTransp_Click", &frmOptions::chkUseTransp_Click));
    connect(sldTransparency, &QSlider::valueChanged, this,
            trapped("sldTransparency_Scroll", &frmOptions::sldTransparency_Scroll));
    connect(chkLastUsedDir, &QCheckBox::clicked, this,
            trapped("chkLastUsedDir_Click", &frmOptions::chkLastUsedDir_Click));
    connect(optLeftHand, &QRadioButton::clicked, this,
            trapped("optLeftHand_Click", &frmOptions::enableApply));
    connect(optRightHand, &QRadioButton::clicked, this,
            trapped("optRightHand_Click", &frmOptions::enableApply));
    connect(optMaximized, &QRadioButton::clicked, this,
            trapped("optMaximized_Click", &frmOptions::enableApply));
    connect(optManual, &QRadioButton::clicked, this,
            trapped("optManual_Click", &frmOptions::enableApply));
    connect(txtStartFolder, &QLineEdit::textChanged, this,
            trapped("txtStartFolder_Change", &frmOptions::enableApply));
    connect(cmdFilename, &QPushButton::clicked, this,
            trapped("cmdFilename_Click", &frmOptions::cmdFilename_Click));
    connect(cmdApply, &QPushButton::clicked, this,
            trapped("cmdApply_Click", &frmOptions::cmdApply_Click));
    connect(cmdOK, &QPushButton::clicked, this, trapped("cmdOK_Click", &frmOptions::cmdOK_Click));
    connect(cmdCancel, &QPushButton::clicked, this,
            trapped("cmdCancel_Click", &frmOptions::cmdCancel_Click));
}

void frmOptions::Form_Load() {
    mstrINIFile = App::pathOf(QStringLiteral("\\Dat\\tessaly.ini"));
    mintFBLeft = 0;
    mintDILeft = 0;
    mintAILeft = 0;
    mintStartUp = 0;
    const auto read = [this](const char *section, const char *key, const char *def) {
        return sGetINI(mstrINIFile, QLatin1String(section), QLatin1String(key), QLatin1String(def));
    };
    // Loading shows what is stored; it is no change, so neither the handlers nor Apply react.
    const QSignalBlocker blockSlider(sldTransparency);
    const QSignalBlocker blockText(txtStartFolder);
    chkUseTransp->setChecked(CInt(read("General", "Transparency Enabled", "0")) != 0);
    sldTransparency->setValue(CInt(read("General", "Transparency Value", "90")));
    optLeftHand->setChecked(CBool(read("General", "Left Hand", "False")));
    optRightHand->setChecked(CBool(read("General", "Right Hand", "True")));
    optMaximized->setChecked(CBool(read("General", "Maximized", "True")));
    optManual->setChecked(CBool(read("General", "Manual", "False")));
    chkLastUsedDir->setChecked(CInt(read("Directories", "Use Last Directory", "1")) != 0);
    if (chkLastUsedDir->isChecked()) {
        picFrame2->hide();
    } else {
        picFrame2->show();
        txtStartFolder->setText(read("Directories", "FileBrowser Start Dir", "C:\\"));
    }
}

void frmOptions::setOpacityPercent(float percent) {
    setWindowOpacity(percent / 100.0);
}

void frmOptions::enableApply() {
    cmdApply->setEnabled(true);
}

void frmOptions::tbsOptions_Click() {
    const int selected = tbsOptions->currentIndex();
    for (int i = 0; i < tbsOptions->count(); ++i) {
        QGroupBox *frame = fraOptions[i];
        // Frames are moved out of sight rather than hidden.
        frame->move(Twips::toPixels(i == selected ? FrameLeft : FrameAway), frame->y());
        frame->setEnabled(i == selected);
    }
}

void frmOptions::Form_KeyDown(int KeyCode, int Shift) {
    if (Shift == 2 && KeyCode == 9)
        tbsOptions->setCurrentIndex((tbsOptions->currentIndex() + 1) % tbsOptions->count());
}

bool frmOptions::handleKey(QKeyEvent *event) {
    if (event->key() != Qt::Key_Tab)
        return false;
    int shift = 0;
    if (event->modifiers() & Qt::ShiftModifier)
        shift |= 1;
    if (event->modifiers() & Qt::ControlModifier)
        shift |= 2;
    if (event->modifiers() & Qt::AltModifier)
        shift |= 4;
    if (shift != 2)
        return false;
    ErrorTrap::run("Form_KeyDown", "frmOptions", [&] { Form_KeyDown(9, shift); });
    return true;
}

bool frmOptions::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress && handleKey(static_cast<QKeyEvent *>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

void frmOptions::keyPressEvent(QKeyEvent *event) {
    if (!handleKey(event))
        QDialog::keyPressEvent(event);
}

void frmOptions::chkUseTransp_Click() {
    if (chkUseTransp->isChecked()) {
        const QSignalBlocker block(sldTransparency);
        sldTransparency->setValue(90);
        setOpacityPercent(float(sldTransparency->value()));
        sldTransparency->setEnabled(true);
    } else {
        setOpacityPercent(100.0f);
        const QSignalBlocker block(sldTransparency);
        sldTransparency->setValue(100);
        sldTransparency->setEnabled(false);
    }
    cmdApply->setEnabled(true);
}

void frmOptions::sldTransparency_Scroll() {
    setOpacityPercent(float(sldTransparency->value()));
    cmdApply->setEnabled(true);
}

void frmOptions::chkLastUsedDir_Click() {
    cmdApply->setEnabled(true);
    if (chkLastUsedDir->isChecked()) {
        picFrame2->hide();
    } else {
        picFrame2->show();
        txtStartFolder->setText(sGetINI(mstrINIFile, QStringLiteral("Directories"),
                                        QStringLiteral("FileBrowser Start Dir"),
                                        QStringLiteral("C:\\")));
    }
}

void frmOptions::cmdFilename_Click() {
    frmChooseDir *box = DefaultInstance<frmChooseDir>::get();
    box->setParent(this, box->windowFlags());
    box->exec();
}

void frmOptions::applyChoices() {
    // The fields are only raised within one opening of the box.
    if (optMaximized->isChecked())
        mintStartUp = 2;
    if (optRightHand->isChecked()) {
        mintFBLeft = HandedLeft;
    } else {
        mintDILeft = HandedLeft;
        mintAILeft = HandedLeft;
    }
    SaveSettings();
}

void frmOptions::cmdApply_Click() {
    applyChoices();
    cmdApply->setEnabled(false);
}

void frmOptions::cmdOK_Click() {
    applyChoices();
    close();
}

void frmOptions::cmdCancel_Click() {
    close();
}

void frmOptions::SaveSettings() {
    const auto write = [this](const char *section, const char *key, QString value) {
        writeINI(mstrINIFile, QLatin1String(section), QLatin1String(key), value);
    };
    write("General", "Transparency Enabled", QString::number(chkUseTransp->isChecked() ? 1 : 0));
    write("General", "Transparency Value", QString::number(sldTransparency->value()));
    write("General", "Left Hand", CStr(optLeftHand->isChecked()));
    write("General", "Right Hand", CStr(optRightHand->isChecked()));
    write("General", "FileBrowser Left", QString::number(qint16(mintFBLeft)));
    write("General", "DataImage Left", QString::number(qint16(mintDILeft)));
    write("General", "AudioImage Left", QString::number(qint16(mintAILeft)));
    write("General", "Maximized", CStr(optMaximized->isChecked()));
    write("General", "Manual", CStr(optManual->isChecked()));
    write("General", "Maximized Value", QString::number(qint16(mintStartUp)));
    if (chkLastUsedDir->isChecked()) {
        write("Directories", "Last Used Directory", QStringLiteral("True"));
    } else {
        write("Directories", "Last Used Directory", QStringLiteral("False"));
        write("Directories", "FileBrowser Start Dir", txtStartFolder->text());
    }
    write("Directories", "Use Last Directory",
          QString::number(chkLastUsedDir->isChecked() ? 1 : 0));
}
