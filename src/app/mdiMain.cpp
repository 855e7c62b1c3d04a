#include "mdiMain.h"
#include "CompilationWindow.h"
#include "FormRegistry.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/notify/CDNotify.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/DriveScanner.h"
#include "frmFiles.h"
#include "frmHelp.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "modIniFunc.h"
#include "widgets/AnimationControl.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/LineControl.h"
#include "widgets/MessageBoxService.h"
#include "widgets/PictureList.h"
#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

struct MenuRow {
    const char *menu;
    const char *caption;
    const char *key;
    QKeySequence shortcut;
    const char *picture = nullptr; // where the picture key is not the command key
    bool separatorAfter = false;
};

// The menu in the order shown. Keys are what the dispatch compares.
const QList<MenuRow> &menuRows() {
    static const QList<MenuRow> rows = {
        {"FILE", "&New...", "NEW", QKeySequence(Qt::CTRL | Qt::Key_N)},
        {"FILE", "New &File Browser...", "ADDFILES", QKeySequence(Qt::CTRL | Qt::Key_B)},
        {"FILE", "&Close", "CLOSE", {}},
        {"FILE", "Close &All", "CLOSEALL", {}, nullptr, true},
        {"FILE", "&Save Image as ISO File...", "SAVEASISO", QKeySequence(Qt::Key_F12), nullptr,
         true},
        {"FILE", "&Label...", "LABEL", {}},
        {"FILE", "Write &Disc...", "WRITEDISC", {}, "BURN"},
        {"FILE", "&Write Disc from ISO File...", "WRITEISO", {}, "WRITEFROMISO"},
        {"FILE", "Write Disc from CUE Sheet...", "CUESHEET", {}},
        {"FILE", "CD Copy...", "CDCOPY", {}, nullptr, true},
        {"FILE", "Preferences...", "PREFERENCES", {}, nullptr, true},
        {"FILE", "Print Pre&view...", "PRINTPREVIEW", {}, "PREVIEW"},
        {"FILE", "&Print...", "PRINT", QKeySequence(Qt::CTRL | Qt::Key_P)},
        {"FILE", "Prin&ter Setup...", "PRINTERSETTINGS", {}},
        {"FILE", "Pa&ge Setup...", "PAGESETTINGS", {}, "PAGESETUP", true},
        {"FILE", "&Exit", "EXIT", QKeySequence(Qt::CTRL | Qt::Key_X)},
        {"EDIT", "&Refresh", "REFRESH", {}, nullptr, true},
        {"EDIT", "&Move Up", "MOVEUP", {}},
        {"EDIT", "&Create New Folder", "CREATENEWFOLDER", {}, "FOLDERADD"},
        {"EDIT", "&Browse for Folder...", "BROWSEFOLDER", QKeySequence(Qt::CTRL | Qt::Key_F),
         nullptr, true},
        {"EDIT", "Select &All", "SELECTALL", QKeySequence(Qt::CTRL | Qt::Key_A)},
        {"EDIT", "Select &None", "SELECTNONE", {}},
        {"AUDIODISC", "&Clear All Tracks", "CLEARAUDIOTRACKS", {}, "CLEARALL"},
        {"AUDIODISC", "&Remove Audio Track", "REMOVEAUDIOTRACK", {}, "REMOVE"},
        {"DATAIMAGE", "&Clear All Items", "CLEARALLITEMS", {}, "CLEARALL", true},
        {"DATAIMAGE", "&Remove Directory", "REMOVEDIRECTORY", {}, "DELFOLDER"},
        {"DATAIMAGE", "Rename &Directory", "RENAMEDIRECTORY", {}, nullptr, true},
        {"DATAIMAGE", "R&emove File", "REMOVEFILE", {}, "DELFILE"},
        {"DATAIMAGE", "Rename &File", "RENAMEFILE", {}, nullptr, true},
        {"DATAIMAGE", "Date &Modified", "DATEMODIFIED", {}},
        {"DATAIMAGE", "Date &Added", "DATEADDED", {}},
        {"VIEW", "View &Toolbar", "VIEWTOOLBAR", {}, "SHOWTOOLBAR"},
        {"VIEW", "View Statusbar", "VIEWSTATUSBAR", {}, "SHOWSTATUSBAR"},
        {"VIEW", "View Size Indicator", "VIEWMETER", {}},
        {"CDRECORDER", "Close &Tray", "CLOSETRAY", QKeySequence(Qt::CTRL | Qt::Key_T)},
        {"CDRECORDER", "&Eject CD", "EJECTCD", QKeySequence(Qt::CTRL | Qt::Key_E), nullptr, true},
        {"CDRECORDER", "CD Recorder Information...", "CDRECINFO",
         QKeySequence(Qt::CTRL | Qt::Key_R)},
        {"CDRECORDER", "Disc &Information...", "DISCINFORMATION",
         QKeySequence(Qt::CTRL | Qt::Key_I)},
        {"CDRECORDER", "Session Check...", "SESSION", {}, nullptr, true},
        {"CDRECORDER", "Erase &Disc...", "ERASEDISC", {}, "ERASE"},
        {"CDRECORDER", "I&mport Previous Session", "IMPPRESES", {}},
        {"EXTRAS", "Rip &Audio CD...", "RIPCD", {}, "RIPAUDIO"},
        {"EXTRAS", "&Normalize Wave...", "NORMALIZE", {}},
        {"EXTRAS", "&Encode MP3 Files...", "DECODEMP3", {}, "ENCODE", true},
        {"EXTRAS", "Rip &Data CD...", "RIPDATA", {}},
        {"WINDOWS", "Tile Vertically", "TILEV", {}},
        {"WINDOWS", "Tile Horizontally", "TILEH", {}},
        {"WINDOWS", "Cascade", "CASCADE", {}},
        {"WINDOWS", "Arrange Icons", "ARRANGEICONS", {}, nullptr, true},
        {"HELP", "&Supported Drives...", "SUPPORTEDDRIVES", {}},
        {"HELP", "&License Agreement...", "LICENSE", {}, nullptr, true},
        {"HELP", "&Internet Update...", "INTERNETUPDATE", {}},
        {"HELP", "Tessaly On The Web...", "WEB", {}, nullptr, true},
        {"HELP", "&Help...", "HELP", {}},
        {"HELP", "&Contents...", "CONTENTS", {}},
        {"HELP", "&Index...", "INDEX", {}, nullptr, true},
        {"HELP", "&About Tessaly Pro...", "ABOUT", {}},
    };
    return rows;
}

struct ToolRow {
    const char *key;
    const char *toolTip;
};

// The toolbar's groups, parted by separators.
const QList<QList<ToolRow>> &toolGroups() {
    static const QList<QList<ToolRow>> groups = {
        {{"NEW", "New..."}, {"ADDFILES", "New File Browser..."}},
        {{"CLOSE", "Close"}, {"CLOSEALL", "Close All"}},
        {{"SAVEASISO", "Save Image as ISO File..."},
         {"WRITEDISC", "Write Disc..."},
         {"WRITEISO", "Write Disc from ISO File..."}},
        {{"PRINTPREVIEW", "Print Preview..."}, {"PRINT", "Print..."}},
        {{"EXIT", "Exit"}},
        {{"CLOSETRAY", "Close Tray"},
         {"EJECTCD", "Eject CD"},
         {"CDRECINFO", "CD Recorder Information..."},
         {"DISCINFORMATION", "Disc Information..."}},
        {{"ERASEDISC", "Erase Disc..."}, {"IMPPRESES", "Import Previous Session"}},
        {{"RIPAUDIO", "Rip Audio CD..."}, {"NORMALIZE", "Normalize WAVE File..."}},
    };
    return groups;
}

const QHash<QString, QString> &toolPictures() {
    static const QHash<QString, QString> pictures = {
        {QStringLiteral("WRITEDISC"), QStringLiteral("BURN")},
        {QStringLiteral("WRITEISO"), QStringLiteral("WRITEFROMISO")},
        {QStringLiteral("PRINTPREVIEW"), QStringLiteral("PREVIEW")},
        {QStringLiteral("ERASEDISC"), QStringLiteral("ERASE")},
    };
    return pictures;
}

} // namespace

mdiMain::mdiMain() {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("mdiMain"));
    setWindowIcon(PictureList::icon(QStringLiteral("BURN")));
    frmHelp::installHelpKey(this, SetHelpStrings(1));
    Tessaly = new CDWriterPro(this);
    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setObjectName(QStringLiteral("mdiArea"));
    auto *centre = new QWidget(this);
    auto *column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(buildTopStrip());
    column->addWidget(m_mdiArea, 1);
    column->addWidget(buildBottomStrip());
    setCentralWidget(centre);
    buildMenu();
    buildToolbar();
    buildStatusBar();
    buildCommandTable();
    // Window switching as desktop users know it.
    const QList<std::pair<QKeySequence, bool>> switches = {
        {QKeySequence(Qt::CTRL | Qt::Key_Tab), true},
        {QKeySequence(Qt::CTRL | Qt::Key_F6), true},
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), false},
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F6), false}};
    for (const auto &[keys, next] : switches) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, m_mdiArea,
                next ? &QMdiArea::activateNextSubWindow : &QMdiArea::activatePreviousSubWindow);
    }
    // No smaller than the recorder strip needs, or its labels draw over each other.
    setMinimumSize(asxTop->minimumSizeHint().width(), Twips::toPixels(6000));
    mnuPopUpTV = new QMenu(this);
    mnuPopUpLV = new QMenu(this);
    mnuPopUpAudio = new QMenu(this);
    connectImageEvents();
    // The disc type box starts a data compilation's image through the registry as well.
    FormRegistry::add(QStringLiteral("ResetImage"), [frame = QPointer<mdiMain>(this)](QWidget *) {
        if (frame)
            frame->ResetImage();
    });
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this, [](QMdiSubWindow *window) {
        // Each child keeps its own Form_Activate; the frame only tells it.
        QWidget *child = window ? window->widget() : nullptr;
        if (auto *browser = qobject_cast<frmFiles *>(child))
            browser->Form_Activate();
        else if (auto *compilation = dynamic_cast<CompilationWindow *>(child))
            compilation->Form_Activate();
    });
    ErrorTrap::run("MDIForm_Load", "mdiMain", [this] { MDIForm_Load(); });
}

mdiMain::~mdiMain() {
    // Windows opened from now on have no frame to be made with.
    FormRegistry::setContext({});
}

void mdiMain::buildMenu() {
    SmartMenu = new KeyedMenu(menuBar(), this);
    const QList<std::pair<const char *, const char *>> menus = {
        {"FILE", "&File"},
        {"EDIT", "&Edit"},
        {"AUDIODISC", "&Audio-Disc"},
        {"DATAIMAGE", "Data-&Image"},
        {"VIEW", "&View"},
        {"CDRECORDER", "&CD Recorder"},
        {"EXTRAS", "E&xtras"},
        {"WINDOWS", "&Windows"},
        {"HELP", "&Help"},
    };
    for (const auto &[key, caption] : menus)
        SmartMenu->addMenu(QLatin1String(key), QString::fromLatin1(caption));
    for (const MenuRow &row : menuRows()) {
        SmartMenu->addItem(QLatin1String(row.menu), QLatin1String(row.key),
                           QString::fromLatin1(row.caption), row.shortcut,
                           row.picture ? QString::fromLatin1(row.picture) : QString());
        if (row.separatorAfter)
            SmartMenu->addSeparator(QLatin1String(row.menu));
    }
    // What the stored definition says of the items at start.
    for (const char *key : {"CUESHEET", "CDCOPY", "SESSION", "RIPDATA"})
        SmartMenu->Item(QLatin1String(key))->setEnabled(false);
    for (const char *key : {"DATEMODIFIED", "VIEWTOOLBAR", "VIEWSTATUSBAR", "VIEWMETER"})
        SmartMenu->Item(QLatin1String(key))->setChecked(true);
    SmartMenu->Item(QStringLiteral("DATEADDED"))->action()->setCheckable(true);
    connect(SmartMenu, &KeyedMenu::Click, this, [this](KeyedItem *item) {
        ErrorTrap::run("smartMenu_Click", "mdiMain", [&] { smartMenu_Click(item); });
    });
    connect(SmartMenu, &KeyedMenu::BeforeDropDown, this, [this](KeyedItem *item, bool &Cancel) {
        ErrorTrap::run("smartmenu_BeforeDropDown", "mdiMain",
                       [&] { smartmenu_BeforeDropDown(item, Cancel); });
    });
}

void mdiMain::buildToolbar() {
    auto *bar = addToolBar(QStringLiteral("Toolbar"));
    bar->setObjectName(QStringLiteral("SmartToolbar"));
    bar->setMovable(false);
    bar->setIconSize(QSize(24, 24));
    SmartToolbar = new KeyedToolbar(bar, this);
    bool first = true;
    for (const QList<ToolRow> &group : toolGroups()) {
        if (!first)
            SmartToolbar->addSeparator();
        first = false;
        for (const ToolRow &row : group) {
            const QString key = QLatin1String(row.key);
            SmartToolbar->addItem(key, QString::fromLatin1(row.toolTip), toolPictures().value(key));
        }
    }
    connect(SmartToolbar, &KeyedToolbar::Click, this, [this](KeyedItem *item) {
        ErrorTrap::run("smartToolbar_Click", "mdiMain", [&] { smartToolbar_Click(item); });
    });
}

void mdiMain::buildStatusBar() {
    smartStatusBar = new KeyedStatusBar(statusBar(), this);
    using Kind = KeyedPanel::Kind;
    smartStatusBar->addPanel(QStringLiteral("STATUSIMG"), Kind::Text, {}, 400);
    smartStatusBar->addPanel(QStringLiteral("DATA"), Kind::Text,
                             QStringLiteral(" Data Image Size:"), 3600);
    smartStatusBar->addPanel(QStringLiteral("CACHING"), Kind::Text, {}, 2400);
    smartStatusBar->addPanel(QStringLiteral("DIRECTORIES"), Kind::Text,
                             QStringLiteral(" Directories: "), 1800);
    smartStatusBar->addPanel(QStringLiteral("FILES"), Kind::Text, QStringLiteral(" Files: "));
    smartStatusBar->addPanel(QStringLiteral("NUM"), Kind::Num);
    smartStatusBar->addPanel(QStringLiteral("CAPS"), Kind::Caps)->setEnabled(false);
    smartStatusBar->addPanel(QStringLiteral("DATE"), Kind::Date);
    smartStatusBar->addPanel(QStringLiteral("TIME"), Kind::Time);
}

QWidget *mdiMain::buildTopStrip() {
    asxTop = new QWidget(this);
    asxTop->setObjectName(QStringLiteral("asxTop"));
    auto *row = new QHBoxLayout(asxTop);
    row->setContentsMargins(6, 3, 6, 3);
    lblRecorder = new QLabel(QStringLiteral("Drive:"), asxTop);
    cboDevices = new QComboBox(asxTop);
    cboDevices->setMinimumWidth(Twips::toPixels(4200));
    lblWriteSpeed = new QLabel(QStringLiteral("Speed:"), asxTop);
    cboWriteSpeed = new QComboBox(asxTop);
    cboWriteSpeed->setMinimumWidth(Twips::toPixels(1900));
    lblVolIdentifier = new QLabel(QStringLiteral("Volume Identifier:"), asxTop);
    txtVolIdentifier = new QLineEdit(asxTop);
    txtVolIdentifier->setMaximumWidth(Twips::toPixels(3000));
    for (QWidget *w :
         {static_cast<QWidget *>(lblRecorder), static_cast<QWidget *>(cboDevices),
          static_cast<QWidget *>(lblWriteSpeed), static_cast<QWidget *>(cboWriteSpeed),
          static_cast<QWidget *>(lblVolIdentifier), static_cast<QWidget *>(txtVolIdentifier)})
        row->addWidget(w);
    row->addStretch(1);
    connect(cboDevices, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0)
            ErrorTrap::run("cboDevices_Click", "mdiMain", [this] { cboDevices_Click(); });
    });
    connect(cboWriteSpeed, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0)
            ErrorTrap::run("cboWriteSpeed_Click", "mdiMain", [this] { cboWriteSpeed_Click(); });
    });
    return asxTop;
}

QWidget *mdiMain::buildBottomStrip() {
    asxBottom = new QWidget(this);
    asxBottom->setObjectName(QStringLiteral("asxBottom"));
    auto *row = new QHBoxLayout(asxBottom);
    row->setContentsMargins(4, 2, 4, 2);
    aniRuler = new AnimationControl(asxBottom);
    aniRuler->setFixedSize(Twips::toPixels(720), Twips::toPixels(720));
    aniRuler->hide();
    row->addWidget(aniRuler);
    // The ruler itself: positions are twips from its left edge. At ten twips to the megabyte
    // a DVD's free-space line lies far to the right, so the ruler scrolls sideways.
    m_rulerScroll = new QScrollArea(asxBottom);
    m_rulerScroll->setFrameShape(QFrame::NoFrame);
    m_rulerScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_rulerScroll->setWidgetResizable(false);
    auto *ruler = new QWidget;
    ruler->setObjectName(QStringLiteral("ruler"));
    ruler->resize(Twips::toPixels(10600), Twips::toPixels(720));
    m_rulerScroll->setWidget(ruler);
    m_rulerScroll->setMinimumHeight(Twips::toPixels(720) +
                                    m_rulerScroll->horizontalScrollBar()->sizeHint().height());
    m_ruler = ruler;
    row->addWidget(m_rulerScroll, 1);
    linTopSize = new LineControl(ruler);
    linTopSize->setPoints(100, 60, 10100, 60);
    for (int i = 0; i <= 10; ++i) {
        const int x = 100 + i * 1000;
        auto *tick = new LineControl(ruler);
        tick->setPoints(x, 60, x, i % 5 == 0 ? 240 : 180);
        linSize.append(tick);
        auto *label = new QLabel(ruler);
        label->setText(QStringLiteral("%1MB").arg(i * 100));
        label->adjustSize();
        label->move(Twips::toPixels(x) + 2, Twips::toPixels(90));
        lblSize.append(label);
    }
    prbSize = new QProgressBar(ruler);
    prbSize->setTextVisible(false);
    prbSize->setRange(0, 1);
    prbSize->setValue(0);
    prbSize->setGeometry(Twips::toPixels(100), Twips::toPixels(330), 0, Twips::toPixels(300));
    linCDSize = new LineControl(ruler);
    linCDSize->setBorderColor(QColor(200, 0, 0));
    linCDSize->setBorderWidth(2);
    linCDSize->setPoints(100, 0, 100, 700);
    linCDSize->hide();
    return asxBottom;
}

void mdiMain::MDIForm_Load() {
    // A run may leave the Image Recorder out, to see the frame as a machine without recorders.
    DriveScanner::setImageRecorderEnabled(
        !App::hasArgument(QStringLiteral("--no-image-recorder")) &&
        CBool(sGetINI(gstrINIFile, QStringLiteral("Recorders"), QStringLiteral("Image Recorder"),
                      QStringLiteral("True"))));
    if (!Tessaly->InitializeDrives(false))
        MsgBox(QStringLiteral("Drives Cannot be initialized...Contact support!"), vbOKOnly,
               App::ProductName());
    CDNotify1 = new CDNotify(Tessaly, this);
    FormRegistry::setContext({Tessaly, CDNotify1, this});
    connect(CDNotify1, &CDNotify::Arrival, this, [this](const QString &Drive) {
        ErrorTrap::run("CDNotify1_Arrival", "mdiMain", [&] { CDNotify1_Arrival(Drive); });
    });
    connect(CDNotify1, &CDNotify::RemoveComplete, this, [this](const QString &Drive) {
        ErrorTrap::run("CDNotify1_RemoveComplete", "mdiMain",
                       [&] { CDNotify1_RemoveComplete(Drive); });
    });
    connectWriteEvents();
    mblnTrackWriteFirst = true;
    mblnCacheFirst = true;
    setWindowTitle(App::ProductName() + QStringLiteral(" - [FreeWare] Version ") +
                   App::versionText());
    move(0, 0);
    const QString resolution = ScreenResolution();
    if (resolution == QLatin1String("640 X 480") || resolution == QLatin1String("800 X 600") ||
        resolution == QLatin1String("848 X 480")) {
        setWindowState(Qt::WindowMaximized);
    } else {
        const qint16 state = CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                                          QStringLiteral("Maximized Value"), QStringLiteral("0")));
        setWindowState(state == 2   ? Qt::WindowMaximized
                       : state == 1 ? Qt::WindowMinimized
                                    : Qt::WindowNoState);
        resize(Twips::toPixels(15400), Twips::toPixels(11100));
    }
    for (const char *key : {"EDIT", "DATAIMAGE", "AUDIODISC"}) {
        SmartMenu->Item(QLatin1String(key))->setShown(0);
        SmartMenu->Item(QLatin1String(key))->setEnabled(false);
    }
    setMenuState({QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL"), QStringLiteral("SAVEASISO"),
                  QStringLiteral("LABEL"), QStringLiteral("WRITEDISC"),
                  QStringLiteral("PRINTPREVIEW"), QStringLiteral("PRINT"),
                  QStringLiteral("PRINTERSETTINGS"), QStringLiteral("PAGESETTINGS")},
                 false);
    setToolbarState({QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL"),
                     QStringLiteral("SAVEASISO"), QStringLiteral("WRITEDISC"),
                     QStringLiteral("PRINTPREVIEW"), QStringLiteral("PRINT")},
                    false);
    txtVolIdentifier->setEnabled(false);
    LoadDriveCombo();
    if (glngDriveIndex < 0) {
        NoCDRDrives();
    } else if (Tessaly->MediaType() == CDWriterPro::MediaNone) {
        smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("NOMEDIA"));
        ShowAnimation(QStringLiteral("insertcd"));
    } else if (Tessaly->LastSessionStatus() == CDWriterPro::SessionClosed) {
        smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("NOMEDIA"));
        ShowAnimation(QStringLiteral("removecd"));
    } else {
        smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("MEDIA"));
        ShowAnimation(QStringLiteral("cdspin"));
        setCDSizeLine();
        if (Tessaly->LastSessionStatus() == CDWriterPro::SessionIncomplete)
            reportOpenSession();
    }
    ToolMenuAddFiles();
}

void mdiMain::NoCDRDrives() {
    m_hasRecorders = false;
    for (const char *key :
         {"EDIT", "AUDIODISC", "DATAIMAGE", "VIEW", "CDRECORDER", "EXTRAS", "WINDOWS"}) {
        SmartMenu->Item(QLatin1String(key))->setShown(0);
        SmartMenu->Item(QLatin1String(key))->setEnabled(false);
    }
    SmartMenu->Item(QStringLiteral("NEW"))->setEnabled(true);
    setMenuState({QStringLiteral("ADDFILES"), QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL"),
                  QStringLiteral("SAVEASISO"), QStringLiteral("WRITEDISC"),
                  QStringLiteral("WRITEISO"), QStringLiteral("PRINTPREVIEW"),
                  QStringLiteral("PRINT"), QStringLiteral("PRINTERSETTINGS"),
                  QStringLiteral("PAGESETTINGS")},
                 false);
    SmartToolbar->setEnabled(false);
    cboDevices->setEnabled(false);
    cboWriteSpeed->setEnabled(false);
    txtVolIdentifier->setEnabled(false);
    linCDSize->hide();
}

void mdiMain::setMenuState(const QStringList &keys, bool enabled) {
    for (const QString &key : keys)
        SmartMenu->Item(key)->setEnabled(enabled);
}

void mdiMain::setToolbarState(const QStringList &keys, bool enabled) {
    for (const QString &key : keys)
        SmartToolbar->Item(key)->setEnabled(enabled);
}

void mdiMain::closeEvent(QCloseEvent *event) {
    int Cancel = 0;
    ErrorTrap::run("MDIForm_QueryUnload", "mdiMain", [&] { MDIForm_QueryUnload(Cancel, 0); });
    if (Cancel != 0) {
        event->ignore();
        return;
    }
    // The children unload with the frame, each by its own unload handler.
    // A child that refuses (a compilation during a write) keeps the frame as well.
    const QList<QMdiSubWindow *> children = m_mdiArea->subWindowList(QMdiArea::CreationOrder);
    for (QMdiSubWindow *child : children) {
        if (!child->close()) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

void mdiMain::MDIForm_QueryUnload(int &Cancel, int UnloadMode) {
    Q_UNUSED(UnloadMode);
    if (gblnCloseWindows)
        return;
    if (MsgBox(QStringLiteral("Tessaly Pro will shut down, really want to quit?"),
               vbYesNo | vbQuestion, App::ProductName() + QStringLiteral(" - Message")) == vbNo)
        Cancel = 1;
}
