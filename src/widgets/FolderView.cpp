#include "FolderView.h"
#include "FileSystemModels.h"
#include "FileView.h"

#include <QFileSystemModel>
#include <QHeaderView>

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
                if (m_fileView && !m_following)
                    m_fileView->setPath(path);
                emit OnAfterNodeSelect(path);
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
    setCurrentIndex(index);
    scrollTo(index);
}

void FolderView::Refresh() {
    const QString path = SelectedPath();
    // The model watches the folders it has read; asking for the root again makes it look anew.
    m_model->setRootPath(QString());
    m_model->setRootPath(QStringLiteral("/"));
    if (!path.isEmpty())
        setSelectedPath(path);
}
