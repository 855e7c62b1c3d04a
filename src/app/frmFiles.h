#pragma once

#include <QString>
#include <QWidget>

class FileView;
class FolderView;
class QLabel;

// A file browser: a folder tree bound to a file list, from which files are dragged into the
// compilation windows. Up to a hundred live in the frame at once, numbered by their tag. On
// the UI thread.
class frmFiles : public QWidget {
    Q_OBJECT
public:
    frmFiles();

    FolderView *FolderViewAdd = nullptr;
    FileView *FileViewAdd = nullptr;
    QWidget *imgSplitter = nullptr; // grabbed by the mouse, never drawn
    QWidget *picSplitter = nullptr; // drawn where the split will go until the mouse lets go

    QString tag() const { return m_tag; }
    void setTag(const QString &tag) { m_tag = tag; }

    void Form_Load();
    Q_INVOKABLE void Form_Activate();
    void Form_Resize();
    void Form_Unload();

    void SelectFiles(bool blnSelect);
    // Places the tree, the handle and the list around a split x twips from the left.
    void SizeControls(double x);

    // X and Y are twips from the handle's own corner.
    void imgSplitter_MouseDown(int Button, int Shift, double X, double Y);
    void imgSplitter_MouseMove(int Button, int Shift, double X, double Y);
    void imgSplitter_MouseUp(int Button, int Shift, double X, double Y);
    void FileViewAdd_OnAfterSelectionChange(const QString &ItemPath, int SelectionState);
    void FolderViewAdd_OnAfterNodeSelect(const QString &NodePath);

    // The window in the frame (the browser's own frame), and lengths of it in twips.
    QWidget *window() const;
    int twipsLeft(const QWidget *w) const;
    int innerWidth() const;
    int innerHeight() const;

    bool mblnMoving = false;
    QString mstrCaptionLoad;
    bool mblnFirstLoad = true;
    bool mblnUseLastDir = true;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The start folder of a machine that never chose one names no folder here; the home
    // folder stands in for it.
    static QString localFolder(const QString &folder);

    QLabel *m_where = nullptr;
    QString m_tag;
    bool m_resizing = false;
};
