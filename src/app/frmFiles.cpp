#include "frmFiles.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modIniFunc.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileView.h"
#include "widgets/FolderView.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/PictureList.h"
#include "widgets/SplitterBar.h"
#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QDir>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMouseEvent>

namespace {
constexpr int SplitterTwips = 60;
constexpr int FolderTopTwips = 0;

void setFrameItems(bool enabled, bool withEdit) {
    mdiMain *frame = DefaultInstance<mdiMain>::peek();
    if (!frame)
        return;
    for (const char *key : {"CLOSE", "CLOSEALL"}) {
        frame->SmartMenu->Item(QLatin1String(key))->setEnabled(enabled);
        frame->SmartToolbar->Item(QLatin1String(key))->setEnabled(enabled);
    }
    if (withEdit && (!enabled || frame->hasRecorders())) {
        frame->SmartMenu->Item(QStringLiteral("EDIT"))->setEnabled(enabled);
        frame->SmartMenu->Item(QStringLiteral("EDIT"))->setShown(enabled ? 1 : 0);
    }
}
} // namespace

frmFiles::frmFiles() {
    setObjectName(QStringLiteral("frmFiles"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(PictureList::icon(QStringLiteral("BROWSEFOLDER")));
    FolderViewAdd = new FolderView(this);
    FileViewAdd = new FileView(this);
    const SplitterBar splitter = SplitterBar::create(this, this);
    imgSplitter = splitter.handle;
    picSplitter = splitter.bar;
    m_where = new QLabel(this);
    m_where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    imgSplitter->setGeometry(Twips::toPixels(2800), 0, Twips::toPixels(SplitterTwips), 10);
    connect(FolderViewAdd, &FolderView::OnAfterNodeSelect, this, [this](const QString &path) {
        ErrorTrap::run("FolderViewAdd_OnAfterNodeSelect", "frmFiles",
                       [&] { FolderViewAdd_OnAfterNodeSelect(path); });
    });
    connect(FileViewAdd, &FileView::OnAfterSelectionChange, this,
            [this](const QString &path, int state) {
                ErrorTrap::run("FileViewAdd_OnAfterSelectionChange", "frmFiles",
                               [&] { FileViewAdd_OnAfterSelectionChange(path, state); });
            });
    connect(FileViewAdd, &FileView::PathChanged, this,
            [this](const QString &path) { m_where->setText(QDir::toNativeSeparators(path)); });
}

QWidget *frmFiles::window() const {
    return parentWidget() ? parentWidget() : const_cast<frmFiles *>(this);
}

int frmFiles::twipsLeft(const QWidget *w) const {
    return Twips::fromPixels(w->x());
}

int frmFiles::innerWidth() const {
    return Twips::fromPixels(width());
}

int frmFiles::innerHeight() const {
    return Twips::fromPixels(height());
}

QString frmFiles::localFolder(const QString &folder) {
    const QString f = folder.trimmed();
    if (f.compare(QLatin1String("C:\\"), Qt::CaseInsensitive) == 0 ||
        f.compare(QLatin1String("C:"), Qt::CaseInsensitive) == 0)
        return QDir::homePath();
    return folder;
}

void frmFiles::Form_Load() {
    mblnFirstLoad = true;
    mblnUseLastDir = CBool(sGetINI(gstrINIFile, QStringLiteral("Directories"),
                                   QStringLiteral("Last Used Directory"), QStringLiteral("True")));
    const qint16 left = CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                                     QStringLiteral("FileBrowser Left"), QStringLiteral("7650")));
    window()->setGeometry(Twips::toPixels(left), 0, Twips::toPixels(7650), Twips::toPixels(8500));
    setFrameItems(true, false);
    FolderViewAdd->bindFileView(FileViewAdd);
    const QString key = mblnUseLastDir ? QStringLiteral("FileBrowser Last Dir")
                                       : QStringLiteral("FileBrowser Start Dir");
    FileViewAdd->setPath(localFolder(
        sGetINI(gstrINIFile, QStringLiteral("Directories"), key, QStringLiteral("C:\\"))));
    FileViewAdd->setColumnHeader(0, QStringLiteral("Name"), 115);
    FileViewAdd->setColumnHeader(1, QStringLiteral("Size"), 75);
}

void frmFiles::Form_Activate() {
    ErrorTrap::run("Form_Activate", "frmFiles", [this] {
        setFrameItems(true, true);
        gintActiveFileBrowser = CInt(m_tag);
        FileViewAdd->Update();
        if (mblnFirstLoad) {
            mstrCaptionLoad = windowTitle();
            setWindowTitle(mstrCaptionLoad + QStringLiteral("  ") + FileViewAdd->Path());
            const qint16 left =
                CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                             QStringLiteral("FileBrowser Left"), QStringLiteral("7650")));
            window()->move(Twips::toPixels(left), window()->y());
            mblnFirstLoad = false;
        }
    });
}

void frmFiles::FolderViewAdd_OnAfterNodeSelect(const QString &NodePath) {
    setWindowTitle(mstrCaptionLoad + QStringLiteral("  ") + NodePath);
}

void frmFiles::FileViewAdd_OnAfterSelectionChange(const QString &ItemPath, int SelectionState) {
    if (SelectionState & FileView::SelectedFlag)
        setWindowTitle(mstrCaptionLoad + QStringLiteral("  ") + ItemPath);
}

void frmFiles::Form_Unload() {
    QString folder = FileViewAdd->Path();
    writeINI(gstrINIFile, QStringLiteral("Directories"), QStringLiteral("FileBrowser Last Dir"),
             folder);
    setFrameItems(false, true);
    if (mdiMain *frame = DefaultInstance<mdiMain>::peek())
        frame->SetChildNumbers(CInt(m_tag));
}

void frmFiles::closeEvent(QCloseEvent *event) {
    ErrorTrap::run("Form_Unload", "frmFiles", [this] { Form_Unload(); });
    event->accept();
}

void frmFiles::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    ErrorTrap::run("Form_Resize", "frmFiles", [this] { Form_Resize(); });
}

void frmFiles::Form_Resize() {
    if (m_resizing)
        return;
    m_resizing = true;
    QWidget *w = window();
    if (w != this && Twips::fromPixels(w->width()) < 3000)
        w->resize(Twips::toPixels(3000), w->height());
    m_resizing = false;
    SizeControls(twipsLeft(imgSplitter));
}

void frmFiles::SizeControls(double x) {
    if (x < 1500)
        x = 1500;
    if (x > innerWidth() - 1500)
        x = innerWidth() - 1500;
    const int height = innerHeight() - 500;
    FolderViewAdd->setGeometry(0, Twips::toPixels(FolderTopTwips), Twips::toPixels(int(x)),
                               Twips::toPixels(qMax(height, 0)));
    imgSplitter->move(Twips::toPixels(int(x)), imgSplitter->y());
    const int fileLeft = Twips::fromPixels(imgSplitter->x()) + SplitterTwips;
    const int fileWidth =
        innerWidth() - (Twips::fromPixels(FolderViewAdd->width()) + SplitterTwips) - 110;
    FileViewAdd->setGeometry(Twips::toPixels(fileLeft), FolderViewAdd->y(),
                             Twips::toPixels(qMax(fileWidth, 0)), FolderViewAdd->height());
    imgSplitter->setGeometry(imgSplitter->x(), FolderViewAdd->y(), imgSplitter->width(),
                             FolderViewAdd->height());
    // The folder the list shows, in the strip under the two panes.
    m_where->setGeometry(Twips::toPixels(60), FolderViewAdd->geometry().bottom() + 2,
                         qMax(width() - Twips::toPixels(120), 0), Twips::toPixels(440));
}

void frmFiles::imgSplitter_MouseDown(int, int, double, double) {
    picSplitter->setGeometry(imgSplitter->x(), imgSplitter->y(), imgSplitter->width(),
                             qMax(imgSplitter->height() - Twips::toPixels(20), 0));
    picSplitter->raise();
    picSplitter->show();
    mblnMoving = true;
}

void frmFiles::imgSplitter_MouseMove(int, int, double X, double) {
    if (!mblnMoving)
        return;
    const double sglPos = X + twipsLeft(imgSplitter);
    double left = sglPos;
    if (sglPos < 500)
        left = 500;
    else if (sglPos > innerWidth() - 500)
        left = innerWidth() - 500;
    picSplitter->move(Twips::toPixels(int(left)), picSplitter->y());
}

void frmFiles::imgSplitter_MouseUp(int, int, double, double) {
    SizeControls(twipsLeft(picSplitter));
    picSplitter->hide();
    mblnMoving = false;
}

bool frmFiles::eventFilter(QObject *watched, QEvent *event) {
    if (watched != imgSplitter)
        return QWidget::eventFilter(watched, event);
    const auto type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseMove &&
        type != QEvent::MouseButtonRelease)
        return QWidget::eventFilter(watched, event);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    const double X = Twips::fromPixels(int(mouse->position().x()));
    const double Y = Twips::fromPixels(int(mouse->position().y()));
    const int button = int(mouse->buttons() | mouse->button());
    const int shift = int(mouse->modifiers() >> 25);
    if (type == QEvent::MouseButtonPress)
        ErrorTrap::run("imgSplitter_MouseDown", "frmFiles",
                       [&] { imgSplitter_MouseDown(button, shift, X, Y); });
    else if (type == QEvent::MouseMove)
        ErrorTrap::run("imgSplitter_MouseMove", "frmFiles",
                       [&] { imgSplitter_MouseMove(button, shift, X, Y); });
    else
        ErrorTrap::run("imgSplitter_MouseUp", "frmFiles",
                       [&] { imgSplitter_MouseUp(button, shift, X, Y); });
    return true;
}

void frmFiles::SelectFiles(bool blnSelect) {
    const int count = FileViewAdd->ItemCount();
    for (int i = 0; i <= count - 1; ++i)
        FileViewAdd->setItemSelected(i, blnSelect);
}
