#pragma once

class QObject;
class QWidget;

// The two controls of a splitter dragged the classic way: an invisible handle between the
// panes, and the bar that follows the mouse while dragging. On the UI thread.
class SplitterBar {
public:
    // The handle's mouse events go to `filter`, which moves the bar and lays the panes out.
    static SplitterBar create(QWidget *parent, QObject *filter);

    QWidget *handle = nullptr;
    QWidget *bar = nullptr;
};
