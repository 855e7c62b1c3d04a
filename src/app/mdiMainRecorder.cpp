// The frame's recorder strip and size ruler: the drive and speed lists, the media state and
// the free space line.
#include "CompilationWindow.h"
#include "FormRegistry.h"
#include "WriteSpeedList.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "engine/writer/CDWriterPro.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "widgets/AnimationControl.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/LineControl.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

void mdiMain::LoadDriveCombo() {
    cboDevices->clear();
    glngCurrentDrive = -1;
    for (qint32 i = 0; i < Tessaly->DriveCount(); ++i) {
        if (Tessaly->DriveIsRecorder(i))
            cboDevices->addItem(Tessaly->DriveLetter(i) + QStringLiteral(": ") +
                                    Tessaly->DriveVendor(i) + QStringLiteral(" ") +
                                    Tessaly->DriveProduct(i),
                                i);
    }
    if (cboDevices->count() > 0) {
        cboDevices->setCurrentIndex(0);
    } else {
        MsgBox(QStringLiteral("There are no compatible CDR drives reported.\nSome older CDR "
                              "drives are not currently supported."),
               vbInformation, App::ProductName() + QStringLiteral(" - Information"));
        glngDriveIndex = -1;
    }
}

void mdiMain::cboDevices_Click() {
    glngDriveIndex = cboDevices->currentData().toInt();
    if (Tessaly->SelectDrive(glngDriveIndex))
        glngCurrentDrive = glngDriveIndex;
    else
        glngCurrentDrive = -1;
    LoadWriteSpeedCombo();
}

void mdiMain::LoadWriteSpeedCombo() {
    const qint32 DiscType = Tessaly->MediaType();
    const qint32 lngMaxWriteSpeedKBS = Tessaly->MaxWriteSpeed();
    // Filling the list must not select each entry in turn: the first is chosen at the end.
    {
        const QSignalBlocker quiet(cboWriteSpeed);
        cboWriteSpeed->clear();
        for (const WriteSpeedList::Entry &entry :
             WriteSpeedList::entries(DiscType, lngMaxWriteSpeedKBS))
            cboWriteSpeed->addItem(entry.text, entry.itemData);
        cboWriteSpeed->setCurrentIndex(-1);
    }
    if (cboWriteSpeed->count() > 0)
        cboWriteSpeed->setCurrentIndex(0);
}

void mdiMain::cboWriteSpeed_Click() {
    if (cboWriteSpeed->currentText() != QLatin1String("Default")) {
        Tessaly->SetWriteSpeed(cboWriteSpeed->currentData().toInt());
        mstrSpeed = cboWriteSpeed->currentText();
    }
}

void mdiMain::setCDSizeLine() {
    linCDSize->show();
    const double x = (GetFreeSpace(Tessaly, 3) - 5) * 10 + 100;
    const int twips = int(qBound(-1e9, x, 1e9));
    linCDSize->setX(twips, twips);
    followRuler();
}

void mdiMain::followRuler() {
    const int line = linCDSize->isVisible() ? Twips::toPixels(linCDSize->X1()) : 0;
    const int barEnd = prbSize->x() + prbSize->width();
    const int far = qMax(line, barEnd);
    m_ruler->resize(qMax(Twips::toPixels(10600), far + Twips::toPixels(600)), m_ruler->height());
    const int margin = Twips::toPixels(300);
    // The nearer one last, so that it wins when both do not fit.
    m_rulerScroll->ensureVisible(far, 0, margin, 0);
    if (line > 0)
        m_rulerScroll->ensureVisible(qMin(line, barEnd), 0, margin, 0);
}

std::pair<int, int> mdiMain::rulerInView() const {
    const int left = m_rulerScroll->horizontalScrollBar()->value();
    return {Twips::fromPixels(left), Twips::fromPixels(left + m_rulerScroll->viewport()->width())};
}

void mdiMain::ShowAnimation(const QString &name) {
    const QString file = App::resourcePath(QStringLiteral("Dat/") + name + QStringLiteral(".gif"));
    if (file.isEmpty() || !QFileInfo::exists(file))
        return;
    if (aniRuler->Open(file)) {
        aniRuler->setVisible(true);
        aniRuler->setAutoPlay(true);
    }
}

namespace {
void refreshCompilation(mdiMain *frame) {
    if (gblnDisctypeIsData == 1) {
        if (CompilationWindow *audio = CompilationWindow::current())
            audio->Reload();
    } else if (gblnDisctypeIsData == 0) {
        frame->RecalcImageSize();
    }
}
} // namespace

void mdiMain::CDNotify1_Arrival(const QString &Drive) {
    Q_UNUSED(Drive);
    if (Tessaly->LastSessionStatus() != CDWriterPro::SessionClosed) {
        LoadWriteSpeedCombo();
        smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("MEDIA"));
        if (!gblnIsTestWrite)
            CheckSession();
        setCDSizeLine();
        ShowAnimation(QStringLiteral("cdspin"));
        if (Tessaly->LastSessionStatus() == CDWriterPro::SessionIncomplete)
            reportOpenSession();
        refreshCompilation(this);
    } else {
        smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("NOMEDIA"));
        ShowAnimation(QStringLiteral("removecd"));
    }
}

void mdiMain::CDNotify1_RemoveComplete(const QString &Drive) {
    Q_UNUSED(Drive);
    LoadWriteSpeedCombo();
    linCDSize->hide();
    smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("NOMEDIA"));
    SmartMenu->Item(QStringLiteral("SESSION"))->setEnabled(false);
    ShowAnimation(QStringLiteral("insertcd"));
    refreshCompilation(this);
}

void mdiMain::CheckSession() {
    // A minimised frame opens no box over the desktop.
    if (isMinimized())
        return;
    if (Tessaly->DiscStatus() == CDWriterPro::DiscOpen &&
        Tessaly->LastSessionStatus() == CDWriterPro::SessionEmpty && Tessaly->SessionCount() > 1) {
        SmartMenu->Item(QStringLiteral("SESSION"))->setEnabled(true);
        // Opened on its own when a disc arrives, not by a command: nothing to say without it.
        FormRegistry::open(QStringLiteral("frmSessionCheck"));
    }
}

void mdiMain::reportOpenSession() {
    SmartMenu->Item(QStringLiteral("SESSION"))->setEnabled(true);
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" The disc's last session is open"));
    MsgBox(OpenSessionMessage(), vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
}
