#pragma once

#include <QColor>
#include <QWidget>

// A straight line between two points given in twips of its parent, drawn over the parent's
// other controls. Lives on the UI thread.
class LineControl : public QWidget {
    Q_OBJECT
public:
    explicit LineControl(QWidget *parent);

    int X1() const { return m_x1; }
    int X2() const { return m_x2; }
    int Y1() const { return m_y1; }
    int Y2() const { return m_y2; }
    void setPoints(int x1, int y1, int x2, int y2);
    void setX(int x1, int x2);
    void setBorderColor(const QColor &color);
    void setBorderWidth(int pixels);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void place();

    int m_x1 = 0, m_y1 = 0, m_x2 = 0, m_y2 = 0;
    QColor m_color = Qt::black;
    int m_width = 1;
};
