#pragma once

#include <QPointer>
#include <QTreeView>

class FileView;
class QFileSystemModel;

// A folder tree of the file system that can be bound to a file list: choosing a folder fills
// the list, and the list's folder is shown chosen in the tree. Lives on the UI thread.
class FolderView : public QTreeView {
    Q_OBJECT
public:
    explicit FolderView(QWidget *parent = nullptr);

    void bindFileView(FileView *view);
    FileView *boundFileView() const { return m_fileView; }

    QString SelectedPath() const;
    // Chooses the folder in the tree and opens the branches above it.
    void setSelectedPath(const QString &path);
    // Reads the tree again from the disc.
    void Refresh();

signals:
    void OnAfterNodeSelect(const QString &NodePath);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showPending();

    QFileSystemModel *m_model;
    QPointer<FileView> m_fileView;
    bool m_following = false;
    bool m_choosing = false;
    bool m_userInput = false;
    // A folder asked for before the model has read the folders above it.
    QString m_pending;
};
