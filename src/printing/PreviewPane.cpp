#include "PreviewPane.h"
#include "VSPrinter.h"

#include <QEvent>
#include <QPainter>
#include <QScrollArea>
#include <QWheelEvent>

namespace {
constexpr int Gap = 12; // pixels around and between pages
}

PreviewPane::PreviewPane(VSPrinter *document, QScrollArea *area)
    : QWidget(area)
    , m_document(document)
    , m_area(area) {
    area->setWidget(this);
    area->setWidgetResizable(false);
    area->setAlignment(Qt::AlignCenter);
    area->viewport()->installEventFilter(this);
    setAutoFillBackground(false);
}

void PreviewPane::setPreviewPage(int page) {
    m_page = std::clamp(page, 1, std::max(1, m_document->PageCount()));
    update();
}

int PreviewPane::PagesShown() const {
    switch (m_mode) {
    case Thumbnail:
        return 4;
    case TwoPages:
        return 2;
    default:
        return 1;
    }
}

double PreviewPane::screenPixelsPerMm() const {
    return logicalDpiX() / 25.4;
}

double PreviewPane::Zoom() const {
    return m_mode == Percentage ? m_zoom : layout().pixelsPerMm / screenPixelsPerMm() * 100;
}

void PreviewPane::setZoom(double percent) {
    if (m_mode != Percentage)
        return;
    // A zoom the eye can still use; a slip of the keyboard is not a blank window.
    m_zoom = std::clamp(percent, 10.0, 500.0);
    refresh();
}

void PreviewPane::setZoomMode(int mode) {
    if (mode < Percentage || mode > Stretch)
        return;
    m_mode = mode;
    refresh();
}

void PreviewPane::setShowMargins(bool show) {
    m_margins = show;
    update();
}

PreviewPane::Layout PreviewPane::layout() const {
    Layout at;
    const double paperW = m_document->PageWidth() / VSPrinter::TwipsPerMm;
    const double paperH = m_document->PageHeight() / VSPrinter::TwipsPerMm;
    const QSize view = m_area->viewport()->size();
    if (m_mode == Thumbnail)
        at.columns = at.rows = 2;
    else if (m_mode == TwoPages)
        at.columns = 2;
    const double roomW = std::max(1, view.width() - Gap * (at.columns + 1)) / double(at.columns);
    const double roomH = std::max(1, view.height() - Gap * (at.rows + 1)) / double(at.rows);
    switch (m_mode) {
    case Percentage:
        at.pixelsPerMm = screenPixelsPerMm() * m_zoom / 100;
        break;
    case PageWidth:
        at.pixelsPerMm = roomW / paperW;
        break;
    case Stretch:
        at.pixelsPerMm = roomW / paperW;
        at.stretchY = (roomH / paperH) / at.pixelsPerMm;
        break;
    default:
        at.pixelsPerMm = std::min(roomW / paperW, roomH / paperH);
        break;
    }
    at.content = QSize(int(paperW * at.pixelsPerMm * at.columns) + Gap * (at.columns + 1),
                       int(paperH * at.pixelsPerMm * at.stretchY * at.rows) + Gap * (at.rows + 1));
    return at;
}

void PreviewPane::refresh() {
    const Layout at = layout();
    resize(at.content.expandedTo(m_area->viewport()->size()));
    update();
    emit AfterUserZoom();
}

bool PreviewPane::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_area->viewport() && event->type() == QEvent::Resize)
        refresh();
    return QWidget::eventFilter(watched, event);
}

void PreviewPane::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    const Layout at = layout();
    const double pageW = m_document->PageWidth() / VSPrinter::TwipsPerMm * at.pixelsPerMm;
    const double pageH = m_document->PageHeight() / VSPrinter::TwipsPerMm * at.pixelsPerMm;
    // The pages stand in the middle of what the pane shows.
    const QPointF start((width() - at.content.width()) / 2.0,
                        (height() - at.content.height()) / 2.0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    for (int i = 0; i < at.columns * at.rows; ++i) {
        const int page = m_page + i;
        if (page > m_document->PageCount())
            break;
        const QPointF corner =
            start + QPointF(Gap + (i % at.columns) * (pageW + Gap),
                            Gap + (i / at.columns) * (pageH * at.stretchY + Gap));
        painter.save();
        painter.translate(corner);
        painter.scale(1, at.stretchY);
        painter.fillRect(QRectF(3, 3, pageW, pageH), QColor(0, 0, 0, 90));
        painter.fillRect(QRectF(0, 0, pageW, pageH), Qt::white);
        m_document->renderPage(page, painter, QPointF(0, 0), at.pixelsPerMm, m_margins);
        painter.restore();
    }
}

void PreviewPane::wheelEvent(QWheelEvent *event) {
    // Where the pages are larger than the window the wheel scrolls them instead.
    if (m_mode == Percentage || m_mode == PageWidth || event->angleDelta().y() == 0) {
        event->ignore();
        return;
    }
    const int step = event->angleDelta().y() < 0 ? PagesShown() : -PagesShown();
    const int page = std::clamp(m_page + step, 1, std::max(1, m_document->PageCount()));
    if (page != m_page)
        emit AfterUserPage(page);
    event->accept();
}
