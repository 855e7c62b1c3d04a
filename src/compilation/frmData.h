#pragma once

#include "app/CompilationWindow.h"
#include "app/DataImageMirror.h"
#include "app/FrameServices.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

class CDWriterPro;
class QAction;
class QMenu;
class QMimeData;
class QTreeWidget;
class QTreeWidgetItem;

// Shows the engine's image, folders left and the chosen folder's files right; the engine holds
// the data, the views only mirror it, keyed by path inside the image ("\" the root). One default
// instance, a child of the frame, made with the engine and the frame's services. On the UI thread.
class frmData : public QWidget, public DataImageMirror, public CompilationWindow {
    Q_OBJECT
public:
    explicit frmData(const WindowContext &context);
    ~frmData() override;

    QTreeWidget *tvwDirectories = nullptr;
    QTreeWidget *lvwImageFiles = nullptr; // columns: name, size, date
    QWidget *imgSplitter = nullptr;       // grabbed by the mouse, never drawn
    QWidget *picSplitter = nullptr;       // drawn where the split will go until release
    bool mblnMoving = false;

    // The procedures others call.
    void LoadFileList(const QString &strCurrentDestPath);
    void UpdateImage();
    void EnableForm(bool blnEnable) override;
    bool ValidateISONames(const QString &strNewName);
    static bool IsPathDirectory(const QString &strPath);
    // Adds the dropped files and folders to the selected directory; anything but a list of
    // files is ignored.
    void OLEDragDrop(const QMimeData *Data);
    static QString GetLastPathItem(const QString &strPath);
    // Places the tree, the handle and the list around a split X twips from the left.
    void SizeControls(double X);

    void Form_Load();
    void Form_Activate() override;
    void Form_Unload(int &Cancel);
    void Form_Resize();

    void tvwDirectories_NodeClick(QTreeWidgetItem *Node);
    void tvwDirectories_Expand(QTreeWidgetItem *Node);
    void tvwDirectories_BeforeLabelEdit(int &Cancel);
    void tvwDirectories_AfterLabelEdit(int &Cancel, const QString &NewString);
    void lvwImageFiles_AfterLabelEdit(int &Cancel, const QString &NewString);

    // X and Y are twips from the handle's own corner.
    void imgSplitter_MouseDown(double X, double Y);
    void imgSplitter_MouseMove(double X, double Y);
    void imgSplitter_MouseUp(double X, double Y);

    // The pop-up entries of the list: view 0 large icons, 1 small icons, 2 list, 3 details.
    void setListView(int view);
    int listView() const { return m_view; }
    // Sort key 0 the name, 2 the date; -1 not sorted.
    void setListSort(int sortKey);
    int listSort() const { return m_sortKey; }
    // The entries of the two pop-up menus by their names ("mnuByDate").
    QAction *popupEntry(const QString &name) const;

    // The selected directory, or null.
    QTreeWidgetItem *selectedNode() const;
    static QString keyOf(const QTreeWidgetItem *item);
    bool isDropping() const { return m_dropping; }

    // The image's mirror.
    QTreeWidgetItem *node(const QString &key) const override;
    QTreeWidgetItem *addNode(const QString &parentKey, const QString &key, const QString &text,
                             const QString &image, const QString &selectedImage) override;
    void removeNode(const QString &key) override;
    void rekeyNode(const QString &oldKey, const QString &newKey) override;
    void addFileRow(const QString &key, const QString &text, const QString &size,
                    const QString &date) override;
    void clearImage() override;
    void setCaption(const QString &caption) override;

    // The compilation as the frame and the write dialog see it.
    QWidget *widget() override { return this; }
    void Reload() override;
    bool removeSelected(bool directory) override;
    bool renameSelected(bool directory) override;
    void sessionImported() override;
    CompilationListing listing() override;

    // The pictures of the frame's image list the tree and the list show ("CD", "FILE", ...).
    static QIcon picture(const QString &key);

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    CDWriterPro *engine() const { return m_context.engine; }
    FrameServices *services() const { return m_context.frame; }
    void buildPopups();
    void clearPopups();
    void forgetNodes(QTreeWidgetItem *item);
    int innerWidth() const;
    int innerHeight() const;
    bool dropOnView(QObject *watched, QEvent *event);

    // A node's place in the order the image's folders were added, whatever the tree's sorting.
    static constexpr int AddedRole = Qt::UserRole + 2;

    WindowContext m_context;
    QHash<QString, QTreeWidgetItem *> m_nodes;
    qint64 m_nodesAdded = 0;
    QHash<QString, QAction *> m_entries;
    // The frame's pop-ups this window filled; the frame may be going down before the window.
    QPointer<QMenu> m_popupTV;
    QPointer<QMenu> m_popupLV;
    // A drop lets events in while it adds; meanwhile the window takes no other change.
    bool m_dropping = false;
    int m_view = 3;
    int m_sortKey = 0;
    bool m_resizing = false;
};
