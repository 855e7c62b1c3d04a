#include "TabCycle.h"

#include <QKeyEvent>
#include <QTabWidget>

bool TabCycle::handle(const QKeyEvent *event, QTabWidget *tabs) {
    if (event->key() != Qt::Key_Tab || event->modifiers() != Qt::ControlModifier || !tabs ||
        tabs->count() == 0)
        return false;
    tabs->setCurrentIndex((tabs->currentIndex() + 1) % tabs->count());
    return true;
}
