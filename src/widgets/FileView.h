#pragma once

#include <QTreeView>

class QFileSystemModel;
class QIdentityProxyModel;
class QMimeData;

// The browser's list of one folder of this machine: what the browser's commands need (items by
// number, refresh, up, choose a folder, make one) and drags that hand out the selected paths
// as URLs, which the compilations take. UI thread.
class FileView : public QTreeView {
    Q_OBJECT
public:
    // Selection state flags of OnAfterSelectionChange.
    enum SelectionFlag { SelectedFlag = 1 };

    explicit FileView(QWidget *parent = nullptr);

    QString Path() const { return m_path; }
    // A folder that does not exist is taken as it is and shows no entries.
    void setPath(const QString &path);

    // The width is in points, so that a column keeps its room on any screen.
    void setColumnHeader(int column, const QString &text, int width);
    QString columnHeader(int column) const;

    // The items are the entries of the folder as the list shows them, sorted.
    int ItemCount() const;
    QString ItemPath(int index) const;
    bool ItemSelected(int index) const;
    void setItemSelected(int index, bool selected);
    QStringList selectedPaths() const;

    // Reads the folder again.
    void Update();
    void MoveUp();
    // Asks for a folder through the file box service; a cancel changes nothing.
    void BrowseForFolder();
    // Makes "New Folder" (or "New Folder (2)" ...) in the current folder and starts its rename.
    // Returns the new folder's path, or an empty text when it could not be made.
    QString CreateFolder();

    // What a drag of the selection carries.
    QMimeData *dragData() const;

signals:
    void PathChanged(const QString &path);
    void OnAfterSelectionChange(const QString &ItemPath, int SelectionState);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QModelIndex sourceIndex(int index) const;

    QFileSystemModel *m_model;
    QIdentityProxyModel *m_proxy;
    QString m_path;
};
