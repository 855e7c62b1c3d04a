#include "FileView.h"
#include "FileBoxService.h"
#include "FileSystemModels.h"

#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QKeyEvent>
#include <QMimeData>

namespace {
// Column captions of this list over the shared model's own.
class HeaderProxy : public QIdentityProxyModel {
public:
    using QIdentityProxyModel::QIdentityProxyModel;
    QHash<int, QString> captions;
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (o == Qt::Horizontal && role == Qt::DisplayRole && captions.contains(section))
            return captions.value(section);
        return QIdentityProxyModel::headerData(section, o, role);
    }
};
} // namespace

FileView::FileView(QWidget *parent)
    : QTreeView(parent)
    , m_model(FileSystemModels::entries())
    , m_proxy(new HeaderProxy(this)) {
    m_proxy->setSourceModel(m_model);
    setModel(m_proxy);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setSortingEnabled(true);
    sortByColumn(0, Qt::AscendingOrder);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setDefaultDropAction(Qt::CopyAction);
    // A double click, and Enter (activated), open a folder.
    connect(this, &QTreeView::activated, this, [this](const QModelIndex &index) {
        const QModelIndex src = m_proxy->mapToSource(index);
        if (m_model->isDir(src))
            setPath(m_model->filePath(src));
    });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection &selected, const QItemSelection &deselected) {
                for (const QModelIndex &i : selected.indexes()) {
                    if (i.column() == 0)
                        emit OnAfterSelectionChange(m_model->filePath(m_proxy->mapToSource(i)),
                                                    SelectedFlag);
                }
                for (const QModelIndex &i : deselected.indexes()) {
                    if (i.column() == 0)
                        emit OnAfterSelectionChange(m_model->filePath(m_proxy->mapToSource(i)), 0);
                }
            });
}

void FileView::setPath(const QString &path) {
    m_path = path;
    const QModelIndex src = QFileInfo(path).isDir() ? m_model->index(path) : QModelIndex();
    if (src.isValid()) {
        m_model->fetchMore(src);
        setRootIndex(m_proxy->mapFromSource(src));
    } else {
        // No such folder: an index with no children keeps the list empty.
        setRootIndex(m_proxy->index(0, 1));
    }
    emit PathChanged(path);
}

void FileView::setColumnHeader(int column, const QString &text, int width) {
    static_cast<HeaderProxy *>(m_proxy)->captions.insert(column, text);
    emit m_proxy->headerDataChanged(Qt::Horizontal, column, column);
    setColumnWidth(column, qRound(width * logicalDpiX() / 72.0));
}

QString FileView::columnHeader(int column) const {
    return m_proxy->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
}

int FileView::ItemCount() const {
    return rootIndex().isValid() && rootIndex().column() == 0 ? m_proxy->rowCount(rootIndex()) : 0;
}

QModelIndex FileView::sourceIndex(int index) const {
    if (index < 0 || index >= ItemCount())
        return {};
    return m_proxy->mapToSource(m_proxy->index(index, 0, rootIndex()));
}

QString FileView::ItemPath(int index) const {
    const QModelIndex src = sourceIndex(index);
    return src.isValid() ? m_model->filePath(src) : QString();
}

bool FileView::ItemSelected(int index) const {
    if (index < 0 || index >= ItemCount())
        return false;
    return selectionModel()->isRowSelected(index, rootIndex());
}

void FileView::setItemSelected(int index, bool selected) {
    if (index < 0 || index >= ItemCount())
        return;
    const QModelIndex i = m_proxy->index(index, 0, rootIndex());
    selectionModel()->select(
        i, (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) |
               QItemSelectionModel::Rows);
}

QStringList FileView::selectedPaths() const {
    QStringList paths;
    for (int i = 0; i < ItemCount(); ++i) {
        if (ItemSelected(i))
            paths.append(ItemPath(i));
    }
    return paths;
}

void FileView::Update() {
    setPath(m_path);
}

void FileView::MoveUp() {
    QDir dir(m_path);
    if (dir.cdUp())
        setPath(dir.absolutePath());
}

void FileView::BrowseForFolder() {
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Folder;
    request.title = QStringLiteral("Browse for Folder");
    request.initialDirectory = m_path;
    if (const auto chosen = FileBoxService::ask(request); chosen && !chosen->isEmpty())
        setPath(*chosen);
}

QString FileView::CreateFolder() {
    QDir dir(m_path);
    if (!dir.exists())
        return QString();
    QString name = QStringLiteral("New Folder");
    for (int n = 2; dir.exists(name); ++n)
        name = QStringLiteral("New Folder (%1)").arg(n);
    const QModelIndex made = m_model->mkdir(m_model->index(m_path), name);
    if (!made.isValid())
        return QString();
    const QModelIndex shown = m_proxy->mapFromSource(made);
    setCurrentIndex(shown);
    edit(shown);
    return dir.filePath(name);
}

QMimeData *FileView::dragData() const {
    QModelIndexList rows;
    for (const QModelIndex &i : selectionModel()->selectedRows(0))
        rows.append(i);
    return m_proxy->mimeData(rows);
}

void FileView::keyPressEvent(QKeyEvent *event) {
    // Backspace goes up a folder, as in a desktop file manager.
    if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier) {
        MoveUp();
        return;
    }
    QTreeView::keyPressEvent(event);
}
