#include "frmData.h"
#include "IsoNameRules.h"
#include "app/modDeclarations.h"
#include "app/modIniFunc.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/MessageBoxService.h"
#include "widgets/SplitterBar.h"
#include "widgets/Twips.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QProgressBar>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <memory>

namespace {

constexpr int SplitterTwips = 60;
// A node whose children are kept in order.
constexpr int SortedRole = Qt::UserRole + 1;

QString information() {
    return App::ProductName() + QStringLiteral(" - Information");
}

// Label editing with the window's two hooks: before, which may refuse to open the editor, and
// after, which gets the new text once the editor has closed, since a rename rebuilds the rows.
class LabelEditDelegate : public QStyledItemDelegate {
public:
    using Before = std::function<bool(const QModelIndex &)>; // true refuses
    using After = std::function<void(const QString &key, const QString &text)>;

    LabelEditDelegate(QObject *parent, Before before, After after)
        : QStyledItemDelegate(parent)
        , m_before(std::move(before))
        , m_after(std::move(after)) {}

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override {
        // Only the name is a name: the size and date cells show the source, they can't rename.
        if (index.column() != 0 || m_before(index))
            return nullptr;
        return QStyledItemDelegate::createEditor(parent, option, index);
    }

    void setModelData(QWidget *editor, QAbstractItemModel *,
                      const QModelIndex &index) const override {
        auto *line = qobject_cast<QLineEdit *>(editor);
        if (!line)
            return;
        const QString text = line->text();
        // Left as it was: no rename.
        if (text == index.data(Qt::DisplayRole).toString())
            return;
        const QString key = index.siblingAtColumn(0).data(Qt::UserRole).toString();
        QMetaObject::invokeMethod(
            parent(), [after = m_after, key, text] { after(key, text); }, Qt::QueuedConnection);
    }

private:
    Before m_before;
    After m_after;
};

// A row of the file list: names sort as a person reads them, whatever their case.
class FileRow : public QTreeWidgetItem {
public:
    bool operator<(const QTreeWidgetItem &other) const override {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        const int order = QString::compare(text(column), other.text(column), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : text(column) < other.text(column);
    }
};

QTreeWidgetItem *selectedItemOf(QTreeWidget *view) {
    const QList<QTreeWidgetItem *> selected = view->selectedItems();
    return selected.isEmpty() ? view->currentItem() : selected.first();
}

QTreeWidgetItem *findIn(QTreeWidget *view, const QString &key) {
    for (QTreeWidgetItemIterator it(view); *it; ++it) {
        if (frmData::keyOf(*it) == key)
            return *it;
    }
    return nullptr;
}

} // namespace

frmData::frmData(const WindowContext &context)
    : m_context(context) {
    setObjectName(QStringLiteral("frmData"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(picture(QStringLiteral("CD")));

    tvwDirectories = new QTreeWidget(this);
    tvwDirectories->setObjectName(QStringLiteral("tvwDirectories"));
    tvwDirectories->setHeaderHidden(true);
    tvwDirectories->setColumnCount(1);
    // Deep or long names scroll sideways rather than being cut short.
    tvwDirectories->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    tvwDirectories->header()->setStretchLastSection(false);
    tvwDirectories->setSelectionMode(QAbstractItemView::SingleSelection);
    tvwDirectories->setEditTriggers(QAbstractItemView::EditKeyPressed |
                                    QAbstractItemView::SelectedClicked);

    lvwImageFiles = new QTreeWidget(this);
    lvwImageFiles->setObjectName(QStringLiteral("lvwImageFiles"));
    lvwImageFiles->setColumnCount(3);
    lvwImageFiles->setHeaderLabels(
        {QStringLiteral("Name"), QStringLiteral("Size"), QStringLiteral("Date")});
    lvwImageFiles->setRootIsDecorated(false);
    lvwImageFiles->setUniformRowHeights(true);
    lvwImageFiles->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwImageFiles->setEditTriggers(QAbstractItemView::EditKeyPressed |
                                   QAbstractItemView::SelectedClicked);
    // Room for the date beside the name and size in a window of the default width.
    lvwImageFiles->header()->resizeSection(0, Twips::toPixels(1900));
    lvwImageFiles->header()->resizeSection(1, Twips::toPixels(1000));

    for (QTreeWidget *view : {tvwDirectories, lvwImageFiles}) {
        view->setAcceptDrops(true);
        view->viewport()->setAcceptDrops(true);
        view->viewport()->installEventFilter(this);
        view->installEventFilter(this);
        view->setContextMenuPolicy(Qt::NoContextMenu);
    }

    tvwDirectories->setItemDelegate(new LabelEditDelegate(
        this,
        [this](const QModelIndex &index) {
            int Cancel = 0;
            ErrorTrap::run("tvwDirectories_BeforeLabelEdit", "frmData", [&] {
                tvwDirectories->setCurrentItem(tvwDirectories->itemFromIndex(index));
                tvwDirectories_BeforeLabelEdit(Cancel);
            });
            return Cancel != 0;
        },
        [this](const QString &key, const QString &text) {
            ErrorTrap::run("tvwDirectories_AfterLabelEdit", "frmData", [&] {
                int Cancel = 0;
                QTreeWidgetItem *item = node(key);
                if (!item)
                    return;
                tvwDirectories->setCurrentItem(item);
                tvwDirectories_AfterLabelEdit(Cancel, text);
            });
        }));
    lvwImageFiles->setItemDelegate(new LabelEditDelegate(
        this, [](const QModelIndex &) { return false; },
        [this](const QString &key, const QString &text) {
            ErrorTrap::run("lvwImageFiles_AfterLabelEdit", "frmData", [&] {
                QTreeWidgetItem *row = findIn(lvwImageFiles, key);
                if (!row)
                    return;
                lvwImageFiles->setCurrentItem(row);
                int Cancel = 0;
                lvwImageFiles_AfterLabelEdit(Cancel, text);
            });
        }));

    connect(tvwDirectories, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) {
        ErrorTrap::run("tvwDirectories_NodeClick", "frmData",
                       [&] { tvwDirectories_NodeClick(item); });
    });
    connect(tvwDirectories, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
        // The keyboard and the right button move through the tree as a left click does; the
        // left click itself reloads through itemClicked.
        if (item && !(QApplication::mouseButtons() & Qt::LeftButton))
            ErrorTrap::run("tvwDirectories_NodeClick", "frmData",
                           [&] { tvwDirectories_NodeClick(item); });
    });
    connect(tvwDirectories, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem *item) {
        ErrorTrap::run("tvwDirectories_Expand", "frmData", [&] { tvwDirectories_Expand(item); });
    });

    const SplitterBar splitter = SplitterBar::create(this, this);
    imgSplitter = splitter.handle;
    picSplitter = splitter.bar;
    imgSplitter->setGeometry(Twips::toPixels(2500), 0, Twips::toPixels(SplitterTwips), 10);
    tvwDirectories->setGeometry(0, 0, Twips::toPixels(2500), Twips::toPixels(4000));
}

frmData::~frmData() {
    clearPopups();
}

QIcon frmData::picture(const QString &key) {
    static const QHash<QString, QStyle::StandardPixmap> pictures = {
        {QStringLiteral("CD"), QStyle::SP_DriveCDIcon},
        {QStringLiteral("CLOSEDFOLDER"), QStyle::SP_DirClosedIcon},
        {QStringLiteral("OPENFOLDER"), QStyle::SP_DirOpenIcon},
        {QStringLiteral("FILE"), QStyle::SP_FileIcon},
    };
    return QApplication::style()->standardIcon(pictures.value(key, QStyle::SP_FileIcon));
}

QString frmData::keyOf(const QTreeWidgetItem *item) {
    return item ? item->data(0, Qt::UserRole).toString() : QString();
}

QTreeWidgetItem *frmData::selectedNode() const {
    const QList<QTreeWidgetItem *> selected = tvwDirectories->selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

// --- The image's mirror -------------------------------------------------------------------

QTreeWidgetItem *frmData::node(const QString &key) const {
    return m_nodes.value(key);
}

QTreeWidgetItem *frmData::addNode(const QString &parentKey, const QString &key, const QString &text,
                                  const QString &image, const QString &selectedImage) {
    if (QTreeWidgetItem *known = m_nodes.value(key)) {
        known->setText(0, text);
        return known;
    }
    auto *item = new QTreeWidgetItem;
    item->setText(0, text);
    item->setData(0, Qt::UserRole, key);
    item->setData(0, AddedRole, ++m_nodesAdded);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    QIcon icon;
    icon.addPixmap(picture(image).pixmap(16), QIcon::Normal);
    icon.addPixmap(picture(selectedImage).pixmap(16), QIcon::Selected);
    item->setIcon(0, icon);
    QTreeWidgetItem *parent = parentKey.isEmpty() ? nullptr : m_nodes.value(parentKey);
    if (!parent && !parentKey.isEmpty())
        parent = m_nodes.value(QStringLiteral("\\"));
    if (!parent) {
        tvwDirectories->addTopLevelItem(item);
    } else if (parent->data(0, SortedRole).toBool()) {
        // Binary search for the place among the sorted children.
        int lo = 0;
        int hi = parent->childCount();
        while (lo < hi) {
            const int mid = (lo + hi) / 2;
            if (QString::compare(parent->child(mid)->text(0), text, Qt::CaseInsensitive) <= 0)
                lo = mid + 1;
            else
                hi = mid;
        }
        parent->insertChild(lo, item);
    } else {
        parent->addChild(item);
    }
    m_nodes.insert(key, item);
    return item;
}

void frmData::forgetNodes(QTreeWidgetItem *item) {
    m_nodes.remove(keyOf(item));
    for (int i = 0; i < item->childCount(); ++i)
        forgetNodes(item->child(i));
}

void frmData::removeNode(const QString &key) {
    QTreeWidgetItem *item = m_nodes.value(key);
    if (!item)
        return;
    // A removed selection leaves nothing selected rather than whatever node Qt moves to.
    bool selectedWithin = false;
    for (QTreeWidgetItem *at = selectedNode(); at; at = at->parent())
        selectedWithin = selectedWithin || at == item;
    if (selectedWithin)
        tvwDirectories->clearSelection();
    forgetNodes(item);
    delete item;
    if (selectedWithin)
        tvwDirectories->clearSelection();
}

void frmData::rekeyNode(const QString &oldKey, const QString &newKey) {
    QTreeWidgetItem *item = m_nodes.value(oldKey);
    if (!item)
        return;
    // The engine tells the renamed directory only; the nodes below it carry its path too.
    QList<QTreeWidgetItem *> pending{item};
    while (!pending.isEmpty()) {
        QTreeWidgetItem *at = pending.takeLast();
        const QString key = keyOf(at);
        const QString renamed = newKey + key.mid(oldKey.size());
        m_nodes.remove(key);
        m_nodes.insert(renamed, at);
        at->setData(0, Qt::UserRole, renamed);
        for (int i = 0; i < at->childCount(); ++i)
            pending.append(at->child(i));
    }
}

void frmData::addFileRow(const QString &key, const QString &text, const QString &size,
                         const QString &date) {
    auto *row = new FileRow;
    row->setText(0, text);
    row->setData(0, Qt::UserRole, key);
    row->setIcon(0, picture(QStringLiteral("FILE")));
    row->setText(1, size);
    row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    row->setText(2, date);
    row->setFlags(row->flags() | Qt::ItemIsEditable);
    lvwImageFiles->addTopLevelItem(row);
}

void frmData::clearImage() {
    lvwImageFiles->clear();
    tvwDirectories->clear();
    m_nodes.clear();
}

void frmData::setCaption(const QString &caption) {
    setWindowTitle(caption);
}

// --- Procedures ---------------------------------------------------------------------------

void frmData::LoadFileList(const QString &strCurrentDestPath) {
    setCursor(Qt::WaitCursor);
    // Sorted once when filled, not at each row.
    const bool sorted = lvwImageFiles->isSortingEnabled();
    lvwImageFiles->setSortingEnabled(false);
    lvwImageFiles->clear();
    engine()->ListISOItems(strCurrentDestPath);
    lvwImageFiles->setSortingEnabled(sorted);
    if (sorted)
        lvwImageFiles->sortByColumn(m_sortKey, Qt::AscendingOrder);
    unsetCursor();
}

void frmData::UpdateImage() {
    if (QTreeWidgetItem *selected = selectedNode()) {
        LoadFileList(keyOf(selected));
        selected->setExpanded(true);
    } else {
        LoadFileList(QStringLiteral("\\"));
        if (QTreeWidgetItem *root = node(QStringLiteral("\\")))
            root->setExpanded(true);
    }
    services()->RecalcImageSize();
}

void frmData::EnableForm(bool blnEnable) {
    tvwDirectories->setEnabled(blnEnable);
    lvwImageFiles->setEnabled(blnEnable);
    if (blnEnable)
        unsetCursor();
    else
        setCursor(Qt::WaitCursor);
    QCoreApplication::processEvents();
}

bool frmData::ValidateISONames(const QString &strNewName) {
    const QString reason =
        IsoNameRules::violation(strNewName, engine()->ISOFileSystem(), engine()->ISOLevel());
    if (reason.isEmpty())
        return true;
    MsgBox(reason, vbInformation, information());
    return false;
}

bool frmData::IsPathDirectory(const QString &strPath) {
    return QFileInfo(strPath).isDir();
}

QString frmData::GetLastPathItem(const QString &strPath) {
    const qsizetype at = std::max(strPath.lastIndexOf(u'\\'), strPath.lastIndexOf(u'/'));
    return strPath.mid(at + 1);
}

void frmData::OLEDragDrop(const QMimeData *Data) {
    if (!Data || !Data->hasUrls())
        return;
    QStringList files;
    for (const QUrl &url : Data->urls()) {
        if (!url.isLocalFile())
            continue;
        QString path = url.toLocalFile();
        // A folder dropped as "dir/" is named by its last part all the same.
        while (path.size() > 1 && path.endsWith(u'/'))
            path.chop(1);
        files.append(path);
    }
    if (files.isEmpty())
        return;
    if (m_dropping)
        return;
    setCursor(Qt::WaitCursor);
    // The views stay out of reach until the image is whole again: no rename, removal or
    // second drop lands in the middle of this one.
    m_dropping = true;
    tvwDirectories->setEnabled(false);
    lvwImageFiles->setEnabled(false);
    QString strDestPath;
    if (QTreeWidgetItem *selected = selectedNode(); selected && keyOf(selected) != u"\\")
        strDestPath = keyOf(selected);
    for (const QString &strFile : files) {
        const QString strName = GetLastPathItem(strFile);
        if (IsPathDirectory(strFile))
            engine()->AddISODirectory(strDestPath + u'\\' + strName,
                                      strFile + QStringLiteral("/*.*"));
        else
            engine()->AddISOFile(strDestPath + u'\\' + strName, strFile);
    }
    m_dropping = false;
    tvwDirectories->setEnabled(true);
    lvwImageFiles->setEnabled(true);
    UpdateImage();
    unsetCursor();
}

// --- The compilation as others see it ---------------------------------------------------

void frmData::Reload() {
    services()->RecalcImageSize();
}

void frmData::sessionImported() {
    if (tvwDirectories->topLevelItemCount() > 0)
        tvwDirectories->topLevelItem(0)->setExpanded(true);
    UpdateImage();
}

bool frmData::removeSelected(bool directory) {
    QTreeWidgetItem *item = selectedItemOf(directory ? tvwDirectories : lvwImageFiles);
    if (!item)
        return false;
    if (!engine()->RemoveISOItem(keyOf(item)))
        MsgBox(QStringLiteral("Item could not be removed."), vbInformation, information());
    UpdateImage();
    return true;
}

bool frmData::renameSelected(bool directory) {
    QTreeWidgetItem *item = selectedItemOf(directory ? tvwDirectories : lvwImageFiles);
    if (!item)
        return false;
    item->treeWidget()->editItem(item, 0);
    return true;
}

// --- Label editing ------------------------------------------------------------------------

void frmData::tvwDirectories_NodeClick(QTreeWidgetItem *Node) {
    LoadFileList(keyOf(Node));
}

void frmData::tvwDirectories_Expand(QTreeWidgetItem *Node) {
    Node->setData(0, SortedRole, true);
    Node->sortChildren(0, Qt::AscendingOrder);
}

void frmData::tvwDirectories_BeforeLabelEdit(int &Cancel) {
    if (keyOf(tvwDirectories->currentItem()) == u"\\") {
        MsgBox(QStringLiteral("Root directory can not be renamed."), vbInformation, information());
        Cancel = 1;
    }
}

void frmData::tvwDirectories_AfterLabelEdit(int &Cancel, const QString &NewString) {
    if (!ValidateISONames(NewString)) {
        Cancel = 1;
        return;
    }
    QTreeWidgetItem *item = tvwDirectories->currentItem();
    if (engine()->RenameISODirectory(keyOf(item), NewString))
        item->setText(0, NewString);
    else
        MsgBox(QStringLiteral("Directory could not be renamed."), vbInformation, information());
    UpdateImage();
}

void frmData::lvwImageFiles_AfterLabelEdit(int &Cancel, const QString &NewString) {
    if (!ValidateISONames(NewString)) {
        Cancel = 1;
        return;
    }
    if (!engine()->RenameISOFile(keyOf(lvwImageFiles->currentItem()), NewString))
        MsgBox(QStringLiteral("File could not be renamed."), vbInformation, information());
    UpdateImage();
}

// --- Drops and the splitter ---------------------------------------------------------------

bool frmData::dropOnView(QObject *watched, QEvent *event) {
    auto *drag = static_cast<QDropEvent *>(event);
    const QMimeData *data = drag->mimeData();
    // Only a list of files is taken, and not while another drop is being added.
    if (!data || !data->hasUrls() || m_dropping) {
        drag->ignore();
        return true;
    }
    drag->setDropAction(Qt::CopyAction);
    drag->accept();
    // Over the tree, the folder under the pointer is the one selected and shown: drops go to
    // the selected folder, so the user sees where this one will land.
    if (watched == tvwDirectories->viewport()) {
        QTreeWidgetItem *under = tvwDirectories->itemAt(drag->position().toPoint());
        if (under && under != selectedNode()) {
            {
                const QSignalBlocker quiet(tvwDirectories);
                tvwDirectories->setCurrentItem(under);
            }
            ErrorTrap::run("tvwDirectories_NodeClick", "frmData",
                           [&] { tvwDirectories_NodeClick(under); });
        }
    }
    if (event->type() != QEvent::Drop)
        return true;
    // Added once the drag has ended: a large tree lets events in while it is added, and the
    // view the drag came from may be closed meanwhile.
    auto dropped = std::make_shared<QMimeData>();
    dropped->setUrls(data->urls());
    QTimer::singleShot(0, this, [this, dropped] {
        ErrorTrap::run("OLEDragDrop", "frmData", [&] { OLEDragDrop(dropped.get()); });
    });
    return true;
}

bool frmData::eventFilter(QObject *watched, QEvent *event) {
    const auto type = event->type();
    // Delete takes the selected item out of the compilation, as the menu's remove does.
    if ((watched == tvwDirectories || watched == lvwImageFiles) && type == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Delete) {
        ErrorTrap::run("KeyDown", "frmData", [&] {
            services()->runCommand(watched == tvwDirectories ? QStringLiteral("REMOVEDIRECTORY")
                                                             : QStringLiteral("REMOVEFILE"));
        });
        return true;
    }
    if ((watched == tvwDirectories->viewport() || watched == lvwImageFiles->viewport()) &&
        (type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop))
        return dropOnView(watched, event);
    if ((watched == tvwDirectories->viewport() || watched == lvwImageFiles->viewport()) &&
        type == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
        const QPoint at = static_cast<QMouseEvent *>(event)->globalPosition().toPoint();
        ErrorTrap::run("MouseUp", "frmData", [&] {
            services()
                ->popupMenu(watched == tvwDirectories->viewport() ? FrameServices::Popup::Tree
                                                                  : FrameServices::Popup::List)
                ->popup(at);
        });
        return false;
    }
    if (watched != imgSplitter || (type != QEvent::MouseButtonPress && type != QEvent::MouseMove &&
                                   type != QEvent::MouseButtonRelease))
        return QWidget::eventFilter(watched, event);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    const double X = Twips::fromPixels(int(mouse->position().x()));
    const double Y = Twips::fromPixels(int(mouse->position().y()));
    if (type == QEvent::MouseButtonPress)
        ErrorTrap::run("imgSplitter_MouseDown", "frmData", [&] { imgSplitter_MouseDown(X, Y); });
    else if (type == QEvent::MouseMove)
        ErrorTrap::run("imgSplitter_MouseMove", "frmData", [&] { imgSplitter_MouseMove(X, Y); });
    else
        ErrorTrap::run("imgSplitter_MouseUp", "frmData", [&] { imgSplitter_MouseUp(X, Y); });
    return true;
}

int frmData::innerWidth() const {
    return Twips::fromPixels(width());
}

int frmData::innerHeight() const {
    return Twips::fromPixels(height());
}

void frmData::imgSplitter_MouseDown(double, double) {
    picSplitter->setGeometry(imgSplitter->x(), imgSplitter->y(), imgSplitter->width() / 2,
                             qMax(imgSplitter->height() - Twips::toPixels(20), 0));
    picSplitter->raise();
    picSplitter->show();
    mblnMoving = true;
}

void frmData::imgSplitter_MouseMove(double X, double) {
    if (!mblnMoving)
        return;
    const double left = qBound(500.0, Twips::fromPixels(imgSplitter->x()) + X,
                               qMax(500.0, double(innerWidth() - 500)));
    picSplitter->move(Twips::toPixels(int(left)), picSplitter->y());
}

void frmData::imgSplitter_MouseUp(double, double) {
    SizeControls(Twips::fromPixels(picSplitter->x()));
    picSplitter->hide();
    mblnMoving = false;
}

void frmData::SizeControls(double X) {
    if (X > innerWidth() - 1500)
        X = innerWidth() - 1500;
    if (X < 1500)
        X = 1500;
    const int height = qMax(innerHeight() - 500, 0);
    tvwDirectories->setGeometry(0, 0, Twips::toPixels(int(X)), Twips::toPixels(height));
    imgSplitter->setGeometry(Twips::toPixels(int(X)), 0, Twips::toPixels(SplitterTwips),
                             Twips::toPixels(height));
    const int listWidth =
        innerWidth() - (Twips::fromPixels(tvwDirectories->width()) + SplitterTwips) - 110;
    lvwImageFiles->setGeometry(Twips::toPixels(int(X) + SplitterTwips), 0,
                               Twips::toPixels(qMax(listWidth, 0)), Twips::toPixels(height));
}

void frmData::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    // A failure while laying out is passed over: the next resize lays out again.
    try {
        Form_Resize();
    } catch (...) {
    }
}

void frmData::Form_Resize() {
    SizeControls(Twips::fromPixels(imgSplitter->x()));
}
