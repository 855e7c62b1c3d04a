#pragma once

#include <QWidget>

class QScrollArea;
class VSPrinter;

// Shows the pages of a composed document as the preview does: one page or several side by
// side, at a zoom mode or a percentage, with the margins outlined on request. Sits in a scroll
// area whose viewport it fills or outgrows. UI thread.
class PreviewPane : public QWidget {
    Q_OBJECT
public:
    // The zoom modes, in the order of the view list.
    enum Mode {
        Percentage = 0,
        Thumbnail = 1,
        TwoPages = 2,
        WholePage = 3,
        PageWidth = 4,
        Stretch = 5
    };

    PreviewPane(VSPrinter *document, QScrollArea *area);

    int PreviewPage() const { return m_page; }
    // Clamped to the document's pages.
    void setPreviewPage(int page);
    // How many pages one view shows.
    int PagesShown() const;
    // Per cent of the paper's real size; set only in the Percentage mode, computed in others.
    double Zoom() const;
    void setZoom(double percent);
    int ZoomMode() const { return m_mode; }
    void setZoomMode(int mode);
    bool ShowMargins() const { return m_margins; }
    void setShowMargins(bool show);

    // Lays the pages out anew after the document or the viewport changed.
    void refresh();

signals:
    // The zoom changed with the window's size or the mode.
    void AfterUserZoom();
    // The wheel turned the pages of a view that shows them whole; the first page to show.
    void AfterUserPage(int NewPage);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Layout {
        int columns = 1;
        int rows = 1;
        double pixelsPerMm = 1; // across
        double stretchY = 1;    // down, against across
        QSize content;
    };
    Layout layout() const;
    double screenPixelsPerMm() const;

    VSPrinter *m_document;
    QScrollArea *m_area;
    int m_page = 1;
    int m_mode = WholePage;
    double m_zoom = 100;
    bool m_margins = false;
};
