#pragma once

#include <QDialog>
#include <QString>

class QFileSystemModel;
class QModelIndex;
class QPushButton;
class QTreeView;

// The box that picks the file browser's start folder for the options box. Modal, one default
// instance. On the UI thread.
class frmChooseDir : public QDialog {
    Q_OBJECT
public:
    frmChooseDir();

    // The folder a node of the tree stands for.
    QString pathOf(const QModelIndex &Node) const;

    void FolderView_OnAfterNodeSelect(const QModelIndex &Node);
    void cmdOK_Click();
    void cmdCancel_Click();

    QTreeView *FolderView = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;

    QString mstrPath = QStringLiteral("C:\\");

private:
    QFileSystemModel *m_folders = nullptr;
};
