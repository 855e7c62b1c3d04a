#include "FolderView.h"
#include "FileSystemModels.h"
#include "FileView.h"

#include <QFileSystemModel>
#include <QHeaderView>
#include <QResizeEvent>
#include <QTimer>

FolderView::FolderView(QWidget *parent)
    : QTreeView(parent)
    , m_model(FileSystemModels::folders()) {
    setModel(m_model);
    setHeaderHidden(true);
    for (int c = 1; c < m_model->columnCount(); ++c)
        hideColumn(c);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                if (!current.isValid())
                    return;
                const QString path = m_model->filePath(current);
                // The view makes a row current by itself at times; only a folder the user or
                // the program chose counts.
                if (!m_choosing && !m_userInput)
                    return;
                if (m_fileView && !m_following)
                    m_fileView->setPath(path);
                emit OnAfterNodeSelect(path);
            });
    // The model reads folders in the background; the tree opens down to the chosen folder as
    // the branches arrive.
    // Sorting the read branches moves rows as well.
    connect(m_model, &QFileSystemModel::layoutChanged, this,
            [this] { QTimer::singleShot(0, this, [this] { showPending(); }); });
    connect(m_model, &QFileSystemModel::rowsInserted, this, [this](const QModelIndex &parent) {
        if (m_pending.isEmpty() || !m_pending.startsWith(m_model->filePath(parent)))
            return;
        const QModelIndex index = m_model->index(m_pending);
        for (QModelIndex up = index.parent(); up.isValid(); up = up.parent())
            expand(up);
        // After the tree has laid the new rows out.
        QTimer::singleShot(0, this, [this] { showPending(); });
    });
}

void FolderView::bindFileView(FileView *view) {
    m_fileView = view;
    connect(view, &FileView::PathChanged, this, [this](const QString &path) {
        if (path == SelectedPath())
            return;
        m_following = true;
        setSelectedPath(path);
        m_following = false;
    });
}

QString FolderView::SelectedPath() const {
    const QModelIndex current = currentIndex();
    return current.isValid() ? m_model->filePath(current) : QString();
}

void FolderView::setSelectedPath(const QString &path) {
    const QModelIndex index = m_model->index(path);
    if (!index.isValid())
        return;
    for (QModelIndex up = index.parent(); up.isValid(); up = up.parent())
        expand(up);
    m_choosing = true;
    setCurrentIndex(index);
    m_choosing = false;
    scrollTo(index, QAbstractItemView::PositionAtCenter);
    m_pending = path;
}

void FolderView::Refresh() {
    const QString path = SelectedPath();
    // The model watches the folders it has read; asking for the root again makes it look anew.
    m_model->setRootPath(QString());
    m_model->setRootPath(QStringLiteral("/"));
    if (!path.isEmpty())
        setSelectedPath(path);
}

void FolderView::resizeEvent(QResizeEvent *event) {
    QTreeView::resizeEvent(event);
    // A tree laid out at its real size for the first time shows its chosen folder.
    if (!m_pending.isEmpty() && event->oldSize().height() < 50 && height() >= 50)
        QTimer::singleShot(
            0, this, [this] { scrollTo(currentIndex(), QAbstractItemView::PositionAtCenter); });
}

void FolderView::showPending() {
    if (!m_pending.isEmpty())
        scrollTo(m_model->index(m_pending), QAbstractItemView::PositionAtCenter);
}

// The tree follows the chosen folder while its branches arrive, until the user takes it over.
void FolderView::mousePressEvent(QMouseEvent *event) {
    m_pending.clear();
    m_userInput = true;
    QTreeView::mousePressEvent(event);
    m_userInput = false;
}

void FolderView::wheelEvent(QWheelEvent *event) {
    m_pending.clear();
    QTreeView::wheelEvent(event);
}

void FolderView::keyPressEvent(QKeyEvent *event) {
    m_pending.clear();
    m_userInput = true;
    QTreeView::keyPressEvent(event);
    m_userInput = false;
}
