#pragma once

#include <QPointer>
#include <QTreeView>

class FileView;
class QFileSystemModel;

// The browser's folder tree of this machine, kept in step with a FileView both ways: a click
// here changes the list's folder, a change there moves the highlight here. UI thread.
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
