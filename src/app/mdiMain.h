#pragma once

#include <QMainWindow>

class QMdiArea;

// The main frame: the multiple-document area that holds the file browsers and the compilation
// windows, the menus, the toolbar and the strips. One default instance. On the UI thread.
class mdiMain : public QMainWindow {
    Q_OBJECT
public:
    mdiMain();

    QMdiArea *mdiArea() const { return m_mdiArea; }

    void ToolMenuExit();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void MDIForm_Load();
    // Cancel is set to 1 to keep the frame.
    void MDIForm_QueryUnload(int &Cancel, int UnloadMode);

    QMdiArea *m_mdiArea = nullptr;
};
