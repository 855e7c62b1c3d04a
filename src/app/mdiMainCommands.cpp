// The frame's command table: every key of the menu and the toolbar reaches its handler here.
#include "CompilationWindow.h"
#include "FormRegistry.h"
#include "base/App.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"
#include "frmChooseDiscType.h"
#include "frmFiles.h"
#include "frmHelp.h"
#include "frmOptions.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileView.h"
#include "widgets/FolderView.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/MessageBoxService.h"

#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QProcess>
#include <QScopeGuard>
#include <QStyle>
#include <utility>

void mdiMain::buildCommandTable() {
    auto window = [this](const char *name) { return [this, name] { openForm(name); }; };
    m_commands = {
        {QStringLiteral("NEW"), [this] { ToolMenuNew(); }},
        {QStringLiteral("CLOSE"), [this] { ToolMenuClose(); }},
        {QStringLiteral("ADDFILES"), [this] { ToolMenuAddFiles(); }},
        {QStringLiteral("CLOSEALL"), [this] { ToolMenuCloseAll(); }},
        {QStringLiteral("SAVEASISO"), [this] { ToolMenuSaveAsIso(); }},
        {QStringLiteral("LABEL"), window("frmLabels")},
        {QStringLiteral("WRITEDISC"), [this] { ToolMenuWriteDisc(); }},
        {QStringLiteral("WRITEISO"), [this] { ToolMenuWriteIso(); }},
        {QStringLiteral("CUESHEET"), window("frmBurnBin")},
        {QStringLiteral("CDCOPY"), window("frmCD2CD")},
        {QStringLiteral("PREFERENCES"), [this] { ToolMenuPreferences(); }},
        {QStringLiteral("PRINT"), [this] { ToolMenuPrint(); }},
        {QStringLiteral("PRINTPREVIEW"), [this] { ToolMenuPrintPreview(); }},
        {QStringLiteral("PRINTERSETTINGS"), [this] { ToolMenuPrinterSettings(); }},
        {QStringLiteral("PAGESETTINGS"), [this] { ToolMenuPageSettings(); }},
        {QStringLiteral("EXIT"), [this] { ToolMenuExit(); }},
        {QStringLiteral("REFRESH"), [this] { ToolMenuRefresh(); }},
        {QStringLiteral("MOVEUP"), [this] { ToolMenuMoveUp(); }},
        {QStringLiteral("CREATENEWFOLDER"), [this] { ToolMenuCreateFolder(); }},
        {QStringLiteral("BROWSEFOLDER"), [this] { ToolMenuBrowseFolder(); }},
        {QStringLiteral("SELECTALL"), [this] { ToolMenuSelectAll(true); }},
        {QStringLiteral("SELECTNONE"), [this] { ToolMenuSelectAll(false); }},
        {QStringLiteral("CLEARAUDIOTRACKS"), [this] { ToolMenuClearAudio(); }},
        {QStringLiteral("REMOVEAUDIOTRACK"), [this] { ToolMenuRemoveTrack(); }},
        {QStringLiteral("RIPCD"), [this] { ToolMenuRipAudio(); }},
        {QStringLiteral("RIPAUDIO"), [this] { ToolMenuRipAudio(); }},
        {QStringLiteral("NORMALIZE"), [this] { ToolMenuNormalize(); }},
        {QStringLiteral("DECODEMP3"), window("frmDecode")},
        {QStringLiteral("RIPDATA"), [this] { ToolMenuRipData(); }},
        {QStringLiteral("CLEARALLITEMS"), [this] { ToolMenuClearAllItems(); }},
        {QStringLiteral("REMOVEDIRECTORY"), [this] { ToolMenuRemoveDirectory(); }},
        {QStringLiteral("RENAMEDIRECTORY"), [this] { ToolMenuRenameDirectory(); }},
        {QStringLiteral("REMOVEFILE"), [this] { ToolMenuRemoveFile(); }},
        {QStringLiteral("RENAMEFILE"), [this] { ToolMenuRenameFile(); }},
        {QStringLiteral("DATEMODIFIED"), [this] { ToolMenuFileDateModified(); }},
        {QStringLiteral("DATEADDED"), [this] { ToolMenuFileDateAdded(); }},
        {QStringLiteral("VIEWTOOLBAR"), [this] { ToolMenuViewToolbar(); }},
        {QStringLiteral("VIEWSTATUSBAR"), [this] { ToolMenuViewStatusbar(); }},
        {QStringLiteral("VIEWMETER"), [this] { ToolMenuViewMeter(); }},
        {QStringLiteral("EJECTCD"), [this] { ToolMenuEjectCd(); }},
        {QStringLiteral("CLOSETRAY"), [this] { ToolMenuCloseTray(); }},
        {QStringLiteral("CDRECINFO"), [this] { ToolMenuRecorderInfo(); }},
        {QStringLiteral("DISCINFORMATION"), [this] { ToolMenuDiscInfo(); }},
        {QStringLiteral("SESSION"), window("frmSessionCheck")},
        {QStringLiteral("ERASEDISC"), [this] { ToolMenuEraseDisc(); }},
        {QStringLiteral("IMPPRESES"), [this] { ToolMenuImportPrevious(); }},
        {QStringLiteral("TILEV"), [this] { ToolMenuTileVertical(); }},
        {QStringLiteral("TILEH"), [this] { ToolMenuTileHorizental(); }},
        {QStringLiteral("CASCADE"), [this] { ToolMenuCascade(); }},
        {QStringLiteral("ARRANGEICONS"), [this] { ToolMenuArrangeIcons(); }},
        {QStringLiteral("SUPPORTEDDRIVES"), [this] { ToolMenuSupportedDrives(); }},
        {QStringLiteral("LICENSE"), [this] { ToolMenuLicense(); }},
        {QStringLiteral("INTERNETUPDATE"), [this] { ToolMenuInternetUpdate(); }},
        {QStringLiteral("WEB"), [this] { ToolMenuOnWeb(); }},
        {QStringLiteral("HELP"), [this] { ToolMenuHelp(); }},
        {QStringLiteral("CONTENTS"), [this] { ToolMenuHelpContents(); }},
        {QStringLiteral("INDEX"), [this] { ToolMenuHelpIndex(); }},
        {QStringLiteral("ABOUT"), [this] { ToolMenuAbout(); }},
    };
}

void mdiMain::runCommand(const QString &key) {
    if (key >= QLatin1String("MDICHILD_0") && key <= QLatin1String("MDICHILD_X")) {
        const KeyedItem *item = SmartMenu->contains(key) ? SmartMenu->Item(key) : nullptr;
        if (!item)
            return;
        for (QMdiSubWindow *child : openForms()) {
            if (quintptr(child) == item->Tag.value<quintptr>()) {
                m_mdiArea->setActiveSubWindow(child);
                child->setFocus();
                return;
            }
        }
        return;
    }
    if (const auto it = m_commands.constFind(key); it != m_commands.constEnd()) {
        // Commands run from inside others' events: the outer key comes back afterwards.
        const QString outer = std::exchange(m_runningKey, key);
        const auto restore = qScopeGuard([this, outer] { m_runningKey = outer; });
        (*it)();
    }
}

void mdiMain::smartMenu_Click(KeyedItem *Item) {
    runCommand(Item->Key());
}

void mdiMain::smartToolbar_Click(KeyedItem *Item) {
    runCommand(Item->Key());
}

void mdiMain::smartmenu_BeforeDropDown(KeyedItem *Item, bool &Cancel) {
    Q_UNUSED(Cancel);
    if (Item->Key() == QLatin1String("WINDOWS"))
        UpdateWindowList();
}

void mdiMain::openForm(const QString &name) {
    if (FormRegistry::open(name))
        return;
    // A command whose window is not built yet says so instead of doing nothing.
    QString what =
        SmartMenu->contains(m_runningKey) ? SmartMenu->Item(m_runningKey)->Caption() : QString();
    what.remove(u'&');
    while (what.endsWith(u'.'))
        what.chop(1);
    if (what.isEmpty())
        what = QStringLiteral("This command");
    MsgBox(what + QStringLiteral(" is not available in this version of Tessaly yet."),
           vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}

QList<QMdiSubWindow *> mdiMain::openForms() const {
    return m_mdiArea->subWindowList(QMdiArea::CreationOrder);
}

QMdiSubWindow *mdiMain::activeChild() const {
    return m_mdiArea->activeSubWindow();
}

void mdiMain::UpdateWindowList() {
    for (const QString &key : SmartMenu->itemKeys(QStringLiteral("WINDOWS"))) {
        if (key.startsWith(QLatin1String("MDICHILD_")))
            SmartMenu->removeItem(key);
    }
    int counter = 0;
    for (QMdiSubWindow *child : openForms()) {
        ++counter;
        KeyedItem *item = SmartMenu->addItem(QStringLiteral("WINDOWS"),
                                             QStringLiteral("MDICHILD_") + QString::number(counter),
                                             child->windowTitle(), {}, QStringLiteral("-"));
        item->ItemType = 202;
        item->Tag = QVariant::fromValue(quintptr(child));
        item->setChecked(child == activeChild());
    }
}

void mdiMain::ToolMenuNew() {
    // Modal over the frame without a nested loop: the box's own buttons carry on.
    auto *box = new frmChooseDiscType(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void mdiMain::ToolMenuClose() {
    if (QMdiSubWindow *child = activeChild())
        child->close();
}

void mdiMain::ToolMenuAddFiles() {
    auto open = [this](qint64 i) {
        auto *browser = new frmFiles();
        frmF(i - 1) = browser;
        QMdiSubWindow *window = m_mdiArea->addSubWindow(browser);
        window->setAttribute(Qt::WA_DeleteOnClose);
        browser->Form_Load();
        browser->setTag(QString::number(i));
        browser->setWindowTitle(QStringLiteral("File Browser [%1]").arg(i));
        window->show();
        gblnFormExist(i - 1) = true;
    };
    for (qint64 i = 1; i <= qint64(NumberForms) + 1; ++i) {
        if (!gblnFormExist(i - 1)) {
            open(i);
            return;
        }
    }
    NumberForms += 1;
    open(NumberForms);
}

void mdiMain::SetChildNumbers(qint16 ClosingForm) {
    gblnFormExist(qint64(ClosingForm) - 1) = false;
}

void mdiMain::ToolMenuCloseAll() {
    const QList<QMdiSubWindow *> children = openForms();
    for (auto it = children.crbegin(); it != children.crend(); ++it) {
        QWidget *form = (*it)->widget();
        if (qobject_cast<frmFiles *>(form) || dynamic_cast<CompilationWindow *>(form))
            (*it)->close();
    }
    for (int i = 1; i <= 100; ++i)
        gblnFormExist(i - 1) = true;
    NumberForms = 0;
}

void mdiMain::ToolMenuSaveAsIso() {
    openForm(QStringLiteral("ToolMenuSaveAsIso"));
}

void mdiMain::ToolMenuWriteDisc() {
    openForm(QStringLiteral("frmBurn"));
}

void mdiMain::ToolMenuWriteIso() {
    openForm(QStringLiteral("ToolMenuWriteIso"));
}

void mdiMain::ToolMenuPreferences() {
    frmOptions::showModal(this);
}

void mdiMain::ToolMenuPrint() {
    openForm(QStringLiteral("ToolMenuPrint"));
}

void mdiMain::ToolMenuPrintPreview() {
    openForm(QStringLiteral("frmPreView"));
}

void mdiMain::ToolMenuPrinterSettings() {
    openForm(QStringLiteral("ToolMenuPrinterSettings"));
}

void mdiMain::ToolMenuPageSettings() {
    openForm(QStringLiteral("ToolMenuPageSettings"));
}

void mdiMain::ToolMenuExit() {
    close();
}

frmFiles *mdiMain::activeFileBrowser() {
    frmFiles *browser = frmF(qint64(gintActiveFileBrowser) - 1);
    if (!browser)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    return browser;
}

void mdiMain::ToolMenuRefresh() {
    activeFileBrowser()->FolderViewAdd->Refresh();
}

void mdiMain::ToolMenuMoveUp() {
    activeFileBrowser()->FileViewAdd->MoveUp();
}

void mdiMain::ToolMenuCreateFolder() {
    activeFileBrowser()->FileViewAdd->CreateFolder();
}

void mdiMain::ToolMenuBrowseFolder() {
    activeFileBrowser()->FileViewAdd->BrowseForFolder();
}

void mdiMain::ToolMenuSelectAll(bool blnSelected) {
    activeFileBrowser()->SelectFiles(blnSelected);
}

void mdiMain::ToolMenuClearAudio() {
    openForm(QStringLiteral("ToolMenuClearAudio"));
}

void mdiMain::ToolMenuRemoveTrack() {
    openForm(QStringLiteral("ToolMenuRemoveTrack"));
}

void mdiMain::ToolMenuRipAudio() {
    openForm(QStringLiteral("frmRipper"));
}

void mdiMain::ToolMenuNormalize() {
    openForm(QStringLiteral("frmNormalize"));
}

void mdiMain::ToolMenuRipData() {
    openForm(QStringLiteral("frmIsoripper"));
}

void mdiMain::ToolMenuClearAllItems() {
    Tessaly->ClearISOImage();
}

namespace {

QString information() {
    return App::ProductName() + QStringLiteral(" - Information");
}

void removeImageItem(bool directory) {
    CompilationWindow *compilation = CompilationWindow::current();
    if (!compilation || !compilation->removeSelected(directory))
        MsgBox(QStringLiteral("No Item Selected."), vbInformation, information());
}

void renameImageItem(bool directory) {
    CompilationWindow *compilation = CompilationWindow::current();
    if (!compilation || !compilation->renameSelected(directory))
        MsgBox(QStringLiteral("No Item Selected."), vbInformation, information());
}

} // namespace

void mdiMain::ToolMenuRemoveDirectory() {
    removeImageItem(true);
}

void mdiMain::ToolMenuRenameDirectory() {
    renameImageItem(true);
}

void mdiMain::ToolMenuRemoveFile() {
    removeImageItem(false);
}

void mdiMain::ToolMenuRenameFile() {
    renameImageItem(false);
}

void mdiMain::ToolMenuFileDateModified() {
    Tessaly->setUseFileModifiedDate(true);
    SmartMenu->Item(QStringLiteral("DATEMODIFIED"))->setChecked(true);
    SmartMenu->Item(QStringLiteral("DATEADDED"))->setChecked(false);
}

void mdiMain::ToolMenuFileDateAdded() {
    Tessaly->setUseFileModifiedDate(false);
    SmartMenu->Item(QStringLiteral("DATEMODIFIED"))->setChecked(false);
    SmartMenu->Item(QStringLiteral("DATEADDED"))->setChecked(true);
}

void mdiMain::ToolMenuViewToolbar() {
    KeyedItem *item = SmartMenu->Item(QStringLiteral("VIEWTOOLBAR"));
    SmartToolbar->setVisible(!item->Checked());
    item->setChecked(!item->Checked());
}

void mdiMain::ToolMenuViewStatusbar() {
    KeyedItem *item = SmartMenu->Item(QStringLiteral("VIEWSTATUSBAR"));
    smartStatusBar->setVisible(!item->Checked());
    item->setChecked(!item->Checked());
}

void mdiMain::ToolMenuViewMeter() {
    KeyedItem *item = SmartMenu->Item(QStringLiteral("VIEWMETER"));
    asxBottom->setVisible(!item->Checked());
    item->setChecked(!item->Checked());
}

void mdiMain::ToolMenuEjectCd() {
    Tessaly->MoveTray(false);
}

void mdiMain::ToolMenuCloseTray() {
    // The Image Recorder's tray is a folder: a user who ejected a disc there (after a test
    // write, or to add a session later) can put the same disc back instead of a new blank.
    if (Tessaly->isVirtualDrive(glngCurrentDrive) &&
        Tessaly->MediaType() == CDWriterPro::MediaNone) {
        const QString last = ImageRecorder::lastEjected();
        if (!last.isEmpty()) {
            const int answer = MsgBox(
                QStringLiteral(
                    "Put the disc ejected last (%1) back into the Image Recorder?\r\n\r\n"
                    "Yes puts it back, No loads a new blank disc.")
                    .arg(QFileInfo(last).completeBaseName()),
                vbYesNoCancel | vbQuestion, App::ProductName() + QStringLiteral(" - Close Tray"));
            if (answer == vbCancel)
                return;
            if (answer == vbYes && !ImageRecorder::putBack(last))
                MsgBox(QStringLiteral("The disc could not be put back; the tray stays empty."),
                       vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
            if (answer == vbYes && Tessaly->MediaType() == CDWriterPro::MediaNone)
                return;
        }
    }
    Tessaly->MoveTray(true);
}

void mdiMain::ToolMenuRecorderInfo() {
    openForm(QStringLiteral("frmRecorderInfo"));
}

void mdiMain::ToolMenuDiscInfo() {
    openForm(QStringLiteral("frmDiscInfo"));
}

void mdiMain::ToolMenuEraseDisc() {
    openForm(QStringLiteral("frmErase"));
}

void mdiMain::ToolMenuImportPrevious() {
    openForm(QStringLiteral("ToolMenuImportPrevious"));
}

void mdiMain::tileChildren(bool sideBySide) {
    QList<QMdiSubWindow *> shown;
    for (QMdiSubWindow *child : openForms()) {
        if (!child->isMinimized() && child->isVisible())
            shown.append(child);
    }
    if (shown.isEmpty())
        return;
    const QRect area = m_mdiArea->viewport()->rect();
    const int n = int(shown.size());
    for (int i = 0; i < n; ++i) {
        shown[i]->showNormal();
        if (sideBySide)
            shown[i]->setGeometry(i * (area.width() / n), 0, area.width() / n, area.height());
        else
            shown[i]->setGeometry(0, i * (area.height() / n), area.width(), area.height() / n);
    }
}

void mdiMain::ToolMenuTileVertical() {
    tileChildren(true);
}

void mdiMain::ToolMenuTileHorizental() {
    tileChildren(false);
}

void mdiMain::ToolMenuCascade() {
    // Each child keeps a useful size, two thirds of the area, one title bar below the last.
    const QRect area = m_mdiArea->viewport()->rect();
    const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    int i = 0;
    for (QMdiSubWindow *child : openForms()) {
        if (child->isMinimized() || !child->isVisible())
            continue;
        child->showNormal();
        child->setGeometry(i * step, i * step, area.width() * 2 / 3, area.height() * 2 / 3);
        child->raise();
        ++i;
    }
}

void mdiMain::ToolMenuArrangeIcons() {
    // The minimised children in a row along the bottom edge.
    const QRect area = m_mdiArea->viewport()->rect();
    int x = 0;
    for (QMdiSubWindow *child : openForms()) {
        if (!child->isMinimized())
            continue;
        const QSize size = child->size();
        child->move(x, area.height() - size.height());
        x += size.width();
    }
}

void mdiMain::ToolMenuSupportedDrives() {
    openForm(QStringLiteral("frmSupDrives"));
}

void mdiMain::ToolMenuLicense() {
    openForm(QStringLiteral("frmLicense"));
}

void mdiMain::ToolMenuInternetUpdate() {
    const QString updater = App::pathOf(QStringLiteral("/Update.exe"));
    if (!QFileInfo::exists(updater) || !QProcess::startDetached(updater, {}))
        MsgBox(QStringLiteral("Internet Update is not available in this version of Tessaly yet."),
               vbInformation, information());
}

void mdiMain::ToolMenuOnWeb() {
    openForm(QStringLiteral("frmWeb"));
}

void mdiMain::ToolMenuHelp() {
    ShowHelpContextID(1, 1);
}

void mdiMain::ToolMenuHelpContents() {
    ShowHelpContents(1);
}

void mdiMain::ToolMenuHelpIndex() {
    ShowHelpIndex(1);
}

void mdiMain::ToolMenuAbout() {
    openForm(QStringLiteral("frmAbout"));
}

void mdiMain::ShowHelpContents(int intHelpFile) {
    frmHelp::showHelp(SetHelpStrings(intHelpFile), frmHelp::Contents, 0, this);
}

void mdiMain::ShowHelpIndex(int intHelpFile) {
    frmHelp::showHelp(SetHelpStrings(intHelpFile), frmHelp::Index, 0, this);
}

void mdiMain::ShowHelpContextID(int intHelpFile, qint32 lngContextID) {
    frmHelp::showHelp(SetHelpStrings(intHelpFile), frmHelp::Context, lngContextID, this);
}

void mdiMain::EnableForm(bool blnEnable) {
    SmartMenu->setEnabled(blnEnable);
    SmartToolbar->setEnabled(blnEnable);
    cboDevices->setEnabled(blnEnable);
    cboWriteSpeed->setEnabled(blnEnable);
    if (gblnDisctypeIsData == 0)
        txtVolIdentifier->setEnabled(blnEnable);
    gblnUnloadOk = blnEnable;
    if (blnEnable)
        unsetCursor();
    else
        setCursor(Qt::WaitCursor);
    QCoreApplication::processEvents();
}
