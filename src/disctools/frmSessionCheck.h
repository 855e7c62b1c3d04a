#pragma once

#include "app/FrameServices.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

// The sessions of the disc in the recorder, one line under each, and what can be done next:
// import the last one, erase, eject. Modal over the frame; gone at any button. UI thread.
class frmSessionCheck : public QDialog {
    Q_OBJECT
public:
    explicit frmSessionCheck(const WindowContext &context);
    ~frmSessionCheck() override;

    QTreeWidget *tvwSession = nullptr;
    QPushButton *cmdImport = nullptr;
    QPushButton *cmdErase = nullptr;
    QPushButton *cmdEject = nullptr;
    QPushButton *cmdCancel = nullptr;
    QLabel *Label1 = nullptr;

    qint16 mintSession = 0;
    bool mblnRewritable = false;
    qint32 mlngUSize = 0;
    qint32 mlngFSpace = 0;

    void GetSessionInfo();
    void Form_Load();
    void cmdImport_Click();
    void cmdErase_Click();
    void cmdEject_Click();
    void cmdCancel_Click();

    // The key a node of the tree was added with ("Node4").
    static QString keyOf(const QTreeWidgetItem *node);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QTreeWidgetItem *addNode(QTreeWidgetItem *parent, const QString &key, const QString &text,
                             const QString &picture);
    WindowContext m_context;
};
