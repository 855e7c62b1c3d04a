#include "SplitterBar.h"

#include <QPalette>
#include <QWidget>

SplitterBar SplitterBar::create(QWidget *parent, QObject *filter) {
    SplitterBar s;
    s.handle = new QWidget(parent);
    s.handle->setCursor(Qt::SplitHCursor);
    s.handle->installEventFilter(filter);
    s.bar = new QWidget(parent);
    s.bar->setAutoFillBackground(true);
    QPalette colours = s.bar->palette();
    colours.setColor(QPalette::Window, parent->palette().color(QPalette::Dark));
    s.bar->setPalette(colours);
    s.bar->hide();
    return s;
}
