#pragma once

#include "app/CompilationWindow.h"
#include "app/FrameServices.h"

#include <QWidget>

class KeyedItem;
class KeyedToolbar;
class PreviewPane;
class QScrollBar;
class VSPrinter;

// The printed list of the open compilation: composed into `vspBurner` and shown page by page
// with the toolbar and the page bar around it; the frame's print commands go through it. One
// default instance, over the frame and modal. UI thread.
class frmPreView : public QWidget {
    Q_OBJECT
public:
    explicit frmPreView(const WindowContext &context);
    ~frmPreView() override;

    VSPrinter *vspBurner = nullptr;
    PreviewPane *preview = nullptr;
    QScrollBar *scrlPage = nullptr;
    KeyedToolbar *SmartToolbar = nullptr;
    // The margins of the last composition, millimetres.
    double mdblLeft = 0;
    double mdblTop = 0;
    double mdblRight = 0;

    void Form_Load();
    void drawPageLayout();
    // Composes the document anew; false, with nothing done, while a composition runs.
    bool DoDocument();
    // Sends the document to the printer (or a PDF file) and unloads the window.
    void PrintDocument();

    void smartToolbar_Click(KeyedItem *Item);
    void SmartToolbar_Change(KeyedItem *Item, const QString &PropertyName);
    void scrlPage_Change();
    void vspBurner_EndPage();
    void vspBurner_EndDoc();
    void UpdateScroller();
    void vspBurner_AfterUserZoom();
    void vspBurner_AfterUserPage(int NewPage);
    void vp_MousePage(int NewPage);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildControls();
    QString footerText() const;

    WindowContext m_context;
    CompilationListing m_listing;
    QString m_userName;
    // Lives as long as the window: each composition counts the files on from the last one.
    qint32 lngFilecounter = 0;
    bool m_composing = false;
    bool m_closeAfterComposing = false;
};
