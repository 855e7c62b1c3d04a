#include "LineControl.h"
#include "Twips.h"

#include <QPainter>

LineControl::LineControl(QWidget *parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void LineControl::setPoints(int x1, int y1, int x2, int y2) {
    m_x1 = x1;
    m_y1 = y1;
    m_x2 = x2;
    m_y2 = y2;
    place();
}

void LineControl::setX(int x1, int x2) {
    setPoints(x1, m_y1, x2, m_y2);
}

void LineControl::setBorderColor(const QColor &color) {
    m_color = color;
    update();
}

void LineControl::setBorderWidth(int pixels) {
    m_width = pixels;
    place();
}

void LineControl::place() {
    const int left = Twips::toPixels(qMin(m_x1, m_x2)) - m_width;
    const int top = Twips::toPixels(qMin(m_y1, m_y2)) - m_width;
    const int w = Twips::toPixels(qAbs(m_x2 - m_x1)) + 2 * m_width + 1;
    const int h = Twips::toPixels(qAbs(m_y2 - m_y1)) + 2 * m_width + 1;
    setGeometry(left, top, w, h);
    raise();
    update();
}

void LineControl::paintEvent(QPaintEvent *) {
    QPainter p(this);
    p.setPen(QPen(m_color, m_width));
    const QPoint origin(Twips::toPixels(qMin(m_x1, m_x2)) - m_width,
                        Twips::toPixels(qMin(m_y1, m_y2)) - m_width);
    p.drawLine(QPoint(Twips::toPixels(m_x1), Twips::toPixels(m_y1)) - origin,
               QPoint(Twips::toPixels(m_x2), Twips::toPixels(m_y2)) - origin);
}
